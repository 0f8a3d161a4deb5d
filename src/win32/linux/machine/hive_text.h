// How Wine writes a hive: escapes, values, lines and headings of the text "WINE REGISTRY Version 2".
#pragma once

#include "win32/win32.h"

#include <string>
#include <string_view>

namespace machine {

constexpr std::string_view Signature = "WINE REGISTRY Version 2"; // the first line
constexpr size_t LongestName = 255;                               // of a key, in UTF-16
constexpr std::string_view NameSeparator = "\\\\"; // between the names in a heading: an escaped backslash
constexpr DWORD REG_MULTI_SZ = 7;

// Whether values of a type are texts.
bool IsText(DWORD type);

// A value as the registry holds it: texts in UTF-16, little-endian.
struct HiveValue {
  std::u16string name; // empty for the default value
  DWORD type = REG_NONE;
  std::string data;
};

// Appends a text, all but ASCII escaped, and so are the special characters.
void AppendEscaped(std::string &out, std::u16string_view wide, std::string_view special);
// Reads a value's name and the equals sign behind it, and moves the text behind both; false if they aren't there.
bool ReadName(std::string_view &text, std::u16string &name);
// Whether a sound value has that name.
bool HasName(std::string_view value, std::u16string_view name);
// Reads what stands behind the equals sign; false if it is no data.
bool ReadData(std::string_view text, HiveValue &value);
// A value's lines as Wine itself writes them.
std::string FormatValue(const HiveValue &value);

// The next line with its line feed, of a text that ends in one; the text is moved behind it.
std::string_view TakeLine(std::string_view &rest);
// A line without white space at its end.
std::string_view Trimmed(std::string_view line);
bool IsValueLine(std::string_view line);
// A value's line with its continuation lines.
std::string_view TakeValue(std::string_view &rest);
// Whether a value's lines belong together: its name can be read, and what goes on in further lines is hexadecimal.
bool IsSoundValue(std::string_view value);

// Where the first name of a path in a heading ends: before a separator, or the last one before the bracket.
size_t EndOfName(std::string_view path);
// Reads the name of a key; false for one that no key can have.
bool ReadKeyName(std::string_view escaped, std::u16string &name);
// Whether a key can have that name.
bool IsKeyName(std::string_view escaped);

} // namespace machine
