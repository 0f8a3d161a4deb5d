// The registry utilities: which of them make keys, what they read, and the expansion of paths.
#include "clients/registry_key.h"

#include "support/test_machine.h"

#include <cstring>
#include <tuple>

namespace {

class RegistryUtilitiesTest : public MachineTest {
protected:
  const std::string key = std::string(ScratchKey) + "\\Key";
  RegistryKey registry;
};

TEST_F(RegistryUtilitiesTest, OnlyRegistryKeyMakesKeys) {
  EXPECT_EQ(WriteStringValue(HKEY_CURRENT_USER, key.c_str(), "v", "text"), 0);
  EXPECT_EQ(WriteDwordValue(HKEY_CURRENT_USER, key.c_str(), "v", 1), 0);
  EXPECT_FALSE(KeyThere(HKEY_CURRENT_USER, key));
  EXPECT_EQ(registry.KeyExists(HKEY_CURRENT_USER, key.c_str()), 0);
  EXPECT_EQ(registry.Status(), ERROR_FILE_NOT_FOUND);

  EXPECT_EQ(registry.WriteValue(HKEY_CURRENT_USER, key.c_str(), nullptr, REG_SZ, "text", 4), 1);
  EXPECT_EQ(WriteStringValue(HKEY_CURRENT_USER, key.c_str(), "v", "表"), 1);
  EXPECT_EQ(WriteDwordValue(HKEY_CURRENT_USER, key.c_str(), "n", 0x80000000), 1);
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, key), (std::vector<std::string>{"=text", "n:4=00000080", "v=表"}));
  EXPECT_EQ(registry.DeleteValue(HKEY_CURRENT_USER, key.c_str(), "v"), 1);
  EXPECT_EQ(registry.DeleteValue(HKEY_CURRENT_USER, key.c_str(), "v"), 0);
  EXPECT_EQ(DeleteNamedValue(HKEY_CURRENT_USER, key.c_str(), "n"), 1);
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, key), std::vector<std::string>{"=text"});
}

TEST_F(RegistryUtilitiesTest, ReadsClearWhatTheyCannotRead) {
  PutString(HKEY_CURRENT_USER, key, "text", std::string(600, 'x'));
  PutValue(HKEY_CURRENT_USER, key, "open", REG_SZ, "no end");
  std::string text = "old";
  DWORD number = 5;
  EXPECT_EQ(ReadDwordValue(HKEY_CURRENT_USER, key.c_str(), "text", number), 0);
  EXPECT_EQ(number, 0U);
  EXPECT_EQ(ReadStringValue(HKEY_CURRENT_USER, key.c_str(), "none", text), 0);
  EXPECT_EQ(text, "");
  EXPECT_EQ(ReadStringValue(HKEY_CURRENT_USER, key.c_str(), "text", text), 1);
  EXPECT_EQ(text, std::string(600, 'x'));
  EXPECT_EQ(ReadTextFullAccess(HKEY_CURRENT_USER, key, "text"), std::nullopt);
  EXPECT_EQ(ReadTextFullAccess(HKEY_CURRENT_USER, key, "open"), "no end");
}

TEST_F(RegistryUtilitiesTest, CollectsDescendantsAheadOfTheirKey) {
  for (const char *below : {"\\A\\B\\C", "\\D", "\\A\\表"})
    MakeKey(HKEY_CURRENT_USER, key + below);
  std::vector<std::string> list;
  EXPECT_EQ(CollectSubkeys(HKEY_CURRENT_USER, key, list), 1);
  EXPECT_EQ(list,
            (std::vector<std::string>{key + "\\A\\B\\C", key + "\\A\\B", key + "\\A\\表", key + "\\A", key + "\\D"}));
  EXPECT_EQ(CollectSubkeys(HKEY_CURRENT_USER, key + "\\none", list), 0);
}

TEST_F(RegistryUtilitiesTest, ReadPathValueExpandsOneToken) {
  const char *const versionKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
  const std::optional<std::string> saved = GetString(HKEY_LOCAL_MACHINE, versionKey, "ProgramFilesDir");
  PutString(HKEY_LOCAL_MACHINE, versionKey, "ProgramFilesDir", "C:\\acctkit-test\\Programs");
  PutFile("C:\\acctkit-test\\Programs\\表.exe", "");
  char windows[MAX_PATH];
  GetWindowsDirectoryA(windows, sizeof windows);
  const std::string drive(windows, 2);
  const std::tuple<std::string, std::string, std::string, int32_t> cases[] = {
      {"C:\\acctkit-test\\Programs\\表.exe", "", "C:\\acctkit-test\\Programs\\表.exe", 1},
      {"C:\\acctkit-test\\Programs", "\\表.exe", "C:\\acctkit-test\\Programs\\表.exe", 1},
      {"%SystemDrive%\\acctkit-test", "", drive + "\\acctkit-test", 1},
      {"\"%SystemDrive%\\a.exe\" %1", "", "\"" + drive + "\\a.exe\" %1", 0},
      {"ahead%ProgramFiles%\\表.exe", "", "C:\\acctkit-test\\Programs\\表.exe", 1},
      {"%ProgramFiles%%SystemDrive%", "", "%ProgramFiles%" + drive, 0},
      {"C:\\none.exe", "", "C:\\none.exe", 0},
      {std::string(255, 'x'), "", std::string(255, 'x'), 0},
      {std::string(250, 'x'), "suffix", "", 0},
      {std::string(256, 'x'), "", "", 0},
  };
  for (const auto &[value, suffix, path, result] : cases) {
    PutString(HKEY_CURRENT_USER, key, nullptr, value);
    char buffer[PathValueSize] = "";
    key.copy(buffer, sizeof buffer - 1);
    EXPECT_EQ(registry.ReadPathValue(HKEY_CURRENT_USER, buffer, nullptr, suffix.c_str()), result) << value;
    EXPECT_EQ(buffer, path);
  }
  if (saved)
    PutString(HKEY_LOCAL_MACHINE, versionKey, "ProgramFilesDir", *saved);
}

} // namespace
