#include "clients/registry_key.h"

#include "clients/file_queries.h"
#include "clients/windows_layout.h"

#include <cstring>

// ---- RegistryKey ----

bool RegistryKey::Open(HKEY root, const char *subkey) {
  status = RegOpenKeyExA(root, subkey, 0, KEY_ALL_ACCESS, &handle);
  return status == ERROR_SUCCESS;
}

int32_t RegistryKey::Close() {
  const LSTATUS closed = RegCloseKey(handle);
  handle = nullptr;
  if (status == ERROR_SUCCESS)
    status = closed;
  return status == ERROR_SUCCESS ? 1 : 0;
}

int32_t RegistryKey::KeyExists(HKEY root, const char *subkey) { return Open(root, subkey) ? Close() : 0; }

int32_t RegistryKey::DeleteValue(HKEY root, const char *subkey, const char *valueName) {
  if (!Open(root, subkey))
    return 0;
  status = RegDeleteValueA(handle, valueName);
  return Close();
}

int32_t RegistryKey::WriteValue(HKEY root, const char *subkey, const char *valueName, DWORD type, const void *data,
                                DWORD size) {
  status = RegCreateKeyExA(root, subkey, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr, &handle,
                           &disposition);
  if (status != ERROR_SUCCESS)
    return 0;
  status = RegSetValueExA(handle, valueName, 0, type, static_cast<const BYTE *>(data), size);
  return Close();
}

int32_t RegistryKey::ReadValue(HKEY root, const char *subkey, const char *valueName, DWORD &type, void *buffer,
                               DWORD &size) {
  if (!Open(root, subkey))
    return 0;
  status = RegQueryValueExA(handle, valueName, nullptr, &type, static_cast<BYTE *>(buffer), &size);
  return Close();
}

namespace {

// Reads a text into a buffer of `size` bytes; false if it isn't there or doesn't fit with its terminator.
bool ReadBounded(RegistryKey &key, HKEY root, const char *subkey, const char *valueName, char *buffer, DWORD size) {
  std::memset(buffer, 0, size);
  DWORD type = REG_NONE;
  DWORD length = size;
  return key.ReadValue(root, subkey, valueName, type, buffer, length) != 0 &&
         std::memchr(buffer, '\0', size) != nullptr;
}

// The drive of the Windows directory, as in "C:".
std::string SystemDrive() {
  char directory[PathValueSize] = "";
  GetWindowsDirectoryA(directory, sizeof directory);
  const std::string text = directory;
  return text.substr(0, text.find(':') + 1);
}

} // namespace

int32_t RegistryKey::ReadPathValue(HKEY root, char (&subkey)[PathValueSize], const char *valueName,
                                   const char *suffix) {
  static constexpr char DriveToken[] = "%SystemDrive%";
  static constexpr char ProgramsToken[] = "%ProgramFiles%";

  char value[PathValueSize];
  const bool found = ReadBounded(*this, root, subkey, valueName, value, sizeof value);
  subkey[0] = '\0';
  if (!found)
    return 0;

  std::string path = value;
  if (const size_t drive = path.find(DriveToken); drive != std::string::npos) {
    path.replace(drive, std::strlen(DriveToken), SystemDrive());
  } else if (const size_t programs = path.find(ProgramsToken); programs != std::string::npos) {
    char folder[PathValueSize];
    if (!ReadBounded(*this, HKEY_LOCAL_MACHINE, WindowsKey, ProgramFilesValue, folder, sizeof folder))
      return 0;
    path = folder + path.substr(programs + std::strlen(ProgramsToken));
  }
  path += suffix;
  if (path.size() >= PathValueSize)
    return 0;
  std::memcpy(subkey, path.c_str(), path.size() + 1);
  return PathExists(path.c_str());
}

void WriteValuesFullAccess(HKEY root, const std::string &subkey, std::initializer_list<NamedValue> values) {
  RegistryKey key;
  for (const NamedValue &value : values) {
    if (const auto *text = std::get_if<std::string>(&value.data))
      key.WriteValue(root, subkey.c_str(), value.name, REG_SZ, text->c_str(), static_cast<DWORD>(text->size()));
    else
      key.WriteValue(root, subkey.c_str(), value.name, REG_DWORD, &std::get<DWORD>(value.data), sizeof(DWORD));
  }
}

std::optional<std::string> ReadTextFullAccess(HKEY root, const std::string &subkey, const char *valueName) {
  RegistryKey key;
  char buffer[RegistryTextSize];
  if (!ReadBounded(key, root, subkey.c_str(), valueName, buffer, sizeof buffer))
    return std::nullopt;
  return buffer;
}

StoredPath ReadPathFullAccess(HKEY root, const std::string &subkey, const char *valueName) {
  char buffer[PathValueSize] = "";
  if (subkey.size() >= sizeof buffer)
    return {"", false};
  subkey.copy(buffer, subkey.size());
  RegistryKey key;
  const bool exists = key.ReadPathValue(root, buffer, valueName, "") != 0;
  return {buffer, exists};
}

// ---- With no more access than is needed ----

namespace {

// A key that is open until the end of its scope, unless it couldn't be opened.
class ScopedKey {
public:
  // With every right that the key gives.
  ScopedKey(HKEY root, const char *subkey) {
    if (RegOpenKeyA(root, subkey, &handle) != ERROR_SUCCESS)
      handle = nullptr;
  }
  ScopedKey(HKEY root, const char *subkey, REGSAM access) {
    if (RegOpenKeyExA(root, subkey, 0, access, &handle) != ERROR_SUCCESS)
      handle = nullptr;
  }
  ~ScopedKey() {
    if (handle != nullptr)
      RegCloseKey(handle);
  }
  ScopedKey(const ScopedKey &) = delete;
  ScopedKey &operator=(const ScopedKey &) = delete;

  explicit operator bool() const { return handle != nullptr; }
  HKEY Get() const { return handle; }

private:
  HKEY handle = nullptr;
};

int32_t SetValue(HKEY root, const char *subkey, const char *valueName, DWORD type, const void *data, size_t size) {
  const ScopedKey key(root, subkey, KEY_SET_VALUE);
  return key && RegSetValueExA(key.Get(), valueName, 0, type, static_cast<const BYTE *>(data),
                               static_cast<DWORD>(size)) == ERROR_SUCCESS
             ? 1
             : 0;
}

} // namespace

int32_t KeyReadable(HKEY root, const char *subkey) { return ScopedKey(root, subkey, KEY_READ) ? 1 : 0; }

int32_t WriteDwordValue(HKEY root, const char *subkey, const char *valueName, DWORD value) {
  return SetValue(root, subkey, valueName, REG_DWORD, &value, sizeof value);
}

int32_t ReadDwordValue(HKEY root, const char *subkey, const char *valueName, DWORD &value) {
  value = 0;
  const ScopedKey key(root, subkey, KEY_READ);
  DWORD read = 0;
  DWORD size = sizeof read;
  if (!key ||
      RegQueryValueExA(key.Get(), valueName, nullptr, nullptr, reinterpret_cast<BYTE *>(&read), &size) != ERROR_SUCCESS)
    return 0;
  value = read;
  return 1;
}

int32_t WriteStringValue(HKEY root, const char *subkey, const char *valueName, const char *text) {
  return SetValue(root, subkey, valueName, REG_SZ, text, std::strlen(text));
}

int32_t ReadStringValue(HKEY root, const char *subkey, const char *valueName, std::string &out) {
  const auto value = ReadAnyValue(root, subkey, valueName);
  out = value ? value->data.c_str() : "";
  return value ? 1 : 0;
}

int32_t DeleteNamedValue(HKEY root, const char *subkey, const char *valueName) {
  const ScopedKey key(root, subkey, KEY_SET_VALUE);
  return key && RegDeleteValueA(key.Get(), valueName) == ERROR_SUCCESS ? 1 : 0;
}

int32_t CollectSubkeys(HKEY root, const std::string &path, std::vector<std::string> &list) {
  const ScopedKey key(root, path.c_str(), KEY_ENUMERATE_SUB_KEYS);
  if (!key)
    return 0;
  char name[PathValueSize];
  for (DWORD index = 0;; ++index) {
    DWORD size = sizeof name;
    const LSTATUS result = RegEnumKeyExA(key.Get(), index, name, &size, nullptr, nullptr, nullptr, nullptr);
    if (result == ERROR_MORE_DATA)
      continue; // a name too long for the buffer, which no client makes
    if (result != ERROR_SUCCESS)
      return 1;
    const std::string below = path + '\\' + name;
    CollectSubkeys(root, below, list);
    list.push_back(below);
  }
}

std::vector<std::string> SubkeyNames(HKEY root, const std::string &subkey) {
  const ScopedKey key(root, subkey.c_str());
  std::vector<std::string> names;
  char name[RegistryTextSize];
  for (DWORD index = 0; key && RegEnumKeyA(key.Get(), index, name, sizeof name) == ERROR_SUCCESS; ++index)
    names.emplace_back(name);
  return names;
}

std::optional<RegistryValue> ReadAnyValue(HKEY root, const char *subkey, const char *valueName) {
  // Beyond the value's own size, so that a text without a terminator gets one.
  constexpr DWORD Spare = 10;

  const ScopedKey key(root, subkey, KEY_READ);
  DWORD size = 0;
  if (!key || RegQueryValueExA(key.Get(), valueName, nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS)
    return std::nullopt;
  RegistryValue value = {REG_NONE, std::string(size + Spare, '\0')};
  if (RegQueryValueExA(key.Get(), valueName, nullptr, &value.type, reinterpret_cast<BYTE *>(value.data.data()),
                       &size) != ERROR_SUCCESS)
    return std::nullopt;
  value.data.resize(size);
  return value;
}
