// The framework's string: a text of bytes in the system's code page. It goes wherever a std::string goes; only the
// operations that the standard string lacks, or has under another name, are added. Lengths and positions are in bytes.
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

  // Latin letters of one byte change; characters of two bytes stay.
  void MakeUpper();
  void MakeLower();
  // Removes white space of one byte at the end.
  void TrimRight();

  // Where a text begins, only at the beginning of a character; -1 if it isn't there.
  int Find(const std::string &text) const;

  // What stands from a position on.
  CString Mid(int first) const;
};
