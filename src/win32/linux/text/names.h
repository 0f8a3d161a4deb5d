// Names of keys, values and files: paths of them, and their comparison, for which case doesn't matter.
#pragma once

#include <string>
#include <string_view>

namespace text {

// Takes the first name off a path of names divided by backslashes; an empty one if there is none.
std::u16string_view TakeName(std::u16string_view &path);

// Simple upper case, as names of keys, values and files are compared by: Latin, Greek and Cyrillic letters.
char16_t UpperBeyondAscii(char16_t character);
inline char16_t Upper(char16_t character) {
  if (character < 0x80)
    return static_cast<char16_t>(character >= u'a' && character <= u'z' ? character - 0x20 : character);
  return UpperBeyondAscii(character);
}
std::u16string ToUpper(std::u16string_view wide);
// Whether two names are the same, which case doesn't matter for.
bool SameName(std::u16string_view left, std::u16string_view right);

} // namespace text
