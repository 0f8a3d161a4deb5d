// Putting texts together for the clients' formats.
#pragma once

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
