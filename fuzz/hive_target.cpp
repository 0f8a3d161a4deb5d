// Untrusted hives: a hive is refused, or written back byte for byte except for what was edited.
#include "hooks/hive_hooks.h"
#include "win32/linux/text/names.h"

#include "fuzzing.h"

#include <map>

namespace {

using machine::Hive;
using machine::HiveValue;

struct FoldedLess {
  bool operator()(const std::u16string &left, const std::u16string &right) const {
    return text::ToUpper(left) < text::ToUpper(right);
  }
};

// The values by name, and whether they can be read.
using ValueMap = std::map<std::u16string, std::pair<Hive::Found, HiveValue>, FoldedLess>;
// A key, by the names on its path.
using KeyPath = std::vector<std::u16string>;
using Snapshot = std::map<KeyPath, ValueMap>;

ValueMap ValuesOf(Hive &hive, const Hive::Key &key) {
  ValueMap values;
  for (const HiveValue &listed : machine::HiveHooks::Values(hive, key)) {
    HiveValue value;
    const Hive::Found found = hive.ReadValue(key, listed.name, value);
    REQUIRE(found != Hive::Found::No && text::SameName(value.name, listed.name));
    values[listed.name] = {found, value};
  }
  return values;
}

// Whether a section's heading has the names of a path and no more.
bool NamesPath(const Hive::Section &section, const KeyPath &path) {
  std::string_view rest = section.text.substr(1);
  for (const std::u16string &name : path) {
    std::u16string read;
    const size_t end = machine::EndOfName(rest);
    if (!machine::ReadKeyName(rest.substr(0, end), read) || !text::SameName(read, name))
      return false;
    rest.remove_prefix(rest[end] == ']' ? end : end + machine::NameSeparator.size());
  }
  return rest.starts_with(']');
}

void Collect(Hive &hive, Hive::Key &key, KeyPath &path, Snapshot &snapshot) {
  snapshot[path] = ValuesOf(hive, key);
  for (const Hive::Section *const section : key.sections)
    REQUIRE(NamesPath(*section, path));
  size_t index = 0;
  for (const auto &[name, subkey] : key.Subkeys()) {
    REQUIRE(key.Subkey(index++) == subkey.get() && subkey->parent == &key);
    path.push_back(subkey->name);
    Collect(hive, *subkey, path, snapshot);
    path.pop_back();
  }
  REQUIRE(key.Subkey(index) == nullptr);
}

size_t SectionsBelow(Hive::Key &key) {
  size_t count = key.sections.size();
  for (const auto &[name, subkey] : key.Subkeys())
    count += SectionsBelow(*subkey);
  return count;
}

// No line of a sound value begins like a heading.
size_t Headings(std::string_view text) {
  return static_cast<size_t>(std::ranges::count_if(Lines(text), [](auto line) { return line.starts_with('['); }));
}

Snapshot Collect(Hive &hive) {
  Snapshot snapshot;
  KeyPath path;
  Collect(hive, hive.Root(), path, snapshot);
  return snapshot;
}

std::u16string TakeWide(FuzzedDataProvider &input, size_t longest) {
  const char16_t units[] = {u'a',  u'A',    u'\\', u'"',    u'[',    u']',      u'\0',
                            u'\n', u'\x1b', u'7',  u'\x7f', u'\xe9', u'\x8868', u'\xd83d'};
  std::u16string text(input.ConsumeIntegralInRange<size_t>(0, longest), u'x');
  for (char16_t &unit : text)
    unit = input.ConsumeBool() ? input.PickValueInArray(units) : input.ConsumeIntegral<char16_t>();
  return text;
}

HiveValue TakeValue(FuzzedDataProvider &input) {
  const DWORD types[] = {REG_NONE, REG_SZ,    REG_EXPAND_SZ, REG_BINARY, REG_DWORD, machine::REG_MULTI_SZ,
                         0x100b8,  0xffffffff};
  HiveValue value;
  value.name = TakeWide(input, 12);
  value.type = input.PickValueInArray(types);
  if (input.ConsumeBool()) {
    const std::u16string text = TakeWide(input, 60) + u'\0';
    value.data.assign(reinterpret_cast<const char *>(text.data()), text.size() * sizeof(char16_t));
  } else {
    value.data = input.ConsumeBytesAsString(input.ConsumeIntegralInRange<size_t>(0, 60));
  }
  return value;
}

// Makes the same edit in the hive and in the expected content.
void Edit(Hive &hive, Snapshot &expected, FuzzedDataProvider &input) {
  KeyPath path =
      std::next(expected.begin(), input.ConsumeIntegralInRange<int>(0, static_cast<int>(expected.size()) - 1))->first;
  Hive::Key *key = &hive.Root();
  for (const std::u16string &name : path)
    key = hive.Find(*key, name);
  REQUIRE(key != nullptr);
  const std::u16string below = TakeWide(input, 20);
  Hive::Key *const made = hive.Create(*key, below);
  if (made == nullptr)
    return;
  REQUIRE(hive.Find(*key, below) == made);
  // Every key on the way from the root, by its current name.
  path.clear();
  for (const Hive::Key *at = made; at->parent != nullptr; at = at->parent)
    path.insert(path.begin(), at->name);
  for (size_t depth = 0; depth < path.size(); ++depth)
    expected[KeyPath(path.begin(), path.begin() + static_cast<ptrdiff_t>(depth) + 1)];

  ValueMap &values = expected[path];
  HiveValue value = TakeValue(input);
  if (!values.empty() && input.ConsumeBool())
    value.name =
        std::next(values.begin(), input.ConsumeIntegralInRange<int>(0, static_cast<int>(values.size()) - 1))->first;
  if (input.ConsumeIntegralInRange(0, 3) == 0) {
    HiveValue old;
    const bool was = hive.ReadValue(*made, value.name, old) != Hive::Found::No;
    REQUIRE(hive.RemoveValue(*made, value.name) == was);
    values.erase(value.name);
    return;
  }
  HiveValue old;
  if (hive.ReadValue(*made, value.name, old) != Hive::Found::No)
    value.name = old.name; // the case in which it was first written
  hive.WriteValue(*made, value);
  values[value.name] = {Hive::Found::Yes, value};
}

void RequireSame(const Snapshot &expected, const Snapshot &found) {
  REQUIRE(expected.size() == found.size());
  for (auto left = expected.begin(), right = found.begin(); left != expected.end(); ++left, ++right) {
    REQUIRE(left->first == right->first && left->second.size() == right->second.size());
    for (const auto &[name, value] : left->second) {
      const auto other = right->second.find(name);
      REQUIRE(other != right->second.end() && other->second.first == value.first);
      REQUIRE(other->second.second.name == value.second.name);
      REQUIRE(value.first != Hive::Found::Yes ||
              (other->second.second.type == value.second.type && other->second.second.data == value.second.data));
    }
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  TextAndCommands input(data, size);
  Hive hive;
  if (!hive.Load(input.text).empty())
    return 0;
  REQUIRE(input.text.find('\0') == std::string::npos && hive.Text() == input.text);
  Snapshot expected = Collect(hive);
  REQUIRE(hive.Text() == input.text && SectionsBelow(hive.Root()) == Headings(input.text));

  for (int number = 0; number < 8 && input.commands.remaining_bytes() > 0; ++number)
    Edit(hive, expected, input.commands);
  RequireSame(expected, Collect(hive));

  REQUIRE(hive.Loaded() == input.text);
  const std::string text = hive.Text();
  REQUIRE(KeepsLines(input.text, text, [](std::string_view line) { return line.find_first_of("[#;") == 0; }));
  Hive again;
  REQUIRE(again.Load(text).empty());
  RequireSame(expected, Collect(again));
  return 0;
}
