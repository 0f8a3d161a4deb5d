#include "support/test_machine.h"

#include "stores/file_handle.h"
#include "support/dump.h"
#include "support/test_key.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

const char *const ScratchFolder = "C:\\acctkit-test";
const char *const ScratchKey = "Software\\AcctKitTest";

// ---- The registry ----

namespace {

// Makes a key, or opens it.
TestKey Made(HKEY root, const std::string &key) {
  HKEY handle = nullptr;
  EXPECT_EQ(RegCreateKeyExA(root, key.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &handle, nullptr), ERROR_SUCCESS)
      << key;
  return TestKey(handle);
}

TestKey Opened(HKEY root, const std::string &key) {
  HKEY handle = nullptr;
  RegOpenKeyExA(root, key.c_str(), 0, KEY_READ, &handle);
  return TestKey(handle);
}

// The bytes of a value; nothing if it is missing or of another type.
std::optional<std::string> Read(HKEY root, const std::string &key, const char *valueName, DWORD wanted) {
  const TestKey opened = Opened(root, key);
  DWORD type = REG_NONE;
  DWORD size = 0;
  if (!opened || RegQueryValueExA(opened.Get(), valueName, nullptr, &type, nullptr, &size) != ERROR_SUCCESS ||
      type != wanted)
    return std::nullopt;
  std::string bytes(size, '\0');
  RegQueryValueExA(opened.Get(), valueName, nullptr, nullptr, reinterpret_cast<BYTE *>(bytes.data()), &size);
  return bytes;
}

std::string WithoutTerminator(std::string text) {
  if (text.ends_with('\0'))
    text.pop_back();
  return text;
}

} // namespace

void PutValue(HKEY root, const std::string &key, const char *valueName, DWORD type, const std::string &data) {
  const TestKey made = Made(root, key);
  EXPECT_EQ(RegSetValueExA(made.Get(), valueName, 0, type, reinterpret_cast<const BYTE *>(data.data()),
                           static_cast<DWORD>(data.size())),
            ERROR_SUCCESS)
      << key;
}

void PutString(HKEY root, const std::string &key, const char *valueName, const std::string &text) {
  PutValue(root, key, valueName, REG_SZ, text + '\0');
}

void PutDword(HKEY root, const std::string &key, const char *valueName, DWORD number) {
  PutValue(root, key, valueName, REG_DWORD, {reinterpret_cast<const char *>(&number), sizeof number});
}

void MakeKey(HKEY root, const std::string &key) { Made(root, key); }

bool KeyThere(HKEY root, const std::string &key) { return static_cast<bool>(Opened(root, key)); }

std::optional<std::string> GetString(HKEY root, const std::string &key, const char *valueName) {
  const std::optional<std::string> bytes = Read(root, key, valueName, REG_SZ);
  return bytes ? std::optional(WithoutTerminator(*bytes)) : std::nullopt;
}

std::optional<DWORD> GetDword(HKEY root, const std::string &key, const char *valueName) {
  const std::optional<std::string> bytes = Read(root, key, valueName, REG_DWORD);
  DWORD number = 0;
  if (!bytes || bytes->size() != sizeof number)
    return std::nullopt;
  std::memcpy(&number, bytes->data(), sizeof number);
  return number;
}

std::string DumpLine(const std::string &name, DWORD type, const std::string &data) {
  if (type == REG_SZ)
    return name + "=" + WithoutTerminator(data);
  std::string line = name + ":" + std::to_string(type) + "=";
  for (const char byte : data) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(byte));
    line += digits;
  }
  return line;
}

// ---- Files ----

namespace {

// A backslash may be the second byte of a character, so this goes through the path character by character.
void MakeFoldersAbove(const std::string &path) {
  for (size_t index = 3; index < path.size(); ++index) {
    if (IsDBCSLeadByte(static_cast<BYTE>(path[index])) != FALSE)
      ++index;
    else if (path[index] == '\\')
      CreateDirectoryA(path.substr(0, index).c_str(), nullptr);
  }
}

} // namespace

void MakeFolders(const std::string &path) { MakeFoldersAbove(path + '\\'); }

void PutFile(const std::string &path, const std::string &bytes) {
  MakeFoldersAbove(path);
  const FileHandle file(
      CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  EXPECT_TRUE(file && WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr)) << path;
}

std::optional<std::string> GetFile(const std::string &path) {
  const FileHandle file(CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file)
    return std::nullopt;
  std::string bytes(1 << 20, '\0');
  DWORD size = 0;
  EXPECT_TRUE(ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &size, nullptr)) << path;
  bytes.resize(size);
  return bytes;
}

void CopyOntoMachine(const std::string &buildFile, const std::string &path) {
  std::ifstream file(buildFile, std::ios::binary);
  ASSERT_TRUE(file) << buildFile;
  PutFile(path, {std::istreambuf_iterator<char>(file), {}});
}
