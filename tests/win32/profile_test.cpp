// How profile files are read.
#include "support/test_machine.h"

namespace {

const char *const Profile = "C:\\acctkit-test\\profile.ini";

class ProfileTest : public MachineTest {
protected:
  // What the call puts into a buffer of that size: the result's length of it.
  static std::string Get(const char *section, const char *key, const char *defaultText = "none", DWORD size = 1000,
                         const char *path = Profile) {
    std::string buffer(200000, '#');
    const DWORD length = GetPrivateProfileStringA(section, key, defaultText, buffer.data(), size, path);
    EXPECT_EQ(buffer[length], '\0');
    EXPECT_EQ(buffer[size], '#');
    buffer.resize(length);
    return buffer;
  }
};

TEST_F(ProfileTest, ReadsValues) {
  PutFile(Profile, "before=any section\r\n"
                   "[Server]\r\n"
                   "Key=value\r\n"
                   " \tspaced out \t=\t v a l \t\r\n"
                   "double=\" in it \"\r\nsingle=' in it '\r\nmixed=\"it'\r\none=\"\r\ntwo=\"\"\r\n"
                   "inner=\"a\"b\"\r\nhalf=\"a\" b\r\n"
                   "empty=\r\n"
                   "no value\r\n"
                   ";c=comment\r\n"
                   "list=a;b ; c=d\r\n"
                   "KEY=second\r\n"
                   " [Other] \r\n"
                   "Key=other\r\n"
                   "[Behind]its name\r\n"
                   "Key=behind\r\n"
                   "[server]\r\n"
                   "late=in a second section of the name");
  const struct {
    const char *section, *key, *value;
  } cases[] = {
      {"Server", "Key", "value"},        {"SERVER", "kEY", "value"},      {" Server ", " Key ", "value"},
      {"Server", "spaced out", "v a l"}, {"Server", "double", " in it "}, {"Server", "single", " in it "},
      {"Server", "mixed", "\"it'"},      {"Server", "one", "\""},         {"Server", "two", ""},
      {"Server", "inner", "a\"b"},       {"Server", "half", "\"a\" b"},   {"Server", "empty", ""},
      {"Server", "no value", "none"},    {"Server", "c", "none"},         {"Server", "list", "a;b ; c=d"},
      {"Server", "late", "none"},        {"Server", "before", "none"},    {"Other", "key", "other"},
      {"Behind", "key", "behind"},       {"Missing", "key", "none"},
  };
  for (const auto &test : cases)
    EXPECT_EQ(Get(test.section, test.key), test.value) << test.section << " " << test.key;
  EXPECT_EQ(Get("Other", nullptr), std::string("Key\0", 4));
  EXPECT_EQ(Get("Server", nullptr),
            std::string("Key\0spaced out\0double\0single\0mixed\0one\0two\0inner\0half\0empty\0list\0KEY\0", 69));
  EXPECT_EQ(Get(nullptr, nullptr), std::string("Server\0Other\0Behind\0server\0", 27));
  EXPECT_EQ(Get(nullptr, "Key"), Get(nullptr, nullptr));
}

TEST_F(ProfileTest, DefaultsStandInForWhatIsMissing) {
  PutFile(Profile, "[A]\nk=v\n");
  EXPECT_EQ(Get("A", "none", " x y  "), " x y");
  EXPECT_EQ(Get("A", "none", nullptr), "");
  EXPECT_EQ(Get("A", "none", "default", 4), "def");
  EXPECT_EQ(Get("none", nullptr, "default"), "default");
  for (const char *path : {"C:\\acctkit-test\\missing.ini", "C:\\acctkit-test\\missing\\p.ini", "C:\\acctkit-test"})
    EXPECT_EQ(Get("A", "k", "default", 100, path), "default") << path;
}

TEST_F(ProfileTest, CutsWhatDoesNotFit) {
  PutFile(Profile, "[First]\nkey=value\nother=\x95\x5c\x83\x5c\n[Second]\n");
  const struct {
    const char *section, *key;
    DWORD size;
    std::string given;
  } cases[] = {
      {"First", "key", 7, "value"},
      {"First", "key", 6, "value"},
      {"First", "key", 5, "valu"},
      {"First", "key", 2, "v"},
      {"First", "key", 1, ""},
      {"First", nullptr, 12, std::string("key\0other\0", 10)},
      {"First", nullptr, 9, std::string("key\0oth", 7)},
      {nullptr, nullptr, 15, std::string("First\0Second\0", 13)},
      {nullptr, nullptr, 13, std::string("First\0Secon", 11)},
      {nullptr, nullptr, 8, std::string("First\0", 6)},
  };
  for (const auto &test : cases) {
    SCOPED_TRACE(test.size);
    EXPECT_EQ(Get(test.section, test.key, "none", test.size), test.given);
    // A list that is cut ends in two terminators; Wine leaves the second out.
    if (test.key != nullptr || test.given.size() + 2 != test.size || RunsUnderWine())
      continue;
    std::string buffer(test.size, '#');
    GetPrivateProfileStringA(test.section, test.key, "none", buffer.data(), test.size, Profile);
    EXPECT_EQ(buffer, test.given + std::string(2, '\0'));
  }
  EXPECT_EQ(GetPrivateProfileStringA("First", "key", "none", nullptr, 0, Profile), 0U);
  // No half of a character; Wine leaves whatever stood in its place.
  EXPECT_EQ(Get("First", "other", "none", 4).substr(0, 2), "\x95\x5c");
  EXPECT_EQ(Get("First", "other", "none", 4).find('\x83'), std::string::npos);
}

TEST_F(ProfileTest, LineEndsAndLongLines) {
  PutFile(Profile, "\n\r\n[A]\r\rk=crs\r\nl=crlf\n\n[B]\nk=" + std::string(100000, 'x') + "\n" +
                       std::string(100000, 'y') + "=long\nl=" + std::string("zero\0byte", 9) + "\nm=no end");
  EXPECT_EQ(Get("A", "k"), "crs");
  EXPECT_EQ(Get("A", "l"), "crlf");
  EXPECT_EQ(Get("B", "k", "none", 150000), std::string(100000, 'x'));
  EXPECT_EQ(Get("B", "k", "none", 10), "xxxxxxxxx");
  EXPECT_EQ(Get("B", "l"), "zero");
  EXPECT_EQ(Get("B", "m"), "no end");
  PutFile(Profile, "");
  EXPECT_EQ(Get("A", "k"), "none");
}

TEST_F(ProfileTest, JapaneseText) {
  PutFile(Profile, "[\x83\x5d\x95\x5c]\n\x83\x5c=\"\x95\x5c\"\n\x82\x60=\x8f\x5d\n\x81\x40=\x81\x40\n\xb1= \xb2\n");
  const std::pair<const char *, const char *> cases[] = {
      {"\x83\x5c", "\x95\x5c"}, {"\x82\x60", "\x8f\x5d"}, {"\x81\x40", "\x81\x40"}, {"\xb1", "\xb2"}};
  for (const auto &[key, value] : cases)
    EXPECT_EQ(Get("\x83\x5d\x95\x5c", key), value) << key;
  EXPECT_EQ(Get(nullptr, nullptr), std::string("\x83\x5d\x95\x5c\0", 5));
  PutFile(Profile, std::string("\xff\xfe[\0A\0]\0\r\0\n\0k\0=\0\x68\x88 \0", 20)); // UTF-16
  EXPECT_EQ(Get("A", "k"), "\x95\x5c");
}

TEST_F(ProfileTest, NamesWithoutAFolderAreOfTheWindowsDirectory) {
  char windows[MAX_PATH];
  GetWindowsDirectoryA(windows, sizeof windows);
  PutFile(std::string(windows) + "\\acctkit-test.ini", "[A]\nk=windows\n");
  EXPECT_EQ(Get("A", "k", "none", 100, "acctkit-test.ini"), "windows");
}

} // namespace
