// A hive's text taken apart and put together again. The divisions: escapes; values as text and as data; lines;
// headings; then of Hive loading and writing the whole, its keys, and the values of a key. Whatever knows how Wine
// writes something stands in the first four; the others know sections and keys alone.
#include "win32/linux/machine/hive.h"

#include "win32/linux/text/code_page.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <ctime>

namespace machine {

namespace {

constexpr std::string_view Signature = "WINE REGISTRY Version 2";
constexpr size_t LongestName = 255;
constexpr size_t DeepestPath = 512;

// ---- Escapes ----

// The letters of the control characters that have one, by their number.
constexpr std::string_view ControlLetters = ".......abtnvfr.............e....";

int DigitValue(char digit) {
  if (digit >= '0' && digit <= '9')
    return digit - '0';
  const char lower = static_cast<char>(digit | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 99;
}

// Reads digits of a base, at most so many; the number of digits read.
size_t ReadDigits(std::string_view text, int base, size_t most, unsigned &number) {
  size_t count = 0;
  number = 0;
  while (count < most && count < text.size() && DigitValue(text[count]) < base)
    number = number * static_cast<unsigned>(base) + static_cast<unsigned>(DigitValue(text[count++]));
  return count;
}

// The character that an escape (without its backslash) stands for; moves the text behind it.
char16_t ReadEscape(std::string_view &text) {
  unsigned number = 0;
  size_t length = 1;
  const char letter = text[0];
  if (const size_t control = ControlLetters.find(letter); letter != '.' && control != std::string_view::npos) {
    number = static_cast<unsigned>(control);
  } else if (letter == 'x') {
    const size_t digits = ReadDigits(text.substr(1), 16, 4, number);
    length += digits;
    if (digits == 0)
      number = 'x';
  } else if (letter >= '0' && letter <= '7') {
    length = ReadDigits(text, 8, 3, number);
  } else {
    number = static_cast<unsigned char>(letter);
  }
  text.remove_prefix(length);
  return static_cast<char16_t>(number);
}

// Reads an escaped text up to its closing character, which the text is moved behind; false if that doesn't come. A
// backslash between names of a key's path is an escaped one.
bool ReadEscaped(std::string_view &text, char close, std::u16string &result) {
  result.clear();
  while (!text.empty()) {
    const char byte = text[0];
    if (byte == '\\') {
      text.remove_prefix(1);
      if (text.empty())
        return false;
      result += ReadEscape(text);
    } else if (byte == close) {
      text.remove_prefix(1);
      return true;
    } else if (static_cast<unsigned char>(byte) < 0x80) {
      result += static_cast<char16_t>(byte);
      text.remove_prefix(1);
    } else { // Wine escapes all that isn't ASCII; a text editor may have put it there as UTF-8
      const size_t end = std::min(text.find_first_of("\\\"]"), text.size());
      std::u16string wide;
      if (!text::Utf8ToWide(text.substr(0, end), wide))
        return false;
      result += wide;
      text.remove_prefix(end);
    }
  }
  return false;
}

void AppendEscaped(std::string &out, std::u16string_view wide, std::string_view special) {
  char buffer[8];
  for (size_t index = 0; index < wide.size(); ++index) {
    const char16_t unit = wide[index];
    const char16_t next = index + 1 < wide.size() ? wide[index + 1] : u'\0';
    const char nextByte = next < 0x80 ? static_cast<char>(next) : '\0';
    if (unit > 127) {
      std::snprintf(buffer, sizeof buffer, DigitValue(nextByte) < 16 ? "\\x%04x" : "\\x%x",
                    static_cast<unsigned>(unit));
      out += buffer;
    } else if (unit < 32) {
      if (ControlLetters[unit] != '.') {
        out += '\\';
        out += ControlLetters[unit];
      } else {
        std::snprintf(buffer, sizeof buffer, nextByte >= '0' && nextByte <= '7' ? "\\%03o" : "\\%o",
                      static_cast<unsigned>(unit));
        out += buffer;
      }
    } else {
      if (unit == u'\\' || special.find(static_cast<char>(unit)) != std::string_view::npos)
        out += '\\';
      out += static_cast<char>(unit);
    }
  }
}

// ---- Values ----

bool SkipPrefix(std::string_view &text, std::string_view prefix) {
  if (!text.starts_with(prefix))
    return false;
  text.remove_prefix(prefix.size());
  return true;
}

// The number in the brackets of "hex(N):" or "str(N):", and the colon; `fallback` where there are no brackets.
bool ReadType(std::string_view &text, DWORD fallback, DWORD &type) {
  type = fallback;
  if (SkipPrefix(text, "(")) {
    unsigned number = 0;
    text.remove_prefix(ReadDigits(text, 16, 8, number));
    type = number;
    if (!SkipPrefix(text, ")"))
      return false;
  }
  return SkipPrefix(text, ":");
}

bool ReadHexBytes(std::string_view text, std::string &data) {
  data.clear();
  const auto skip = [&] { text.remove_prefix(std::min(text.find_first_not_of("\\\r\n \t"), text.size())); };
  for (skip(); !text.empty(); skip()) {
    unsigned byte = 0;
    if (ReadDigits(text, 16, 2, byte) != 2)
      return false;
    data += static_cast<char>(static_cast<unsigned char>(byte));
    text.remove_prefix(2);
    skip();
    if (!text.empty() && !SkipPrefix(text, ","))
      return false;
  }
  return true;
}

// Reads a value's name and the equals sign behind it.
bool ReadName(std::string_view &text, std::u16string &name) {
  name.clear();
  if (SkipPrefix(text, "@="))
    return true;
  return SkipPrefix(text, "\"") && ReadEscaped(text, '"', name) && SkipPrefix(text, "=");
}

// Reads what stands behind the equals sign.
bool ReadData(std::string_view text, HiveValue &value) {
  const size_t end = text.find_last_not_of("\r\n");
  text = text.substr(0, end == std::string_view::npos ? 0 : end + 1);
  if (SkipPrefix(text, "dword:")) {
    unsigned number = 0;
    const size_t digits = ReadDigits(text, 16, 8, number);
    value.type = REG_DWORD;
    value.data.assign(reinterpret_cast<const char *>(&number), sizeof number);
    return digits > 0 && digits == text.size();
  }
  if (SkipPrefix(text, "hex"))
    return ReadType(text, REG_BINARY, value.type) && ReadHexBytes(text, value.data);
  value.type = REG_SZ;
  if (SkipPrefix(text, "str") && !ReadType(text, REG_SZ, value.type))
    return false;
  std::u16string wide;
  if (!SkipPrefix(text, "\"") || !ReadEscaped(text, '"', wide) || !text.empty())
    return false;
  wide += u'\0';
  value.data = text::BytesOf(wide);
  return true;
}

void AppendHex(std::string &line, const HiveValue &value) {
  constexpr size_t LongestLine = 76;
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, value.type == REG_BINARY ? "hex:" : "hex(%x):", value.type);
  line += buffer;
  size_t column = line.size();
  for (size_t index = 0; index < value.data.size(); ++index) {
    std::snprintf(buffer, sizeof buffer, "%02x", static_cast<unsigned char>(value.data[index]));
    line += buffer;
    column += 2;
    if (index + 1 == value.data.size())
      break;
    line += ',';
    if (++column > LongestLine) {
      line += "\\\n  ";
      column = 2;
    }
  }
}

// A value's lines as Wine itself writes them.
std::string FormatValue(const HiveValue &value) {
  std::string line;
  if (value.name.empty()) {
    line = "@=";
  } else {
    line = "\"";
    AppendEscaped(line, value.name, "\"");
    line += "\"=";
  }
  const std::u16string wide = text::WideOf(value.data);
  const bool terminated = value.data.size() % sizeof(char16_t) == 0 && !wide.empty() && wide.back() == u'\0';
  char buffer[24];
  if (IsText(value.type) && terminated) {
    if (value.type != REG_SZ) {
      std::snprintf(buffer, sizeof buffer, "str(%x):", value.type);
      line += buffer;
    }
    line += '"';
    AppendEscaped(line, std::u16string_view(wide).substr(0, wide.size() - 1), "\"");
    line += '"';
  } else if (value.type == REG_DWORD && value.data.size() == sizeof(DWORD)) {
    DWORD number = 0;
    std::memcpy(&number, value.data.data(), sizeof number);
    std::snprintf(buffer, sizeof buffer, "dword:%08x", number);
    line += buffer;
  } else {
    AppendHex(line, value);
  }
  return line + '\n';
}

// ---- Lines ----

// The next line with its line feed, of a text that ends in one.
std::string_view TakeLine(std::string_view &rest) {
  const std::string_view line = rest.substr(0, rest.find('\n') + 1);
  rest.remove_prefix(line.size());
  return line;
}

std::string_view Trimmed(std::string_view line) {
  const size_t end = line.find_last_not_of("\r\n \t");
  return line.substr(0, end == std::string_view::npos ? 0 : end + 1);
}

// ---- Headings ----

constexpr std::string_view NameSeparator = "\\\\"; // an escaped backslash

// Where the first name of a path in a heading ends: before a separator, or the last one before the bracket.
size_t EndOfName(std::string_view path) {
  size_t end = 0;
  while (end < path.size() && path[end] != ']' && !path.substr(end).starts_with(NameSeparator))
    end += path[end] == '\\' ? 2 : 1;
  return end;
}

bool ReadKeyName(std::string_view escaped, std::u16string &name) {
  const std::string closed = std::string(escaped) + ']';
  std::string_view rest = closed;
  return ReadEscaped(rest, ']', name) && !name.empty() && name.size() <= LongestName &&
         name.find(u'\\') == std::u16string::npos;
}

bool IsValueLine(std::string_view line) { return line[0] == '"' || line[0] == '@'; }

// Hexadecimal data goes on in the next line behind a backslash; a text ends in its quote.
bool GoesOn(std::string_view line) { return Trimmed(line).ends_with('\\'); }

// A value's line with its continuation lines.
std::string_view TakeValue(std::string_view &rest) {
  const std::string_view all = rest;
  bool more = true;
  while (more && !rest.empty())
    more = GoesOn(TakeLine(rest));
  return all.substr(0, all.size() - rest.size());
}

// Whether a value's lines belong together: its name can be read, and what goes on in further lines is hexadecimal.
bool IsSoundValue(std::string_view value) {
  std::string_view data = value;
  std::u16string name;
  if (!ReadName(data, name) || GoesOn(value))
    return false;
  std::string_view rest = value;
  TakeLine(rest);
  if (!rest.empty() && !data.starts_with("hex"))
    return false;
  while (!rest.empty()) {
    if (rest[0] != ' ' && DigitValue(rest[0]) >= 16)
      return false;
    TakeLine(rest);
  }
  return true;
}

constexpr std::string_view LinkLine = "#link";
constexpr std::string_view Arch64Line = "#arch=win64";

} // namespace

bool IsText(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ; }

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
