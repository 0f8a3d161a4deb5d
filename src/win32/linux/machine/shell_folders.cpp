// The user's shell folders, as the registry names them.
#include "win32/win32.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

struct ShellFolder {
  int id;
  const char *valueName;
};
constexpr ShellFolder ShellFolders[] = {{CSIDL_PROGRAMS, "Programs"}, {CSIDL_APPDATA, "AppData"}};

std::string ReadShellFolder(const char *valueName) {
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders", 0,
                    KEY_READ, &key) != ERROR_SUCCESS)
    return {};
  char path[MAX_PATH] = "";
  DWORD size = sizeof path - 1;
  const LSTATUS result = RegQueryValueExA(key, valueName, nullptr, nullptr, reinterpret_cast<BYTE *>(path), &size);
  RegCloseKey(key);
  return result == ERROR_SUCCESS ? path : "";
}

// An item list of ours has one item, the path itself with its terminator.
constexpr size_t ItemHeader = offsetof(SHITEMID, abID);

} // namespace

HRESULT SHGetSpecialFolderLocation(HWND, int folder, ITEMIDLIST **list) {
  *list = nullptr;
  for (const ShellFolder &known : ShellFolders) {
    if (known.id != folder)
      continue;
    const std::string path = ReadShellFolder(known.valueName);
    if (path.empty())
      return E_FAIL;
    const size_t itemSize = ItemHeader + path.size() + 1;
    auto *const made = static_cast<char *>(std::calloc(1, itemSize + sizeof(WORD)));
    if (made == nullptr)
      return E_FAIL;
    const auto size = static_cast<WORD>(itemSize);
    std::memcpy(made, &size, sizeof size);
    std::memcpy(made + ItemHeader, path.c_str(), path.size() + 1);
    *list = reinterpret_cast<ITEMIDLIST *>(made);
    return S_OK;
  }
  return E_INVALIDARG;
}

BOOL SHGetPathFromIDListA(const ITEMIDLIST *list, char *path) {
  path[0] = '\0';
  if (list == nullptr || list->mkid.cb <= ItemHeader || list->mkid.cb > ItemHeader + MAX_PATH)
    return FALSE;
  std::memcpy(path, reinterpret_cast<const char *>(list) + ItemHeader, list->mkid.cb - ItemHeader);
  return TRUE;
}

void CoTaskMemFree(void *memory) { std::free(memory); }
