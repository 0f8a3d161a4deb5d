// A hive's sections and keys. What its text means is known to hive_text.h.
#include "win32/linux/machine/hive.h"

#include "win32/linux/text/names.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <utility>

namespace machine {

namespace {

constexpr size_t DeepestPath = 512;
constexpr std::string_view LinkLine = "#link";
constexpr std::string_view Arch64Line = "#arch=win64";

// Reads the headings of a text one after the other. Each mostly has the names of the last one but for one.
class HeadingReader {
public:
  // What is wrong with a heading, nothing if it is sound; and where the first name begins that the last one doesn't
  // have.
  std::string_view Read(std::string_view heading, uint32_t &shared) {
    while (!heading.starts_with(last.substr(0, names.back())))
      names.pop_back();
    shared = static_cast<uint32_t>(names.back());
    last = heading;
    if (heading.starts_with("[]")) // of the root
      return {};
    for (;;) {
      const std::string_view rest = heading.substr(names.back());
      const size_t end = EndOfName(rest);
      if (end >= rest.size())
        return "a key's heading without its end";
      if (!IsKeyName(rest.substr(0, end)) || names.size() > DeepestPath)
        return "a key's name that can't be read";
      if (rest[end] == ']')
        return {};
      names.push_back(names.back() + end + NameSeparator.size());
    }
  }

private:
  std::string_view last;
  std::vector<size_t> names = {1}; // where the names in it begin
};

} // namespace

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
  if (std::string damage = LoadSections(rest); !damage.empty())
    return damage;
  root.runs = {{sections, 1}};
  root.Subkeys(); // the root's own sections are among them
  return {};
}

std::string Hive::Damage(std::string_view rest, std::string_view what) const {
  const auto line = 1 + std::count(loaded.begin(), loaded.end() - static_cast<ptrdiff_t>(rest.size()), '\n');
  return "line " + std::to_string(line) + ": " + std::string(what);
}

std::string Hive::LoadSections(std::string_view rest) {
  HeadingReader headings;
  while (!rest.empty()) {
    const std::string_view all = rest;
    std::string_view damage;
    if (rest[0] == '[') {
      Section &section = sections.emplace_back();
      section.text = rest.substr(0, 0);
      damage = headings.Read(TakeLine(rest), section.shared);
    } else if (!sections.empty() && IsValueLine(rest)) {
      damage = IsSoundValue(TakeValue(rest)) ? "" : "a value that can't be read";
    } else {
      damage = ReadPlainLine(TakeLine(rest));
    }
    if (!damage.empty())
      return Damage(all, damage);
    std::string_view &text = sections.empty() ? header : sections.back().text;
    text = {text.data(), text.size() + all.size() - rest.size()};
  }
  return {};
}

std::string_view Hive::ReadPlainLine(std::string_view line) {
  const std::string_view text = Trimmed(line);
  if (!text.empty() && text[0] != ';' && text[0] != '#')
    return "neither a key nor a value";
  if (sections.empty())
    is64Bit = is64Bit || text == Arch64Line;
  else
    sections.back().isLink = sections.back().isLink || text == LinkLine;
  return {};
}

std::vector<std::string_view> Hive::Pieces() const {
  std::vector<std::string_view> pieces = {header};
  const auto append = [&](const Section &section) {
    std::string_view &last = pieces.back();
    if (last.data() + last.size() == section.text.data())
      last = {last.data(), last.size() + section.text.size()};
    else
      pieces.push_back(section.text);
  };
  std::ranges::for_each(sections, append);
  std::ranges::for_each(added, append);
  return pieces;
}

std::string Hive::Text() const {
  const std::vector<std::string_view> pieces = Pieces();
  size_t size = 0;
  for (const std::string_view piece : pieces)
    size += piece.size();
  std::string text;
  text.reserve(size);
  for (const std::string_view piece : pieces)
    text += piece;
  return text;
}

// ---- Keys ----

void Hive::Key::MakeSubkeys() {
  for (auto [rest, at] : std::exchange(runs, {}))
    while (!rest.empty()) {
      const std::string_view names = rest[0].text.substr(at);
      const size_t end = EndOfName(names);
      std::u16string first;
      Key &key = ReadKeyName(names.substr(0, end), first) ? MakeSubkey(first) : *this; // "[]", and this is the root
      size_t count = 1;
      if (names[end] == ']') {
        key.sections.push_back(&rest[0]);
        key.isLink = key.isLink || rest[0].isLink;
      } else {
        const size_t below = at + end + NameSeparator.size();
        while (count < rest.size() && rest[count].shared >= below)
          ++count;
        key.runs.push_back({rest.first(count), below});
      }
      rest = rest.subspan(count);
    }
}

const Hive::Key *Hive::Key::Subkey(size_t index) {
  if (order.size() != Subkeys().size()) {
    order.clear();
    for (const auto &entry : subkeys)
      order.push_back(entry.second.get());
  }
  return index < order.size() ? order[index] : nullptr;
}

Hive::Key &Hive::Key::MakeSubkey(std::u16string_view subkeyName) {
  std::u16string upper = text::ToUpper(subkeyName);
  Subkeys();
  // Files have their keys in order, so a new one mostly goes to the end.
  const auto position = subkeys.empty() || subkeys.rbegin()->first < upper ? subkeys.end() : subkeys.lower_bound(upper);
  if (position != subkeys.end() && position->first == upper)
    return *position->second;
  auto key = std::make_unique<Key>();
  key->parent = this;
  key->name = subkeyName;
  order.clear();
  return *subkeys.emplace_hint(position, std::move(upper), std::move(key))->second;
}

Hive::Key *Hive::Find(Key &from, std::u16string_view names) {
  const std::u16string upper = text::ToUpper(names);
  std::u16string_view path = upper;
  Key *key = &from;
  for (auto name = text::TakeName(path); key != nullptr && !name.empty(); name = text::TakeName(path)) {
    const auto position = key->Subkeys().find(name);
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
    key = &key->MakeSubkey(name);
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
  std::snprintf(stamps, sizeof stamps, "] %llu\n#time=%llx\n\n", now, (now + 11644473600ULL) * 10000000ULL);
  Section &section = added.emplace_back();
  Replace({&section, section.text}, heading + stamps);
  key.sections.push_back(&section);
}

// ---- Values of a key ----

Hive::Part Hive::FindValue(const Key &key, std::u16string_view name) {
  Part found;
  for (size_t number = key.sections.size(); number-- > 0 && found.section == nullptr;) {
    Section *const section = key.sections[number];
    std::string_view rest = section->text;
    while (!rest.empty())
      if (!IsValueLine(rest))
        TakeLine(rest);
      else if (const std::string_view lines = TakeValue(rest); HasName(lines, name))
        found = {section, lines};
  }
  return found;
}

void Hive::Replace(const Part &part, std::string_view text) {
  Section &section = *part.section;
  const auto at = static_cast<size_t>(part.text.data() - section.text.data());
  if (section.edited == nullptr)
    section.edited = std::make_unique<std::string>(section.text);
  section.text = section.edited->replace(at, part.text.size(), text);
}

Hive::Found Hive::ReadValue(const Key &key, std::u16string_view name, HiveValue &value) const {
  Part found = FindValue(key, name);
  if (found.section == nullptr)
    return Found::No;
  return ReadName(found.text, value.name) && ReadData(found.text, value) ? Found::Yes : Found::Damaged;
}

void Hive::WriteValue(Key &key, const HiveValue &value) {
  HiveValue written = value;
  Part part = FindValue(key, value.name);
  if (part.section != nullptr) {
    std::string_view line = part.text;
    ReadName(line, written.name); // the case first written
  } else {                        // behind the last line that isn't blank
    part.section = key.sections.back();
    part.text = part.section->text.substr(Trimmed(part.section->text).size());
    TakeLine(part.text);
    part.text = part.text.substr(0, 0);
  }
  Replace(part, FormatValue(written));
}

bool Hive::RemoveValue(Key &key, std::u16string_view name) {
  Part found = FindValue(key, name);
  const bool removed = found.section != nullptr;
  for (; found.section != nullptr; found = FindValue(key, name))
    Replace(found, {});
  return removed;
}

} // namespace machine
