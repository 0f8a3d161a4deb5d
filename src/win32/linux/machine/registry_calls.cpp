// The registry calls, on the two hives of the machine folder. The divisions: where a call works (handle, path, edit),
// keys, values, and the calls themselves.
#include "win32/win32.h"

#include "win32/linux/machine/handle_table.h"
#include "win32/linux/machine/hives.h"
#include "win32/linux/machine/running_transaction.h"
#include "win32/linux/machine/wow64.h"
#include "win32/linux/text/code_page.h"

#include <cstring>
#include <memory>
#include <utility>

namespace {

using machine::Hive;
using machine::HiveFile;
using machine::HiveValue;

// Results that nobody tells apart.
constexpr LSTATUS ERROR_INVALID_HANDLE = 6;
constexpr LSTATUS ERROR_INVALID_PARAMETER = 87;
constexpr LSTATUS ERROR_BAD_PATHNAME = 161;
constexpr LSTATUS ERROR_KEY_DELETED = 1018;

constexpr REGSAM KEY_QUERY_VALUE = 0x0001;
constexpr REGSAM KEY_CREATE_SUB_KEY = 0x0004;
constexpr REGSAM RightsToWrite = KEY_SET_VALUE | KEY_CREATE_SUB_KEY | 0x000D0000; // and to delete, or change who may
constexpr REGSAM MaximumAllowed = 0x02000000;

// A key that a handle stands for, in the content of its hive when it was opened.
struct OpenKey {
  std::shared_ptr<HiveFile> file;
  std::shared_ptr<Hive> content;
  Hive::Key *key; // null if it is gone
  REGSAM access;
};

machine::HandleTable<HKEY, OpenKey> openKeys{0x90000000}; // behind the roots

std::u16string ToWideOrEmpty(const char *name) { return name != nullptr ? text::ToWide(name) : std::u16string(); }

// ---- Where a call works ----

bool IsRoot(HKEY handle) { return handle == HKEY_LOCAL_MACHINE || handle == HKEY_CURRENT_USER; }

std::shared_ptr<OpenKey> RootOf(HKEY handle) {
  const machine::Hives &hives = machine::CurrentHives();
  const auto &file = handle == HKEY_LOCAL_MACHINE ? hives.localMachine : hives.currentUser;
  return std::make_shared<OpenKey>(OpenKey{file, nullptr, nullptr, KEY_ALL_ACCESS});
}

// A key's own path, which isn't always the one that it was found by.
std::u16string PathOf(const Hive::Key &key) {
  std::u16string path;
  for (const Hive::Key *at = &key; at->parent != nullptr; at = at->parent)
    path.insert(0, at->name).insert(0, u"\\");
  return path;
}

// Finds a key again, should its hive have been loaded anew.
LSTATUS Resolve(OpenKey &open) {
  if (open.content != open.file->SharedContent()) {
    Hive &hive = open.file->Content();
    if (open.content == nullptr)
      open.key = &hive.Root();
    else if (open.key != nullptr)
      open.key = hive.Find(hive.Root(), PathOf(*open.key));
    open.content = open.file->SharedContent();
  }
  return open.key != nullptr ? ERROR_SUCCESS : ERROR_KEY_DELETED;
}

// Does a call's work at the key of its handle, which must have been opened with the rights that are needed.
template <typename Work> LSTATUS At(HKEY handle, REGSAM needed, Work work) {
  const machine::ThreadGuard threads;
  const std::shared_ptr<OpenKey> open = IsRoot(handle) ? RootOf(handle) : openKeys.Find(handle);
  if (open == nullptr)
    return ERROR_INVALID_HANDLE;
  LSTATUS result = IsRoot(handle) ? open->file->Refresh() : open->file->RefreshOpened();
  if (result == ERROR_SUCCESS)
    result = Resolve(*open);
  if (result != ERROR_SUCCESS)
    return result;
  return (open->access & needed) == needed ? work(*open) : ERROR_ACCESS_DENIED;
}

// The path that a caller names below a key. False for one that can't be.
bool ReadPath(const char *subkey, std::u16string &path) {
  path = ToWideOrEmpty(subkey);
  if (path.starts_with(u'\\'))
    return false;
  while (path.ends_with(u'\\'))
    path.pop_back();
  return true;
}

// Changes the key that a call works at. Without a transaction around it the call is one: the change is on disk then.
template <typename Change> LSTATUS Edit(HKEY handle, REGSAM needed, Change change) {
  // A call that can't work needs no lock.
  if (const LSTATUS usable = At(handle, needed, [](const OpenKey &) { return ERROR_SUCCESS; }); usable != ERROR_SUCCESS)
    return usable;
  machine::Transaction transaction(machine::Purpose::OneCall);
  const LSTATUS result = At(handle, needed, [&](const OpenKey &open) {
    return open.file->Edit([&](Hive &hive, bool &changed) -> LSTATUS { return change(hive, open, changed); });
  });
  return transaction.Commit() || result != ERROR_SUCCESS ? result : ERROR_BADDB;
}

// The key at a path below another one, null if there is none.
Hive::Key *Find(const OpenKey &open, const std::u16string &path) {
  const machine::Reached reached = machine::Reach(*open.file, *open.key, path);
  return reached.rest.empty() ? reached.key : nullptr;
}

// ---- Keys ----

// Hands out a handle to a key with the access that is asked for.
LSTATUS HandOut(OpenKey opened, HKEY *result) {
  const bool readOnly = opened.file->IsReadOnly();
  if ((opened.access & RightsToWrite) != 0 && readOnly)
    return ERROR_ACCESS_DENIED;
  if ((opened.access & MaximumAllowed) != 0)
    opened.access = readOnly ? KEY_READ : KEY_ALL_ACCESS;
  *result = openKeys.Add(std::make_shared<OpenKey>(std::move(opened)));
  return ERROR_SUCCESS;
}

// ---- Values ----

// A value's data as the calls see it: texts in code page 932.
std::string AnsiData(HiveValue value) {
  return machine::IsText(value.type) ? text::FromWide(text::WideOf(value.data)) : std::move(value.data);
}

// The data that a caller gives, as the registry holds it.
std::string StoredData(DWORD type, const BYTE *data, DWORD size) {
  if (data == nullptr)
    return {};
  std::string given(reinterpret_cast<const char *>(data), size);
  if (!machine::IsText(type))
    return given;
  // A caller who forgot to count the terminator gets it all the same.
  if (size > 0 && data[size - 1] != 0 && data[size] == 0)
    given += '\0';
  return std::string(text::BytesOf(text::ToWide(given)));
}

// Hands data to a caller's buffer; without one, only its size.
LSTATUS Give(const std::string &ansi, bool isText, BYTE *buffer, DWORD &size) {
  const DWORD room = std::exchange(size, static_cast<DWORD>(ansi.size()));
  if (buffer == nullptr)
    return ERROR_SUCCESS;
  if (ansi.size() > room)
    return ERROR_MORE_DATA;
  std::memcpy(buffer, ansi.data(), ansi.size());
  // A text that was stored without a terminator gets one where there is room; the size doesn't count it.
  if (isText && ansi.size() < room && !ansi.ends_with('\0'))
    buffer[ansi.size()] = 0;
  return ERROR_SUCCESS;
}

} // namespace

// ---- The calls ----

LSTATUS RegOpenKeyExA(HKEY key, const char *subkey, DWORD, REGSAM access, HKEY *result) {
  *result = nullptr;
  std::u16string path;
  if (!ReadPath(subkey, path))
    return ERROR_BAD_PATHNAME;
  return At(key, 0, [&](const OpenKey &open) -> LSTATUS {
    Hive::Key *const found = Find(open, path);
    if (found == nullptr)
      return ERROR_FILE_NOT_FOUND;
    return HandOut({open.file, open.content, found, access}, result);
  });
}

LSTATUS RegOpenKeyA(HKEY key, const char *subkey, HKEY *result) {
  return RegOpenKeyExA(key, subkey, 0, MaximumAllowed, result);
}

LSTATUS RegCreateKeyExA(HKEY key, const char *subkey, DWORD, char *, DWORD, REGSAM access, void *, HKEY *result,
                        DWORD *disposition) {
  const LSTATUS opened = RegOpenKeyExA(key, subkey, 0, access, result);
  if (disposition != nullptr)
    *disposition = REG_OPENED_EXISTING_KEY;
  if (opened != ERROR_FILE_NOT_FOUND)
    return opened;

  const LSTATUS made = Edit(key, 0, [&](Hive &hive, const OpenKey &open, bool &) -> LSTATUS {
    std::u16string path;
    ReadPath(subkey, path);
    const machine::Reached nearest = machine::Reach(*open.file, *open.key, path);
    return hive.Create(*nearest.key, nearest.rest) != nullptr ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER;
  });
  if (made != ERROR_SUCCESS)
    return made;
  if (disposition != nullptr)
    *disposition = REG_CREATED_NEW_KEY;
  return RegOpenKeyExA(key, subkey, 0, access, result);
}

LSTATUS RegQueryValueExA(HKEY key, const char *name, DWORD *, DWORD *type, BYTE *data, DWORD *size) {
  return At(key, KEY_QUERY_VALUE, [&](const OpenKey &open) -> LSTATUS {
    HiveValue value;
    const Hive::Found found = open.file->Content().ReadValue(*open.key, ToWideOrEmpty(name), value);
    if (found != Hive::Found::Yes)
      return found == Hive::Found::No ? ERROR_FILE_NOT_FOUND : ERROR_BADDB;
    if (type != nullptr)
      *type = value.type;
    if (size == nullptr)
      return ERROR_SUCCESS;
    const bool isText = machine::IsText(value.type);
    return Give(AnsiData(std::move(value)), isText, data, *size);
  });
}

LSTATUS RegSetValueExA(HKEY key, const char *name, DWORD, DWORD type, const BYTE *data, DWORD size) {
  const HiveValue value = {ToWideOrEmpty(name), type, StoredData(type, data, size)};
  return Edit(key, KEY_SET_VALUE, [&](Hive &hive, const OpenKey &open, bool &changed) -> LSTATUS {
    if (open.key->sections.empty())
      hive.Create(*open.key, {}); // a key of the path alone gets its section now
    HiveValue old;
    changed = hive.ReadValue(*open.key, value.name, old) != Hive::Found::Yes || old.type != value.type ||
              old.data != value.data;
    if (changed)
      hive.WriteValue(*open.key, value);
    return ERROR_SUCCESS;
  });
}

LSTATUS RegDeleteValueA(HKEY key, const char *name) {
  return Edit(key, KEY_SET_VALUE, [&](Hive &hive, const OpenKey &open, bool &) -> LSTATUS {
    return hive.RemoveValue(*open.key, ToWideOrEmpty(name)) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
  });
}

LSTATUS RegEnumKeyExA(HKEY key, DWORD index, char *name, DWORD *size, DWORD *, char *, DWORD *, FILETIME *) {
  return At(key, KEY_ENUMERATE_SUB_KEYS, [&](const OpenKey &open) -> LSTATUS {
    const Hive::Key *const subkey = open.key->Subkey(index);
    if (subkey == nullptr)
      return ERROR_NO_MORE_ITEMS;
    const std::string found = text::FromWide(subkey->name);
    if (found.size() >= *size)
      return ERROR_MORE_DATA;
    std::memcpy(name, found.c_str(), found.size() + 1);
    *size = static_cast<DWORD>(found.size());
    return ERROR_SUCCESS;
  });
}

LSTATUS RegEnumKeyA(HKEY key, DWORD index, char *name, DWORD size) {
  return RegEnumKeyExA(key, index, name, &size, nullptr, nullptr, nullptr, nullptr);
}

LSTATUS RegCloseKey(HKEY key) { return IsRoot(key) || openKeys.Remove(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE; }
