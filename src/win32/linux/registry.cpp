// The registry calls, on the two hives of the machine folder.
#include "win32/win32.h"

#include "win32/linux/fault.h"
#include "win32/linux/hive_file.h"
#include "win32/linux/machine.h"
#include "win32/linux/text.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>
#include <unordered_set>

namespace {

using machine::Hive;
using machine::HiveFile;
using machine::HiveValue;

constexpr LSTATUS BadPathname = 161;
constexpr LSTATUS KeyDeleted = 1018;
constexpr REGSAM RightsToWrite = KEY_SET_VALUE | KEY_CREATE_SUB_KEY | 0x000D0000; // and to delete, or change who may
constexpr REGSAM MaximumAllowed = 0x02000000;

// An open key. It is found again by its path when its hive was loaded anew.
struct OpenKey {
  std::shared_ptr<HiveFile> file;
  std::u16string path;
  REGSAM access = 0;
  Hive::Key *key = nullptr;
  uint64_t generation = 0;
};

// The hives of the machine folder that was asked for last.
struct Machine {
  std::filesystem::path folder;
  std::shared_ptr<HiveFile> localMachine;
  std::shared_ptr<HiveFile> currentUser;
};

std::recursive_mutex guard;
Machine current;
std::unordered_set<OpenKey *> openKeys;

void UseCurrentMachine() {
  if (current.localMachine != nullptr && machine::IsFolder(current.folder))
    return;
  current.folder = machine::Folder();
  current.localMachine = std::make_shared<HiveFile>(current.folder / "system.reg", "\\\\Machine");
  current.currentUser = std::make_shared<HiveFile>(current.folder / "user.reg", "\\\\User\\\\S-1-5-21-0-0-0-1000");
}

OpenKey *AsOpenKey(HKEY handle) {
  auto *const open = reinterpret_cast<OpenKey *>(handle);
  return openKeys.contains(open) ? open : nullptr;
}

bool IsRoot(HKEY handle) { return handle == HKEY_LOCAL_MACHINE || handle == HKEY_CURRENT_USER; }

// Finds the key behind an open handle again, should its hive have been loaded anew.
LSTATUS Resolve(OpenKey &open) {
  if (const LSTATUS result = open.file->RefreshOpened(); result != ERROR_SUCCESS)
    return result;
  if (open.generation != open.file->Generation()) {
    open.key = open.file->Content().Find(open.file->Content().Root(), open.path);
    open.generation = open.file->Generation();
  }
  return open.key != nullptr ? ERROR_SUCCESS : KeyDeleted;
}

// Where a call works: the key that a handle stands for, be it one of the roots or opened before. An open key's handle
// is only looked up; a root's is `root`, which the caller has room for.
LSTATUS Locate(HKEY handle, OpenKey &root, OpenKey *&place) {
  if (!IsRoot(handle)) {
    place = AsOpenKey(handle);
    return place != nullptr ? Resolve(*place) : ERROR_INVALID_HANDLE;
  }
  UseCurrentMachine();
  place = &root;
  root.file = handle == HKEY_LOCAL_MACHINE ? current.localMachine : current.currentUser;
  root.access = KEY_ALL_ACCESS;
  if (const LSTATUS result = root.file->Refresh(); result != ERROR_SUCCESS)
    return result;
  root.key = &root.file->Content().Root();
  root.generation = root.file->Generation();
  return ERROR_SUCCESS;
}

// The same for a call that needs rights which the handle must have been opened with.
LSTATUS Locate(HKEY handle, REGSAM needed, OpenKey &root, OpenKey *&place) {
  const LSTATUS result = Locate(handle, root, place);
  if (result == ERROR_SUCCESS && (place->access & needed) != needed)
    return ERROR_ACCESS_DENIED;
  return result;
}

// A caller's name of a subkey as a path below its key; BadPathname for one that begins with a backslash.
LSTATUS SubkeyPath(const char *subkey, std::u16string &path) {
  path = subkey != nullptr ? text::ToWide(subkey) : std::u16string();
  if (path.starts_with(u'\\'))
    return BadPathname;
  while (path.ends_with(u'\\'))
    path.pop_back();
  return ERROR_SUCCESS;
}

std::u16string Joined(const std::u16string &path, const std::u16string &below) {
  return path.empty() || below.empty() ? path + below : path + u'\\' + below;
}

bool IsReadOnly(const Hive::Key *key) {
  while (key != nullptr && !key->readOnly)
    key = key->parent;
  return key != nullptr;
}

// Hands out a handle to a key with the access that is asked for.
LSTATUS HandOut(OpenKey opened, HKEY *result) {
  if ((opened.access & RightsToWrite) != 0 && IsReadOnly(opened.key))
    return ERROR_ACCESS_DENIED;
  if ((opened.access & MaximumAllowed) != 0)
    opened.access = IsReadOnly(opened.key) ? KEY_READ : KEY_ALL_ACCESS;
  auto open = std::make_unique<OpenKey>(std::move(opened));
  openKeys.insert(open.get());
  *result = reinterpret_cast<HKEY>(open.release());
  return ERROR_SUCCESS;
}

bool IsText(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ; }

std::u16string ValueName(const char *name) { return name != nullptr ? text::ToWide(name) : std::u16string(); }

// A value's data as the calls see it: texts in code page 932.
std::string AnsiData(HiveValue value) {
  if (!IsText(value.type))
    return std::move(value.data);
  std::u16string wide(value.data.size() / sizeof(char16_t), u'\0');
  std::memcpy(wide.data(), value.data.data(), wide.size() * sizeof(char16_t));
  return text::FromWide(wide);
}

// Copies a name of a subkey into a caller's buffer of `size` characters.
bool CopyName(const std::u16string &wide, char *buffer, DWORD size, DWORD &length) {
  const std::string name = text::FromWide(wide);
  length = static_cast<DWORD>(name.size());
  if (name.size() >= size)
    return false;
  std::memcpy(buffer, name.c_str(), name.size() + 1);
  return true;
}

} // namespace

LSTATUS RegOpenKeyExA(HKEY key, const char *subkey, DWORD, REGSAM access, HKEY *result) {
  const std::lock_guard lock(guard);
  if (result == nullptr)
    return ERROR_INVALID_PARAMETER;
  *result = nullptr;
  OpenKey root;
  OpenKey *place = nullptr;
  std::u16string path;
  if (const LSTATUS located = Locate(key, root, place); located != ERROR_SUCCESS)
    return located;
  if (const LSTATUS parsed = SubkeyPath(subkey, path); parsed != ERROR_SUCCESS)
    return parsed;
  Hive::Key *const found = place->file->Content().Find(*place->key, path);
  if (found == nullptr)
    return ERROR_FILE_NOT_FOUND;
  return HandOut({place->file, Joined(place->path, path), access, found, place->generation}, result);
}

LSTATUS RegOpenKeyA(HKEY key, const char *subkey, HKEY *result) {
  return RegOpenKeyExA(key, subkey, 0, MaximumAllowed, result);
}

LSTATUS RegCreateKeyExA(HKEY key, const char *subkey, DWORD, char *, DWORD, REGSAM access, void *, HKEY *result,
                        DWORD *disposition) {
  const std::lock_guard lock(guard);
  if (result == nullptr)
    return ERROR_INVALID_PARAMETER;
  *result = nullptr;
  const LSTATUS opened = RegOpenKeyExA(key, subkey, 0, access, result);
  if (disposition != nullptr)
    *disposition = REG_OPENED_EXISTING_KEY;
  if (opened != ERROR_FILE_NOT_FOUND)
    return opened;

  OpenKey root;
  OpenKey *place = nullptr;
  std::u16string path;
  if (Locate(key, root, place) != ERROR_SUCCESS || SubkeyPath(subkey, path) != ERROR_SUCCESS)
    return ERROR_PATH_NOT_FOUND; // no machine to make it on
  path = Joined(place->path, path);
  Hive::Key *target = nullptr;
  const LSTATUS made = place->file->Edit([&](Hive &hive, bool &) -> LSTATUS {
    // The nearest key that is there decides whether there may be one below it.
    const Hive::Key *above = nullptr;
    for (std::u16string upper = path; above == nullptr; upper.resize(upper.rfind(u'\\'))) {
      above = hive.Find(hive.Root(), upper);
      if (above != nullptr || upper.find(u'\\') == std::u16string::npos)
        break;
    }
    if (IsReadOnly(above))
      return ERROR_ACCESS_DENIED;
    target = hive.Create(hive.Root(), path);
    return target != nullptr ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER;
  });
  if (made != ERROR_SUCCESS)
    return made;
  if (disposition != nullptr)
    *disposition = REG_CREATED_NEW_KEY;
  return HandOut({place->file, path, access, target, place->file->Generation()}, result);
}

LSTATUS RegQueryValueExA(HKEY key, const char *name, DWORD *, DWORD *type, BYTE *data, DWORD *size) {
  const std::lock_guard lock(guard);
  if (data != nullptr && size == nullptr)
    return ERROR_INVALID_PARAMETER;
  OpenKey root;
  OpenKey *place = nullptr;
  if (const LSTATUS located = Locate(key, KEY_QUERY_VALUE, root, place); located != ERROR_SUCCESS)
    return located;
  HiveValue value;
  switch (place->file->Content().ReadValue(*place->key, ValueName(name), value)) {
  case Hive::Found::No:
    return ERROR_FILE_NOT_FOUND;
  case Hive::Found::Damaged:
    return ERROR_BADDB;
  case Hive::Found::Yes:
    break;
  }
  if (type != nullptr)
    *type = value.type;
  if (size == nullptr)
    return ERROR_SUCCESS;

  const bool isText = IsText(value.type);
  const std::string ansi = AnsiData(std::move(value));
  const DWORD room = *size;
  *size = static_cast<DWORD>(ansi.size());
  if (data == nullptr)
    return ERROR_SUCCESS;
  if (ansi.size() > room)
    return ERROR_MORE_DATA;
  std::memcpy(data, ansi.data(), ansi.size());
  // A text that was stored without a terminator gets one where there is room; the size doesn't count it.
  if (isText && ansi.size() < room && (ansi.empty() || ansi.back() != '\0'))
    data[ansi.size()] = 0;
  return ERROR_SUCCESS;
}

LSTATUS RegSetValueExA(HKEY key, const char *name, DWORD, DWORD type, const BYTE *data, DWORD size) {
  const std::lock_guard lock(guard);
  OpenKey root;
  OpenKey *place = nullptr;
  if (const LSTATUS located = Locate(key, KEY_SET_VALUE, root, place); located != ERROR_SUCCESS)
    return located;
  HiveValue value{ValueName(name), type, {}};
  if (data != nullptr)
    value.data.assign(reinterpret_cast<const char *>(data), size);
  if (IsText(type)) {
    // A caller who forgot to count the terminator gets it all the same.
    if (size > 0 && data[size - 1] != 0 && data[size] == 0)
      value.data += '\0';
    const std::u16string wide = text::ToWide(value.data);
    value.data.assign(reinterpret_cast<const char *>(wide.data()), wide.size() * sizeof(char16_t));
  }
  return place->file->Edit([&](Hive &hive, bool &changed) -> LSTATUS {
    if (hive.Find(hive.Root(), place->path) == nullptr)
      return KeyDeleted;
    Hive::Key *const target = hive.Create(hive.Root(), place->path); // a key of the path alone gets its section now
    HiveValue old;
    changed = hive.ReadValue(*target, value.name, old) != Hive::Found::Yes || old.type != value.type ||
              old.data != value.data;
    if (changed)
      hive.WriteValue(*target, value);
    return ERROR_SUCCESS;
  });
}

LSTATUS RegDeleteValueA(HKEY key, const char *name) {
  const std::lock_guard lock(guard);
  OpenKey root;
  OpenKey *place = nullptr;
  if (const LSTATUS located = Locate(key, KEY_SET_VALUE, root, place); located != ERROR_SUCCESS)
    return located;
  return place->file->Edit([&](Hive &hive, bool &) -> LSTATUS {
    Hive::Key *const target = hive.Find(hive.Root(), place->path);
    if (target == nullptr)
      return KeyDeleted;
    return hive.RemoveValue(*target, ValueName(name)) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
  });
}

LSTATUS RegEnumKeyExA(HKEY key, DWORD index, char *name, DWORD *size, DWORD *, char *className, DWORD *classSize,
                      FILETIME *lastWrite) {
  const std::lock_guard lock(guard);
  if (name == nullptr || size == nullptr)
    return ERROR_INVALID_PARAMETER;
  OpenKey root;
  OpenKey *place = nullptr;
  if (const LSTATUS located = Locate(key, KEY_ENUMERATE_SUB_KEYS, root, place); located != ERROR_SUCCESS)
    return located;
  const Hive::Key *const subkey = place->key->Subkey(index);
  if (subkey == nullptr)
    return ERROR_NO_MORE_ITEMS;
  DWORD length = 0;
  if (!CopyName(subkey->name, name, *size, length))
    return ERROR_MORE_DATA;
  *size = length;
  if (className != nullptr && classSize != nullptr && *classSize > 0) {
    className[0] = '\0';
    *classSize = 0;
  }
  if (lastWrite != nullptr)
    *lastWrite = {};
  return ERROR_SUCCESS;
}

LSTATUS RegEnumKeyA(HKEY key, DWORD index, char *name, DWORD size) {
  return RegEnumKeyExA(key, index, name, &size, nullptr, nullptr, nullptr, nullptr);
}

LSTATUS RegCloseKey(HKEY key) {
  const std::lock_guard lock(guard);
  if (IsRoot(key))
    return ERROR_SUCCESS;
  OpenKey *const open = AsOpenKey(key);
  if (open == nullptr)
    return ERROR_INVALID_HANDLE;
  openKeys.erase(open);
  delete open;
  return ERROR_SUCCESS;
}

namespace machine {

void MarkKeyReadOnly(HKEY root, const char *subkey) {
  const std::lock_guard lock(guard);
  OpenKey opened;
  OpenKey *place = nullptr;
  std::u16string path;
  if (Locate(root, opened, place) != ERROR_SUCCESS || SubkeyPath(subkey, path) != ERROR_SUCCESS)
    return;
  place->file->Edit([&](Hive &hive, bool &) -> LSTATUS {
    if (Hive::Key *const key = hive.Create(hive.Root(), path); key != nullptr)
      hive.MarkReadOnly(*key);
    return ERROR_SUCCESS;
  });
}

std::vector<Value> ListValues(HKEY root, const char *subkey) {
  const std::lock_guard lock(guard);
  OpenKey opened;
  OpenKey *place = nullptr;
  std::u16string path;
  std::vector<Value> values;
  if (Locate(root, opened, place) != ERROR_SUCCESS || SubkeyPath(subkey, path) != ERROR_SUCCESS)
    return values;
  if (Hive &hive = place->file->Content(); const Hive::Key *const key = hive.Find(hive.Root(), path))
    for (const HiveValue &value : hive.Values(*key))
      values.push_back({text::FromWide(value.name), value.type, AnsiData(value)});
  return values;
}

} // namespace machine
