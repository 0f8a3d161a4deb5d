// Putting texts together for the clients' formats, and comparing them.
#pragma once

#include "win32/win32.h"

#include <string>

// The format with every %s replaced by the next of the texts, in order; nothing is cut.
template <typename... Texts> std::string Format(const std::string &format, const Texts &...texts) {
  const std::string *const list[] = {&texts...};
  std::string result;
  size_t begin = 0;
  for (const std::string *text : list) {
    const size_t place = format.find("%s", begin);
    result.append(format, begin, place - begin);
    result += *text;
    begin = place + 2;
  }
  return result.append(format, begin);
}

inline bool SameIgnoringCase(const std::string &left, const std::string &right) {
  const auto bytes = [](const std::string &text) { return reinterpret_cast<const unsigned char *>(text.c_str()); };
  return _mbsicmp(bytes(left), bytes(right)) == 0;
}
