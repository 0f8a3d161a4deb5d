// Putting texts together for the clients' formats, and comparing them.
#pragma once

#include "win32/win32.h"

#include <initializer_list>
#include <string>
#include <string_view>

// The format with every %s replaced by the next of the texts, in order; nothing is cut.
std::string FormatTexts(std::string_view format, std::initializer_list<std::string_view> texts);
template <typename... Texts> std::string Format(std::string_view format, const Texts &...texts) {
  return FormatTexts(format, {std::string_view(texts)...});
}

// The path of a key or file below another.
std::string Below(std::string_view parent, std::string_view name);

inline bool SameIgnoringCase(const std::string &left, const std::string &right) {
  const auto bytes = [](const std::string &text) { return reinterpret_cast<const unsigned char *>(text.c_str()); };
  return _mbsicmp(bytes(left), bytes(right)) == 0;
}
