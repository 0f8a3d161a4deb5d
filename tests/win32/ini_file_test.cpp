// How INI files are read.
#include "support/test_machine.h"

#include <tuple>

namespace {

const char *const IniFile = "C:\\acctkit-test\\service.ini";

class IniFileTest : public MachineTest {
protected:
  // The text that the call puts into a buffer of that size, as long as the result says.
  static std::string Get(const char *section, const char *key, const char *defaultText = "none", DWORD size = 1000,
                         const char *path = IniFile) {
    std::string buffer(200000, '#');
    const DWORD length = GetPrivateProfileStringA(section, key, defaultText, buffer.data(), size, path);
    EXPECT_EQ(buffer[length], '\0');
    EXPECT_EQ(buffer[size], '#');
    buffer.resize(length);
    return buffer;
  }
};

TEST_F(IniFileTest, ReadsValues) {
  PutFile(IniFile, "before=any section\r\n"
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
  const std::tuple<const char *, const char *, const char *> cases[] = {
      {"Server", "Key", "value"},        {"SERVER", "kEY", "value"},      {" Server ", " Key ", "value"},
      {"Server", "spaced out", "v a l"}, {"Server", "double", " in it "}, {"Server", "single", " in it "},
      {"Server", "mixed", "\"it'"},      {"Server", "one", "\""},         {"Server", "two", ""},
      {"Server", "inner", "a\"b"},       {"Server", "half", "\"a\" b"},   {"Server", "empty", ""},
      {"Server", "no value", "none"},    {"Server", "c", "none"},         {"Server", "list", "a;b ; c=d"},
      {"Server", "late", "none"},        {"Server", "before", "none"},    {"Other", "key", "other"},
      {"Behind", "key", "behind"},       {"Missing", "key", "none"},
  };
  for (const auto &[section, key, value] : cases)
    EXPECT_EQ(Get(section, key), value) << section << " " << key;
}

TEST_F(IniFileTest, DefaultsStandInForWhatIsMissing) {
  PutFile(IniFile, "[A]\nk=v\n");
  EXPECT_EQ(Get("A", "none", ""), "");
  for (const char *path : {"C:\\acctkit-test\\missing.ini", "C:\\acctkit-test\\missing\\p.ini", "C:\\acctkit-test"})
    EXPECT_EQ(Get("A", "k", "default", 100, path), "default") << path;
}

TEST_F(IniFileTest, CutsWhatDoesNotFit) {
  PutFile(IniFile, "[First]\nkey=value\nother=\x95\x5c\x83\x5c\n[Second]\n");
  for (const auto &[size, given] : {std::pair{7U, "value"}, {6U, "value"}, {5U, "valu"}, {2U, "v"}, {1U, ""}})
    EXPECT_EQ(Get("First", "key", "none", size), given) << size;
  // No half of a character is copied; Wine leaves the old byte in its place.
  EXPECT_EQ(Get("First", "other", "none", 4).substr(0, 2), "\x95\x5c");
  EXPECT_EQ(Get("First", "other", "none", 4).find('\x83'), std::string::npos);
}

TEST_F(IniFileTest, LineEndsAndLongLines) {
  PutFile(IniFile, "\n\r\n[A]\r\rk=crs\r\nl=crlf\n\n[B]\nk=" + std::string(100000, 'x') + "\n" +
                       std::string(100000, 'y') + "=long\nl=" + std::string("zero\0byte", 9) + "\nm=no end");
  EXPECT_EQ(Get("A", "k"), "crs");
  EXPECT_EQ(Get("A", "l"), "crlf");
  EXPECT_EQ(Get("B", "k", "none", 150000), std::string(100000, 'x'));
  EXPECT_EQ(Get("B", "k", "none", 10), "xxxxxxxxx");
  EXPECT_EQ(Get("B", "l"), "zero");
  EXPECT_EQ(Get("B", "m"), "no end");
  PutFile(IniFile, "");
  EXPECT_EQ(Get("A", "k"), "none");
}

TEST_F(IniFileTest, JapaneseText) {
  PutFile(IniFile, "[\x83\x5d\x95\x5c]\n\x83\x5c=\"\x95\x5c\"\n\x82\x60=\x8f\x5d\n\x81\x40=\x81\x40\n\xb1= \xb2\n");
  const std::pair<const char *, const char *> cases[] = {
      {"\x83\x5c", "\x95\x5c"}, {"\x82\x60", "\x8f\x5d"}, {"\x81\x40", "\x81\x40"}, {"\xb1", "\xb2"}};
  for (const auto &[key, value] : cases)
    EXPECT_EQ(Get("\x83\x5d\x95\x5c", key), value) << key;
  PutFile(IniFile, std::string("\xff\xfe[\0A\0]\0\r\0\n\0k\0=\0\x68\x88 \0", 20)); // UTF-16
  EXPECT_EQ(Get("A", "k"), "\x95\x5c");
}

} // namespace
