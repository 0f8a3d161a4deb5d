// The user's shell folders.
#include "support/test_machine.h"

namespace {

using ShellTest = MachineTest;

TEST_F(ShellTest, FoldersComeFromTheRegistry) {
  const char *const key = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
  const struct {
    int folder;
    const char *valueName;
  } cases[] = {{CSIDL_APPDATA, "AppData"}, {CSIDL_PROGRAMS, "Programs"}};
  for (const auto &test : cases) {
    SCOPED_TRACE(test.valueName);
    if (!GetString(HKEY_CURRENT_USER, key, test.valueName)) // a new machine may not have the user's folders yet
      PutString(HKEY_CURRENT_USER, key, test.valueName, std::string("C:\\acctkit-test\\\x95\x5c ") + test.valueName);
    MakeFolders(*GetString(HKEY_CURRENT_USER, key, test.valueName)); // Windows ignores a folder that doesn't exist
    ITEMIDLIST *list = nullptr;
    ASSERT_EQ(SHGetSpecialFolderLocation(nullptr, test.folder, &list), S_OK);
    char path[MAX_PATH] = "";
    EXPECT_TRUE(SHGetPathFromIDListA(list, path));
    EXPECT_EQ(std::string(path), GetString(HKEY_CURRENT_USER, key, test.valueName));
    CoTaskMemFree(list);
  }
}

} // namespace
