// The multi-byte functions of the run-time library, in code page 932.
#include "win32/win32.h"

#include "win32/linux/text/code_page.h"

#include <cstring>

namespace {

// The character that begins there as one number, lead byte first; moves the text behind it.
unsigned int NextCharacter(const unsigned char *&text) {
  const unsigned int first = *text++;
  if (!text::IsLeadByte(static_cast<unsigned char>(first)) || *text == 0)
    return first;
  return first << 8 | *text++;
}

// Latin letters in lower case, half-width and full-width.
unsigned int LowerCase(unsigned int character) {
  if (character >= 'A' && character <= 'Z')
    return character + 0x20;
  if (character >= 0x8260 && character <= 0x8279)
    return character + 0x21;
  return character;
}

} // namespace

int _mbsicmp(const unsigned char *left, const unsigned char *right) {
  for (;;) {
    const unsigned int a = LowerCase(NextCharacter(left));
    const unsigned int b = LowerCase(NextCharacter(right));
    if (a != b || a == 0)
      return a < b ? -1 : a > b ? 1 : 0;
  }
}

int _ismbcalpha(unsigned int character) {
  const unsigned int lower = LowerCase(character);
  const bool kana = character >= 0xA6 && character <= 0xDF; // half-width, a letter in one byte
  return (lower >= 'a' && lower <= 'z') || (lower >= 0x8281 && lower <= 0x829A) || kana ? 1 : 0;
}

int _ismbcdigit(unsigned int character) {
  return (character >= '0' && character <= '9') || (character >= 0x824F && character <= 0x8258) ? 1 : 0;
}
