#include "registry_view.h"

#include <cstdio>
#include <cstring>

namespace {

HKEY Open(HKEY root, const std::string &key) {
  HKEY opened = nullptr;
  return RegOpenKeyExA(root, key.c_str(), 0, KEY_READ, &opened) == ERROR_SUCCESS ? opened : nullptr;
}

std::string Shown(DWORD type, const std::string &data) {
  if (type == REG_SZ || type == REG_EXPAND_SZ)
    return data.c_str();
  DWORD number = 0;
  if (type == REG_DWORD && data.size() == sizeof number) {
    std::memcpy(&number, data.data(), sizeof number);
    return std::to_string(number);
  }
  std::string digits;
  for (const char byte : data) {
    char pair[4];
    std::snprintf(pair, sizeof pair, "%02x ", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    digits += pair;
  }
  return digits;
}

} // namespace

std::vector<std::string> Subkeys(HKEY root, const std::string &key) {
  std::vector<std::string> names;
  const HKEY opened = Open(root, key);
  char name[512];
  for (DWORD index = 0; opened != nullptr && RegEnumKeyA(opened, index, name, sizeof name) == ERROR_SUCCESS; ++index)
    names.emplace_back(name);
  if (opened != nullptr)
    RegCloseKey(opened);
  return names;
}

std::optional<std::string> ShownValue(HKEY root, const std::string &key, const char *valueName) {
  const HKEY opened = Open(root, key);
  if (opened == nullptr)
    return std::nullopt;
  DWORD type = REG_NONE;
  DWORD size = 0;
  std::optional<std::string> shown;
  if (RegQueryValueExA(opened, valueName, nullptr, &type, nullptr, &size) == ERROR_SUCCESS) {
    std::string data(size, '\0');
    if (size == 0 || RegQueryValueExA(opened, valueName, nullptr, &type, reinterpret_cast<BYTE *>(data.data()),
                                      &size) == ERROR_SUCCESS)
      shown = Shown(type, data);
  }
  RegCloseKey(opened);
  return shown;
}

std::optional<std::string> FileBytes(const std::string &path) {
  const HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE)
    return std::nullopt;
  std::string bytes;
  char block[16384];
  DWORD read = 0;
  while (ReadFile(file, block, sizeof block, &read, nullptr) && read > 0)
    bytes.append(block, read);
  CloseHandle(file);
  return bytes;
}
