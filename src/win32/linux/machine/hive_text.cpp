#include "win32/linux/machine/hive_text.h"

#include "win32/linux/text/code_page.h"

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
  name.clear();
  if (SkipPrefix(text, "@="))
    return true;
  return SkipPrefix(text, "\"") && ReadEscaped(text, '"', name) && SkipPrefix(text, "=");
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
  std::u16string wide;
  if (!SkipPrefix(text, "\"") || !ReadEscaped(text, '"', wide) || !text.empty())
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
  const size_t end = line.find_last_not_of("\r\n \t");
  return line.substr(0, end == std::string_view::npos ? 0 : end + 1);
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
  const std::string closed = std::string(escaped) + ']';
  std::string_view rest = closed;
  return ReadEscaped(rest, ']', name) && !name.empty() && name.size() <= LongestName &&
         name.find(u'\\') == std::u16string::npos;
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

} // namespace machine
