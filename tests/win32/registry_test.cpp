// The results of the registry calls: result codes, sizes, rights, names.
#include "support/test_key.h"
#include "support/test_machine.h"

#include <tuple>
#include <vector>

namespace {

class RegistryTest : public MachineTest {
protected:
  static LSTATUS Create(HKEY parent, const std::string &path, DWORD *disposition = nullptr,
                        REGSAM access = KEY_ALL_ACCESS) {
    HKEY opened = nullptr;
    const LSTATUS result = RegCreateKeyExA(parent, path.c_str(), 0, nullptr, 0, access, nullptr, &opened, disposition);
    EXPECT_EQ(TestKey(opened).Get() != nullptr, result == ERROR_SUCCESS) << path;
    return result;
  }
  // The scratch key, opened, or another key.
  static TestKey Opened(REGSAM access = KEY_ALL_ACCESS, const std::string &path = ScratchKey) {
    HKEY opened = nullptr;
    EXPECT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, access, nullptr, &opened, nullptr),
              ERROR_SUCCESS);
    return TestKey(opened);
  }
  // Writes exactly these bytes, without a terminator after them.
  static LSTATUS Set(HKEY key, const char *name, DWORD type, const std::string &data) {
    return RegSetValueExA(key, name, 0, type, reinterpret_cast<const BYTE *>((data + '#').data()),
                          static_cast<DWORD>(data.size()));
  }
  // The bytes of a value, read into a buffer of exactly the size that the first query returned.
  static std::string Get(HKEY key, const char *name) {
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(key, name, nullptr, nullptr, nullptr, &size), ERROR_SUCCESS) << name;
    std::string data(size, '#');
    EXPECT_EQ(RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE *>(data.data()), &size),
              ERROR_SUCCESS);
    EXPECT_EQ(size, data.size()) << name;
    return data;
  }
  static std::vector<std::string> Subkeys(HKEY key) {
    std::vector<std::string> names;
    for (DWORD index = 0;; ++index) {
      char name[256];
      DWORD size = sizeof name;
      const LSTATUS result = RegEnumKeyExA(key, index, name, &size, nullptr, nullptr, nullptr, nullptr);
      if (result != ERROR_SUCCESS) {
        EXPECT_EQ(result, ERROR_NO_MORE_ITEMS);
        return names;
      }
      EXPECT_EQ(size, std::string(name).size());
      names.emplace_back(name);
    }
  }
  const std::string scratch = ScratchKey;
};

TEST_F(RegistryTest, OpensOnlyExistingKeys) {
  MakeKey(HKEY_CURRENT_USER, scratch + "\\Some Key\\\x95\x5c\\below");
  for (const char *path : {"", "\\Some Key", "\\sOME kEY\\\x95\x5c\\BELOW", "\\Some Key\\", "\\Some Key\\\x95\x5c"})
    EXPECT_TRUE(KeyThere(HKEY_CURRENT_USER, scratch + path)) << path;
  for (const char *path : {"\\Some", "\\Some Key\\\x95", "\\Some Key\\\x95\x7c", "\\missing\\below"})
    EXPECT_FALSE(KeyThere(HKEY_CURRENT_USER, scratch + path)) << path;
}

TEST_F(RegistryTest, CreatesEveryMissingKey) {
  DWORD disposition = 0;
  EXPECT_EQ(Create(HKEY_CURRENT_USER, scratch + "\\A\\B\\C\\", &disposition), ERROR_SUCCESS);
  EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);
  for (const char *path : {"\\a\\b\\c", "\\A", ""}) {
    EXPECT_EQ(Create(HKEY_CURRENT_USER, scratch + path, &disposition), ERROR_SUCCESS);
    EXPECT_EQ(disposition, REG_OPENED_EXISTING_KEY);
  }
  const TestKey key = Opened();
  EXPECT_EQ(Create(key.Get(), std::string(255, 'x')), ERROR_SUCCESS);
  // A longer name is refused. That isn't tested: Wine makes the key, and then can't enumerate it.
  EXPECT_EQ(Subkeys(key.Get()), (std::vector<std::string>{"A", std::string(255, 'x')}));
}

TEST_F(RegistryTest, HandlesHaveTheRightsAskedFor) {
  PutDword(HKEY_CURRENT_USER, scratch, "v", 1);
  const std::tuple<REGSAM, LSTATUS, LSTATUS, LSTATUS> cases[] = {
      {KEY_ALL_ACCESS, ERROR_SUCCESS, ERROR_SUCCESS, ERROR_NO_MORE_ITEMS},
      {KEY_READ, ERROR_SUCCESS, ERROR_ACCESS_DENIED, ERROR_NO_MORE_ITEMS},
      {KEY_SET_VALUE, ERROR_ACCESS_DENIED, ERROR_SUCCESS, ERROR_ACCESS_DENIED},
  };
  for (const auto &[access, query, set, enumerate] : cases) {
    SCOPED_TRACE(access);
    const TestKey key = Opened(access);
    char name[8];
    EXPECT_EQ(RegQueryValueExA(key.Get(), "v", nullptr, nullptr, nullptr, nullptr), query);
    EXPECT_EQ(Set(key.Get(), "w", REG_SZ, "text"), set);
    EXPECT_EQ(RegDeleteValueA(key.Get(), "w"), set);
    EXPECT_EQ(RegEnumKeyA(key.Get(), 0, name, sizeof name), enumerate);
  }
  // The parent key's own rights decide whether a key can be made, not those of the handle.
  const TestKey reading = Opened(KEY_READ);
  EXPECT_EQ(Create(reading.Get(), "below"), ERROR_SUCCESS);
}

TEST_F(RegistryTest, ValuesComeBackAsTheyWereWritten) {
  const TestKey key = Opened();
  const std::string kanji("\x95\x5c \x83\x5c\0", 6);
  const std::tuple<const char *, DWORD, std::string> cases[] = {
      {"number", REG_DWORD, std::string("\x78\x56\x34\x92", 4)},
      {"bytes", REG_BINARY, std::string("\0\xff\\\"\n", 5)},
      {"no bytes", REG_BINARY, ""},
      {"text", REG_SZ, kanji},
      {"empty", REG_SZ, std::string(1, '\0')},
      {"zeros", REG_SZ, std::string("a\0b\0\0", 5)},
      {"no text", REG_SZ, ""},
      {"variable", REG_EXPAND_SZ, "%SystemRoot%\\" + kanji},
      {"long", REG_SZ, std::string(70000, 'x') + '\0'},
      {"\x95\x5c\\a=\"b\"", REG_SZ, kanji},
      {"", REG_SZ, kanji}};
  for (const auto &[name, type, data] : cases)
    EXPECT_EQ(Set(key.Get(), name, type, data), ERROR_SUCCESS) << name;
  for (const auto &[name, type, data] : cases) {
    DWORD given = 99;
    EXPECT_EQ(RegQueryValueExA(key.Get(), name, nullptr, &given, nullptr, nullptr), ERROR_SUCCESS) << name;
    EXPECT_EQ(given, type) << name;
    EXPECT_EQ(Get(key.Get(), name), data) << name;
  }
  EXPECT_EQ(Get(key.Get(), nullptr), kanji);
  EXPECT_EQ(RegSetValueExA(key.Get(), "text", 0, REG_SZ, reinterpret_cast<const BYTE *>("1234"), 4), ERROR_SUCCESS);
  EXPECT_EQ(Get(key.Get(), "text"), std::string("1234\0", 5)); // the terminator came after the data
  EXPECT_EQ(RegSetValueExA(key.Get(), "text", 0, REG_SZ, reinterpret_cast<const BYTE *>("1234"), 2), ERROR_SUCCESS);
  EXPECT_EQ(Get(key.Get(), "text"), "12");
}

TEST_F(RegistryTest, NamesOfValuesMatchWithoutCase) {
  const TestKey key = Opened();
  for (const char *name : {"Name", "NAME", "\x82\x60", "\x82\x81", "\x83\x41", "\x83\x61"})
    EXPECT_EQ(Set(key.Get(), name, REG_SZ, name), ERROR_SUCCESS);
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, scratch),
            (std::vector<std::string>{"Name=NAME", "\x82\x60=\x82\x81", "\x83\x41=\x83\x41", "\x83\x61=\x83\x61"}));
  EXPECT_EQ(RegDeleteValueA(key.Get(), "nAME"), ERROR_SUCCESS);
  EXPECT_EQ(RegDeleteValueA(key.Get(), "Name"), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryTest, SizesOfQueriedValues) {
  const TestKey key = Opened();
  Set(key.Get(), "text", REG_SZ, std::string("\x95\x5c!\0", 4));
  Set(key.Get(), "open", REG_SZ, "\x95\x5c!");
  Set(key.Get(), "bytes", REG_BINARY, "abc");
  // The room for which value, the result, its size, and the buffer, in which '#' is an unchanged byte.
  const std::tuple<const char *, DWORD, LSTATUS, DWORD, std::string> cases[] = {
      {"text", 6, ERROR_SUCCESS, 4, std::string("\x95\x5c!\0##", 6)},
      {"text", 4, ERROR_SUCCESS, 4, std::string("\x95\x5c!\0##", 6)},
      {"text", 3, ERROR_MORE_DATA, 4, "######"},
      {"text", 0, ERROR_MORE_DATA, 4, "######"},
      {"open", 4, ERROR_SUCCESS, 3, std::string("\x95\x5c!\0##", 6)}, // a terminator is added if there is room
      {"open", 3, ERROR_SUCCESS, 3, "\x95\x5c!###"},
      {"open", 2, ERROR_MORE_DATA, 3, "######"},
      {"bytes", 6, ERROR_SUCCESS, 3, "abc###"},
      {"bytes", 2, ERROR_MORE_DATA, 3, "######"},
  };
  for (const auto &[name, room, result, expectedSize, expected] : cases) {
    SCOPED_TRACE(name + std::to_string(room));
    std::string buffer(6, '#');
    DWORD size = room;
    EXPECT_EQ(RegQueryValueExA(key.Get(), name, nullptr, nullptr, reinterpret_cast<BYTE *>(buffer.data()), &size),
              result);
    EXPECT_EQ(size, expectedSize);
    EXPECT_EQ(buffer, expected);
  }
}

// Names with characters between upper and lower case letters ('_') aren't tested: Wine folds to the other case.
TEST_F(RegistryTest, EnumeratesInOrderOfNames) {
  const TestKey key = Opened();
  for (const char *name : {"b", "\x95\x5c", "C", "a1", "A", "1"})
    EXPECT_EQ(Create(key.Get(), name), ERROR_SUCCESS);
  EXPECT_EQ(Subkeys(key.Get()), (std::vector<std::string>{"1", "A", "a1", "b", "C", "\x95\x5c"}));
  EXPECT_EQ(Create(key.Get(), "B\\below"), ERROR_SUCCESS); // exists already
  EXPECT_EQ(Create(key.Get(), "Aa"), ERROR_SUCCESS);       // moves those after it
  EXPECT_EQ(Subkeys(key.Get()), (std::vector<std::string>{"1", "A", "a1", "Aa", "b", "C", "\x95\x5c"}));

  const std::tuple<DWORD, DWORD, LSTATUS, DWORD, const char *> cases[] = {
      {6, 3, ERROR_SUCCESS, 2, "\x95\x5c"}, {6, 2, ERROR_MORE_DATA, 2, "####"}, {6, 0, ERROR_MORE_DATA, 0, "####"},
      {1, 2, ERROR_SUCCESS, 1, "A"},        {1, 1, ERROR_MORE_DATA, 1, "####"}, {7, 5, ERROR_NO_MORE_ITEMS, 5, "####"},
  };
  for (const auto &[index, room, result, expectedSize, expectedName] : cases) {
    SCOPED_TRACE(std::to_string(index) + " " + std::to_string(room));
    char name[] = "####";
    DWORD size = room;
    EXPECT_EQ(RegEnumKeyExA(key.Get(), index, name, &size, nullptr, nullptr, nullptr, nullptr), result);
    EXPECT_EQ(size, expectedSize);
    EXPECT_STREQ(name, expectedName);
    char again[] = "####";
    EXPECT_EQ(RegEnumKeyA(key.Get(), index, again, room), result);
    EXPECT_STREQ(again, expectedName);
  }
}

} // namespace
