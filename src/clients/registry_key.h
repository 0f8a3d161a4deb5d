// What the adapters share for the registry: the class RegistryKey, which asks for every right to a key, and free
// utilities that ask only for what they need. Nothing stays open behind any of them.
//
// Texts are in the system's code page. Sizes of texts that are written don't count the terminator, sizes of texts that
// are read do. A null value name is the key's default value. All answer 1 on success and 0 otherwise.
#pragma once

#include "win32/win32.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <variant>
#include <vector>

// Buffers that the clients' values are read into.
constexpr DWORD RegistryTextSize = 512;
// The buffers of ReadPathValue.
constexpr size_t PathValueSize = 256;

// Each operation opens the key afresh with KEY_ALL_ACCESS and closes it, so a key that the user may read but not write
// counts as missing. An operation succeeds only if every call did, the closing one too.
class RegistryKey {
public:
  virtual ~RegistryKey() = default;

  int32_t KeyExists(HKEY root, const char *subkey);

  // Removes a value; the key stays. 0 if there is no such value.
  int32_t DeleteValue(HKEY root, const char *subkey, const char *valueName);

  // Writes a value, making every missing key on the way. `size` is in bytes.
  int32_t WriteValue(HKEY root, const char *subkey, const char *valueName, DWORD type, const void *data, DWORD size);

  // Reads a value into a buffer of `size` bytes; `size` comes back as the length of the data.
  int32_t ReadValue(HKEY root, const char *subkey, const char *valueName, DWORD &type, void *buffer, DWORD &size);

  // Reads a path, expands the first %SystemDrive% in it (else the first %ProgramFiles%, which drops what stands ahead
  // of it), appends `suffix` and tells whether the path names an existing file or folder. `subkey` names the key going
  // in and holds the expanded path coming back, also if there is no such file; it is empty if the value, or the folder
  // that a token stands for, can't be read, or the path has more than 255 bytes.
  int32_t ReadPathValue(HKEY root, char (&subkey)[PathValueSize], const char *valueName, const char *suffix);

  // The result code of the last registry call.
  LSTATUS Status() const { return status; }

private:
  bool Open(HKEY root, const char *subkey);
  // Closes the key; 1 if that and the call whose result is in `status` succeeded.
  int32_t Close();

  HKEY handle = nullptr;
  DWORD disposition = 0;
  LSTATUS status = ERROR_SUCCESS;
};

// A value as the adapters write it: REG_SZ, with a length that doesn't count the terminator, or REG_DWORD.
struct NamedValue {
  const char *name;
  std::variant<std::string, DWORD> data;
};

// Writes values in their order, making the key where it is missing. No result is looked at: what the clients' stores
// don't take is passed over.
void WriteValues(HKEY root, const std::string &subkey, std::initializer_list<NamedValue> values);
// Reads a text of at most 511 bytes as RegistryKey does; `text` is empty on 0.
int32_t ReadText(HKEY root, const std::string &subkey, const char *valueName, std::string &text);
// RegistryKey::ReadPathValue without a suffix; `path` takes what that leaves in its buffer.
int32_t ReadPath(HKEY root, const char *subkey, const char *valueName, std::string &path);

// ---- Utilities that make no key and ask only for the access they need ----

int32_t KeyReadable(HKEY root, const char *subkey);
int32_t WriteDwordValue(HKEY root, const char *subkey, const char *valueName, DWORD value);
// `value` is 0 if it can't be read.
int32_t ReadDwordValue(HKEY root, const char *subkey, const char *valueName, DWORD &value);
int32_t WriteStringValue(HKEY root, const char *subkey, const char *valueName, const char *text);
// A text of any length; `out` is empty if it can't be read.
int32_t ReadStringValue(HKEY root, const char *subkey, const char *valueName, std::string &out);
int32_t DeleteNamedValue(HKEY root, const char *subkey, const char *valueName);
// Adds the paths of all keys below `path` to the list, a key's descendants ahead of it. 0 if `path` can't be opened;
// names of more than 255 bytes, which no client makes, are left out.
int32_t CollectSubkeys(HKEY root, const std::string &path, std::vector<std::string> &list);

// The name of the subkey at an index of an open key; false at the end. Names have at most 511 bytes.
bool EnumSubkey(HKEY key, DWORD index, std::string &name);

// Closes a key at the end of its scope; null if it couldn't be opened.
class ScopedKey {
public:
  // With every right that the key gives, or with `access` alone.
  ScopedKey(HKEY root, const char *subkey);
  ScopedKey(HKEY root, const char *subkey, REGSAM access);
  ~ScopedKey();
  ScopedKey(const ScopedKey &) = delete;
  ScopedKey &operator=(const ScopedKey &) = delete;

  explicit operator bool() const { return handle != nullptr; }
  HKEY Get() const { return handle; }

private:
  HKEY handle = nullptr;
};
