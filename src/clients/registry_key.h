// The registry as the adapters use it, with one of two accesses, which the name tells. The class RegistryKey and the
// functions in ...FullAccess ask for every right to a key (KEY_ALL_ACCESS): a key that the user may read but not write
// counts as missing. All others make no key, and ask for the right that they need, or for whatever the key gives.
//
// Nothing stays open behind any of them. Texts are in the system's code page. Sizes of texts that are written don't
// count the terminator, sizes of texts that are read do. A null value name is the key's default value. An int32_t is 1
// for success and 0 for failure.
#pragma once

#include "win32/win32.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <variant>
#include <vector>

// Buffers that the clients' values are read into.
constexpr DWORD RegistryTextSize = 512;
// The buffers of ReadPathValue.
constexpr size_t PathValueSize = 256;

// Each operation opens the key afresh and closes it. It succeeds only if every call did, the closing one too.
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
  // of it), appends `suffix` and tells whether the path names an existing file or folder. `subkey` is the key's path
  // going in and the expanded path coming back:
  //
  //   char path[PathValueSize] = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\msimn.exe";
  //   RegistryKey key;
  //   const bool exists = key.ReadPathValue(HKEY_LOCAL_MACHINE, path, nullptr, "") == 1;
  //   // "%ProgramFiles%\Outlook Express\msimn.exe" has left C:\Program Files\Outlook Express\msimn.exe in `path`.
  //
  // A path without such a file comes back too. It is empty if the value, or the folder that a token stands for, can't
  // be read, or the path has more than 255 bytes.
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

// Writes values in their order, making the key where it is missing. A value that can't be written is passed over.
void WriteValuesFullAccess(HKEY root, const std::string &subkey, std::initializer_list<NamedValue> values);

// A text of at most 511 bytes; nothing for a longer one.
std::optional<std::string> ReadTextFullAccess(HKEY root, const std::string &subkey, const char *valueName);

// What RegistryKey::ReadPathValue finds without a suffix.
struct StoredPath {
  std::string text; // expanded; empty if it can't be read
  bool exists;
};
StoredPath ReadPathFullAccess(HKEY root, const std::string &subkey, const char *valueName);

// ---- With no more access than is needed ----

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

// The names of the subkeys, in the registry's order, up to the first of more than 511 bytes. None if the key can't be
// opened.
std::vector<std::string> SubkeyNames(HKEY root, const std::string &subkey);

// A value as it stands in the registry, of any type and length; nothing if it can't be read.
struct RegistryValue {
  DWORD type;
  std::string data;
};
std::optional<RegistryValue> ReadAnyValue(HKEY root, const char *subkey, const char *valueName);
