#include "win32/linux/machine/hive_text.h"

#include "win32/linux/text/code_page.h"
#include "win32/linux/text/names.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace machine {

bool IsText(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ; }

// ---- Escapes ----

namespace {

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

// Whether a byte of an escaped text stands for itself.
bool IsPlain(char byte) { return static_cast<unsigned char>(byte) < 0x80 && byte != '\\'; }

// Where an escaped text ends, at its closing character; npos if that doesn't come.
size_t EndOfEscaped(std::string_view text, char close) {
  size_t end = 0;
  while (end < text.size() && text[end] != close)
    end += text[end] == '\\' ? 2 : 1;
  return end < text.size() ? end : std::string_view::npos;
}

// Reads an escaped text, which doesn't end within an escape; false if it isn't UTF-8. Wine escapes all that isn't
// ASCII; a text editor may have put it there.
bool Unescape(std::string_view text, std::u16string &result) {
  result.clear();
  while (!text.empty()) {
    const auto plain = static_cast<size_t>(std::ranges::find_if_not(text, IsPlain) - text.begin());
    const size_t read = result.size();
    result.resize(read + plain);
    std::copy_n(text.begin(), plain, result.begin() + static_cast<ptrdiff_t>(read));
    text.remove_prefix(plain);
    if (text.starts_with('\\')) {
      text.remove_prefix(1);
      result += ReadEscape(text);
    } else if (!text.empty()) {
      const std::string_view utf8 = text.substr(0, text.find('\\'));
      std::u16string wide;
      if (!text::Utf8ToWide(utf8, wide))
        return false;
      result += wide;
      text.remove_prefix(utf8.size());
    }
  }
  return true;
}

} // namespace

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

namespace {

bool SkipPrefix(std::string_view &text, std::string_view prefix) {
  if (!text.starts_with(prefix))
    return false;
  text.remove_prefix(prefix.size());
  return true;
}

// Takes a text in quotes off the text, still escaped; false if there is none.
bool TakeQuoted(std::string_view &text, std::string_view &escaped) {
  if (!SkipPrefix(text, "\""))
    return false;
  escaped = text.substr(0, EndOfEscaped(text, '"'));
  text.remove_prefix(escaped.size());
  return SkipPrefix(text, "\"");
}

// Takes a value's name, still escaped, and the equals sign off its line; false if they aren't there.
bool TakeName(std::string_view &text, std::string_view &escaped) {
  return SkipPrefix(text, "@=") || (TakeQuoted(text, escaped) && SkipPrefix(text, "="));
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

} // namespace

bool ReadName(std::string_view &text, std::u16string &name) {
  std::string_view escaped;
  return TakeName(text, escaped) && Unescape(escaped, name);
}

bool HasName(std::string_view value, std::u16string_view name) {
  if (value[0] == '@')
    return name.empty();
  value.remove_prefix(1);
  // Nearly all names are told apart before an escape.
  const auto isPlain = [](char byte) { return IsPlain(byte) && byte != '"'; };
  size_t same = 0;
  while (same < name.size() && isPlain(value[same]) &&
         text::Upper(static_cast<char16_t>(value[same])) == text::Upper(name[same]))
    ++same;
  if (isPlain(value[same]))
    return false;
  std::u16string rest;
  value.remove_prefix(same);
  return Unescape(value.substr(0, EndOfEscaped(value, '"')), rest) && text::SameName(rest, name.substr(same));
}

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
  std::string_view escaped;
  std::u16string wide;
  if (!TakeQuoted(text, escaped) || !text.empty() || !Unescape(escaped, wide))
    return false;
  wide += u'\0';
  value.data = text::BytesOf(wide);
  return true;
}

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

std::string_view TakeLine(std::string_view &rest) {
  const std::string_view line = rest.substr(0, rest.find('\n') + 1);
  rest.remove_prefix(line.size());
  return line;
}

std::string_view Trimmed(std::string_view line) {
  const auto isBlank = [](char byte) { return byte == '\n' || byte == '\r' || byte == ' ' || byte == '\t'; };
  while (!line.empty() && isBlank(line.back()))
    line.remove_suffix(1);
  return line;
}

// ---- Headings ----

namespace {

// Hexadecimal data goes on in the next line behind a backslash; a text ends in its quote.
bool GoesOn(std::string_view line) { return Trimmed(line).ends_with('\\'); }

} // namespace

size_t EndOfName(std::string_view path) {
  size_t end = 0;
  while (end < path.size() && path[end] != ']' && !path.substr(end).starts_with(NameSeparator))
    end += path[end] == '\\' ? 2 : 1;
  return end;
}

bool ReadKeyName(std::string_view escaped, std::u16string &name) {
  return Unescape(escaped, name) && !name.empty() && name.size() <= LongestName &&
         name.find(u'\\') == std::u16string::npos;
}

bool IsKeyName(std::string_view escaped) {
  if (!escaped.empty() && escaped.size() <= LongestName && std::ranges::all_of(escaped, IsPlain))
    return true;
  std::u16string name;
  return ReadKeyName(escaped, name);
}

bool IsValueLine(std::string_view line) { return line[0] == '"' || line[0] == '@'; }

std::string_view TakeValue(std::string_view &rest) {
  const std::string_view all = rest;
  bool more = true;
  while (more && !rest.empty())
    more = GoesOn(TakeLine(rest));
  return all.substr(0, all.size() - rest.size());
}

bool IsSoundValue(std::string_view value) {
  std::string_view data = value;
  std::string_view escaped;
  std::u16string name;
  if (!TakeName(data, escaped) || !(std::ranges::all_of(escaped, IsPlain) || Unescape(escaped, name)) || GoesOn(value))
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

} // namespace machine
