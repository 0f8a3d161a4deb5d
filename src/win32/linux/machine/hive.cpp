// A hive's sections and keys. What its text means is known to hive_text.h.
#include "win32/linux/machine/hive.h"

#include "win32/linux/text/names.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace machine {

namespace {

constexpr size_t DeepestPath = 512;
constexpr std::string_view LinkLine = "#link";
constexpr std::string_view Arch64Line = "#arch=win64";

} // namespace

const Hive::Key *Hive::Key::Subkey(size_t index) {
  if (order.size() != subkeys.size()) {
    order.clear();
    for (const auto &entry : subkeys)
      order.push_back(entry.second.get());
  }
  return index < order.size() ? order[index] : nullptr;
}

// ---- Loading and writing ----

std::string Hive::EmptyText(std::string_view root) {
  return std::string(Signature).append("\n;; All keys relative to ").append(root).append("\n\n");
}

std::string Hive::Load(std::string fileText) {
  loaded = std::move(fileText);
  std::string_view rest = loaded;
  if (const size_t zero = rest.find('\0'); zero != std::string_view::npos)
    return Damage(rest.substr(zero), "a zero byte");
  if (Trimmed(rest.substr(0, rest.find('\n'))) != Signature)
    return Damage(rest, "no registry file");
  if (!rest.ends_with('\n'))
    return Damage({}, "the file ends within a line");
  header = TakeLine(rest);
  return LoadSections(rest);
}

std::string Hive::Damage(std::string_view rest, std::string_view what) const {
  const auto line = 1 + std::count(loaded.begin(), loaded.end() - static_cast<ptrdiff_t>(rest.size()), '\n');
  return "line " + std::to_string(line) + ": " + std::string(what);
}

std::string Hive::LoadSections(std::string_view rest) {
  Key *key = nullptr;
  while (!rest.empty()) {
    const std::string_view all = rest;
    std::string_view damage;
    if (rest[0] == '[')
      key = BeginSection(TakeLine(rest), damage);
    else if (key != nullptr && IsValueLine(rest))
      damage = IsSoundValue(TakeValue(rest)) ? "" : "a value that can't be read";
    else
      damage = ReadPlainLine(TakeLine(rest), key);
    if (!damage.empty())
      return Damage(all, damage);
    std::string_view &text = key == nullptr ? header : sections.back().original;
    text = {text.empty() ? all.data() : text.data(), text.size() + all.size() - rest.size()};
  }
  return {};
}

Hive::Key *Hive::BeginSection(std::string_view heading, std::string_view &damage) {
  Key *const key = KeyOfHeading(heading, damage);
  if (key != nullptr) {
    key->sections.push_back(static_cast<uint32_t>(sections.size()));
    sections.emplace_back();
  }
  return key;
}

std::string_view Hive::ReadPlainLine(std::string_view line, Key *key) {
  const std::string_view text = Trimmed(line);
  if (!text.empty() && text[0] != ';' && text[0] != '#')
    return "neither a key nor a value";
  if (key == nullptr)
    is64Bit = is64Bit || text == Arch64Line;
  else
    key->isLink = key->isLink || text == LinkLine;
  return {};
}

std::string Hive::Text() const {
  size_t size = header.size();
  for (const Section &section : sections)
    size += section.original.size() + 256;
  std::string text;
  text.reserve(size);
  text += header;
  for (const Section &section : sections) {
    if (!section.divided)
      text += section.original;
    for (const Line &line : section.lines)
      text += line.text;
  }
  return text;
}

// ---- Keys ----

Hive::Key &Hive::Subkey(Key &parent, std::u16string_view name) {
  std::u16string upper = text::ToUpper(name);
  // Files have their keys in order, so a new one mostly goes to the end.
  const auto position = parent.subkeys.empty() || parent.subkeys.rbegin()->first < upper
                            ? parent.subkeys.end()
                            : parent.subkeys.lower_bound(upper);
  if (position != parent.subkeys.end() && position->first == upper)
    return *position->second;
  auto key = std::make_unique<Key>();
  key->parent = &parent;
  key->name = name;
  Key &made = *key;
  parent.subkeys.emplace_hint(position, std::move(upper), std::move(key));
  parent.order.clear();
  return made;
}

Hive::Key *Hive::KeyOfHeading(std::string_view heading, std::string_view &damage) {
  // The keys of all names that this heading has in common with the last one are known.
  const auto agreed = static_cast<size_t>(std::ranges::mismatch(heading, lastHeading).in1 - heading.begin());
  while (lastPath.size() > 1 && lastPath.back().first > agreed)
    lastPath.pop_back();
  lastHeading = heading;
  if (heading.starts_with("[]"))
    return &root;

  auto [at, key] = lastPath.back();
  for (;;) {
    const std::string_view rest = heading.substr(at);
    const size_t end = EndOfName(rest);
    if (end >= rest.size()) {
      damage = "a key's heading without its end";
      return nullptr;
    }
    std::u16string name;
    if (!ReadKeyName(rest.substr(0, end), name) || lastPath.size() > DeepestPath) {
      damage = "a key's name that can't be read";
      return nullptr;
    }
    key = &Subkey(*key, name);
    if (rest[end] == ']')
      return key;
    at += end + NameSeparator.size();
    lastPath.emplace_back(at, key);
  }
}

Hive::Key *Hive::Find(Key &from, std::u16string_view names) {
  const std::u16string upper = text::ToUpper(names);
  std::u16string_view path = upper;
  Key *key = &from;
  for (auto name = text::TakeName(path); key != nullptr && !name.empty(); name = text::TakeName(path)) {
    const auto position = key->subkeys.find(name);
    key = position == key->subkeys.end() ? nullptr : position->second.get();
  }
  return key;
}

Hive::Key *Hive::Create(Key &from, std::u16string_view path) {
  std::vector<std::u16string_view> names;
  for (auto name = text::TakeName(path); !name.empty(); name = text::TakeName(path))
    names.push_back(name);
  const auto tooLong = [](std::u16string_view name) { return name.size() > LongestName; };
  if (PathOf(from).size() + names.size() > DeepestPath || std::ranges::any_of(names, tooLong))
    return nullptr;
  Key *key = &from;
  for (const std::u16string_view name : names)
    key = &Subkey(*key, name);
  if (key->sections.empty())
    AddSection(*key);
  return key;
}

std::vector<std::u16string_view> Hive::PathOf(const Key &key) {
  std::vector<std::u16string_view> names;
  for (const Key *at = &key; at->parent != nullptr; at = at->parent)
    names.emplace_back(at->name);
  std::ranges::reverse(names);
  return names;
}

void Hive::AddSection(Key &key) {
  std::string heading = "[";
  for (const std::u16string_view name : PathOf(key)) {
    heading += heading.size() > 1 ? NameSeparator : "";
    AppendEscaped(heading, name, "[]");
  }
  // Wine keeps the time of the last change twice: in seconds, and in units of 100 ns since 1601.
  const auto now = static_cast<unsigned long long>(std::time(nullptr));
  char stamps[64];
  std::snprintf(stamps, sizeof stamps, "] %llu\n#time=%llx\n", now, (now + 11644473600ULL) * 10000000ULL);
  key.sections.push_back(static_cast<uint32_t>(sections.size()));
  Section &section = sections.emplace_back();
  section.divided = true;
  section.lines = {{heading + stamps, std::nullopt}, {"\n", std::nullopt}};
}

// ---- Values of a key ----

std::vector<Hive::Line> &Hive::LinesOf(Section &section) {
  if (section.divided)
    return section.lines;
  section.divided = true;
  std::string_view rest = section.original;
  while (!rest.empty()) {
    if (!IsValueLine(rest)) {
      section.lines.push_back({std::string(TakeLine(rest)), std::nullopt});
      continue;
    }
    const std::string_view value = TakeValue(rest);
    std::string_view name = value;
    Line line{std::string(value), std::u16string()};
    ReadName(name, *line.valueName);
    section.lines.push_back(std::move(line));
  }
  return section.lines;
}

Hive::Line *Hive::FindLine(const Key &key, std::u16string_view name, std::vector<Line> **owner) {
  for (size_t number = key.sections.size(); number-- > 0;) {
    std::vector<Line> &lines = LinesOf(sections[key.sections[number]]);
    for (size_t index = lines.size(); index-- > 0;)
      if (lines[index].valueName && text::SameName(*lines[index].valueName, name)) {
        *owner = &lines;
        return &lines[index];
      }
  }
  return nullptr;
}

Hive::Found Hive::ReadValue(const Key &key, std::u16string_view name, HiveValue &value) {
  std::vector<Line> *owner = nullptr;
  const Line *const line = FindLine(key, name, &owner);
  if (line == nullptr)
    return Found::No;
  std::string_view text = line->text;
  return ReadName(text, value.name) && ReadData(text, value) ? Found::Yes : Found::Damaged;
}

void Hive::WriteValue(Key &key, const HiveValue &value) {
  std::vector<Line> *owner = nullptr;
  if (Line *const line = FindLine(key, value.name, &owner)) {
    HiveValue written = value;
    written.name = *line->valueName; // the case first written
    line->text = FormatValue(written);
    return;
  }
  std::vector<Line> &lines = LinesOf(sections[key.sections.back()]);
  const auto behindLast = std::ranges::find_if(lines.rbegin(), lines.rend(), [](const Line &line) {
                            return !Trimmed(line.text).empty();
                          }).base();
  lines.insert(behindLast, {FormatValue(value), value.name});
}

bool Hive::RemoveValue(Key &key, std::u16string_view name) {
  bool removed = false;
  std::vector<Line> *owner = nullptr;
  while (const Line *const line = FindLine(key, name, &owner)) {
    owner->erase(owner->begin() + (line - owner->data()));
    removed = true;
  }
  return removed;
}

} // namespace machine
