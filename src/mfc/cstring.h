// The framework's string: bytes in the system's code page. It can be used wherever a std::string can; it adds only the
// operations that the standard string lacks or names differently. Lengths and positions are in bytes.
#pragma once

#include <string>
#include <utility>

class CString : public std::string {
public:
  using std::string::string;
  CString() = default;
  CString(const std::string &text) : std::string(text) {}
  CString(std::string &&text) noexcept : std::string(std::move(text)) {}

  bool IsEmpty() const { return empty(); }

  // Changes Latin letters of one byte; characters of two bytes stay.
  void MakeUpper();
  void MakeLower();
  // Removes white space of one byte at the end.
  void TrimRight();

  // The position of a text; it matches only at the beginning of a character. -1 if it isn't found.
  int Find(const std::string &text) const;

  // The text from a position on.
  CString Mid(int first) const;
};
