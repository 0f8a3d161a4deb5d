#include "mfc/cstring.h"

#include "win32/win32.h"

#include <algorithm>

namespace {

size_t CharacterLength(const std::string &text, size_t position) {
  return IsDBCSLeadByte(static_cast<BYTE>(text[position])) && position + 1 < text.size() ? 2 : 1;
}

// Shifts the codes of the 26 letters from `first` on by a distance.
void MoveLetters(std::string &text, char first, int distance) {
  for (size_t position = 0; position < text.size(); position += CharacterLength(text, position))
    if (text[position] >= first && text[position] < first + 26)
      text[position] = static_cast<char>(text[position] + distance);
}

} // namespace

void CString::MakeUpper() { MoveLetters(*this, 'a', 'A' - 'a'); }

void CString::MakeLower() { MoveLetters(*this, 'A', 'a' - 'A'); }

void CString::TrimRight() {
  // The second byte of a character is never white space.
  erase(find_last_not_of(" \t\n\v\f\r") + 1);
}

int CString::Find(const std::string &text) const {
  for (size_t position = 0; position < size(); position += CharacterLength(*this, position))
    if (compare(position, text.size(), text) == 0)
      return static_cast<int>(position);
  return -1;
}

CString CString::Mid(int first) const { return substr(std::min(static_cast<size_t>(std::max(first, 0)), size())); }
