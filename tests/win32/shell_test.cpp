// The user's shell folder.
#include "support/test_machine.h"

namespace {

using ShellTest = MachineTest;

TEST_F(ShellTest, TheFolderOfApplicationDataComesFromTheRegistry) {
  const char *const key = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
  if (!GetString(HKEY_CURRENT_USER, key, "AppData")) // a new machine may have no user's folders yet
    PutString(HKEY_CURRENT_USER, key, "AppData", "C:\\acctkit-test\\\x95\x5c");
  MakeFolders(*GetString(HKEY_CURRENT_USER, key, "AppData")); // a folder that is gone is none to Windows
  ITEMIDLIST *list = nullptr;
  ASSERT_EQ(SHGetSpecialFolderLocation(nullptr, CSIDL_APPDATA, &list), S_OK);
  char path[MAX_PATH] = "";
  EXPECT_TRUE(SHGetPathFromIDListA(list, path));
  EXPECT_EQ(std::string(path), GetString(HKEY_CURRENT_USER, key, "AppData"));
  CoTaskMemFree(list);
}

} // namespace
