// Folders that the registry names, and the program's own path.
#include "win32/win32.h"

#include "win32/linux/machine/paths.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace {

struct CloseKey {
  void operator()(HKEY key) const { RegCloseKey(key); }
};
using OwnedKey = std::unique_ptr<HKEY__, CloseKey>;

// A path of the registry; empty if there is none.
std::string ReadPath(HKEY root, const char *key, const char *valueName) {
  HKEY opened = nullptr;
  RegOpenKeyExA(root, key, 0, KEY_READ, &opened);
  const OwnedKey owned(opened);
  char path[MAX_PATH] = "";
  DWORD type = REG_NONE;
  DWORD size = sizeof path - 1;
  const bool read = owned != nullptr && RegQueryValueExA(opened, valueName, nullptr, &type,
                                                         reinterpret_cast<BYTE *>(path), &size) == ERROR_SUCCESS;
  return read && type == REG_SZ ? path : "";
}

constexpr HRESULT Failure = static_cast<HRESULT>(0x80004005U);
constexpr HRESULT InvalidArgument = static_cast<HRESULT>(0x80070057U);

} // namespace

// A list of ours is the path itself.
struct ITEMIDLIST {
  char path[MAX_PATH];
};

HRESULT SHGetSpecialFolderLocation(HWND, int folder, ITEMIDLIST **list) {
  *list = nullptr;
  if (folder != CSIDL_APPDATA)
    return InvalidArgument;
  const std::string path =
      ReadPath(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders", "AppData");
  if (path.empty())
    return Failure;
  *list = static_cast<ITEMIDLIST *>(std::calloc(1, sizeof(ITEMIDLIST)));
  if (*list == nullptr)
    return Failure;
  path.copy((*list)->path, MAX_PATH - 1);
  return S_OK;
}

BOOL SHGetPathFromIDListA(const ITEMIDLIST *list, char *path) {
  std::memcpy(path, list->path, MAX_PATH);
  return TRUE;
}

void CoTaskMemFree(void *memory) { std::free(memory); }

UINT GetWindowsDirectoryA(char *buffer, UINT size) {
  std::string path = ReadPath(HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Windows NT\\CurrentVersion", "SystemRoot");
  if (path.empty())
    path = "C:\\windows";
  if (path.size() >= size)
    return static_cast<UINT>(path.size() + 1);
  std::memcpy(buffer, path.c_str(), path.size() + 1);
  return static_cast<UINT>(path.size());
}

DWORD GetModuleFileNameA(HMODULE, char *buffer, DWORD size) {
  const std::string path = machine::ProgramPath();
  const size_t length = path.copy(buffer, size - 1);
  buffer[length] = '\0';
  return length < path.size() ? size : static_cast<DWORD>(length);
}
