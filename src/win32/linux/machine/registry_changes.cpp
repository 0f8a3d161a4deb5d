// Compares hives by their sections: those that both texts have are never read.
#include "win32/linux/public/registry_changes.h"

#include "win32/linux/machine/hive.h"
#include "win32/linux/text/code_page.h"
#include "win32/linux/text/names.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <unordered_set>

namespace machine {

namespace {

// ---- What a text has that the other one hasn't ----

// The sections of a text in their order. A heading alone begins with a bracket: the further lines of a value don't.
std::vector<std::string_view> SectionsOf(std::string_view text) {
  std::vector<std::string_view> sections;
  size_t begin = text.find("\n[");
  while (begin < text.size()) {
    const size_t end = std::min(text.find("\n[", begin + 1), text.size());
    sections.push_back(Trimmed(text.substr(begin + 1, end - begin - 1)));
    begin = end;
  }
  return sections;
}

// A value in both texts.
struct Value {
  std::optional<HiveValue> before;
  std::optional<HiveValue> after;
};

struct Key {
  std::u16string path; // from the root down, a backslash before each name
  std::map<std::u16string, Value> values;
};

// Keys, like their values, by their names in upper case.
using Keys = std::map<std::u16string, Key>;

std::u16string PathOf(std::string_view heading) {
  std::u16string path;
  std::u16string name;
  heading.remove_prefix(1);
  for (size_t end = EndOfName(heading); end < heading.size(); end = EndOfName(heading)) {
    if (!ReadKeyName(heading.substr(0, end), name))
      return path;
    path += u'\\' + name;
    if (heading[end] == ']')
      return path;
    heading.remove_prefix(end + NameSeparator.size());
  }
  return path;
}

void ReadSection(std::string_view section, std::optional<HiveValue> Value::*side, Keys &keys) {
  const std::string closed = std::string(section) + '\n';
  std::string_view rest = closed;
  const std::u16string path = PathOf(TakeLine(rest));
  Key &key = keys[text::ToUpper(path)];
  key.path = path;
  while (!rest.empty()) {
    if (!IsValueLine(rest)) {
      TakeLine(rest);
      continue;
    }
    std::string_view lines = TakeValue(rest);
    HiveValue value;
    if (ReadName(lines, value.name) && ReadData(lines, value))
      key.values[text::ToUpper(value.name)].*side = value;
  }
}

using Sections = std::vector<std::string_view>;

// Reads the sections that aren't among the others.
void ReadOwn(const Sections &sections, const Sections &others, std::optional<HiveValue> Value::*side, Keys &keys) {
  const std::unordered_set<std::string_view> known(others.begin(), others.end());
  for (const std::string_view section : sections)
    if (!known.contains(section))
      ReadSection(section, side, keys);
}

// ---- For a user ----

std::string Hexadecimal(std::string_view data) {
  constexpr size_t Most = 32;
  std::string shown;
  char digits[4];
  for (const char byte : data.substr(0, Most)) {
    std::snprintf(digits, sizeof digits, shown.empty() ? "%02x" : " %02x", static_cast<unsigned char>(byte));
    shown += digits;
  }
  return data.size() > Most ? shown + " ..." : shown;
}

RegistryData Shown(const HiveValue &value) {
  if (value.type == REG_SZ || value.type == REG_EXPAND_SZ) {
    const std::u16string wide = text::WideOf(value.data);
    return {RegistryData::Kind::Text, text::WideToUtf8(wide.substr(0, wide.find_last_not_of(u'\0') + 1))};
  }
  if (DWORD number = 0; value.type == REG_DWORD && value.data.size() == sizeof number) {
    std::memcpy(&number, value.data.data(), sizeof number);
    return {RegistryData::Kind::Number, std::to_string(number)};
  }
  return {RegistryData::Kind::Bytes, Hexadecimal(value.data)};
}

std::optional<RegistryData> Shown(const std::optional<HiveValue> &value) {
  return value ? std::optional(Shown(*value)) : std::nullopt;
}

std::vector<RegistryValueChange> ChangedValues(const Key &key) {
  std::vector<RegistryValueChange> changes;
  for (const auto &[name, value] : key.values)
    if (!value.before || !value.after || value.before->type != value.after->type ||
        value.before->data != value.after->data)
      changes.push_back(
          {name.empty() ? "(Default)" : text::WideToUtf8((value.after ? value.after : value.before)->name),
           Shown(value.before), Shown(value.after)});
  return changes;
}

const char *RootOf(std::string_view file) {
  return file == "user.reg" ? "HKEY_CURRENT_USER" : file == "system.reg" ? "HKEY_LOCAL_MACHINE" : nullptr;
}

} // namespace

std::optional<std::vector<RegistryKeyChange>> RegistryChanges(const FileChange &change) {
  const char *const root = RootOf(change.path);
  if (root == nullptr)
    return std::nullopt;
  const Sections oldSections = SectionsOf(change.before ? *change.before : std::string_view());
  const Sections newSections = SectionsOf(change.after ? *change.after : std::string_view());
  Keys keys;
  ReadOwn(oldSections, newSections, &Value::before, keys);
  ReadOwn(newSections, oldSections, &Value::after, keys);
  Hive old; // a key may have been there without a section of its own
  if (change.before)
    old.Load(*change.before);

  std::vector<RegistryKeyChange> changes;
  for (const auto &[name, key] : keys) {
    const bool isNew = old.Find(old.Root(), name) == nullptr;
    if (auto values = ChangedValues(key); isNew || !values.empty())
      changes.push_back({root + text::WideToUtf8(key.path), isNew, std::move(values)});
  }
  return changes;
}

} // namespace machine
