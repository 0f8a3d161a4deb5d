// Putting texts together for the clients' formats, and comparing them.
#pragma once

#include "win32/win32.h"

#include <string>
#include <string_view>

// The format with every %s replaced by the next of the texts, in order; nothing is cut.
template <typename... Texts> std::string Format(std::string_view format, const Texts &...texts) {
  std::string result;
  for (const std::string_view text : {std::string_view(texts)...}) {
    const size_t end = format.find("%s");
    result.append(format.substr(0, end)).append(text);
    format.remove_prefix(end + 2);
  }
  return result.append(format);
}

inline bool SameIgnoringCase(const std::string &left, const std::string &right) {
  const auto bytes = [](const std::string &text) { return reinterpret_cast<const unsigned char *>(text.c_str()); };
  return _mbsicmp(bytes(left), bytes(right)) == 0;
}
