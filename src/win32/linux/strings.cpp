// Text calls that user interfaces make.
#include "win32/win32_ui.h"

#include "win32/linux/text.h"

#include <algorithm>
#include <compare>
#include <cstdio>
#include <string>
#include <utility>

namespace {

constexpr size_t LongestFormatted = 1024; // with its terminator

// Dictionaries have other signs before digits and those before letters, and both cases of a letter together.
std::pair<int, char16_t> SortKey(char16_t character) {
  const char16_t upper = text::Upper(character);
  const bool digit = upper >= u'0' && upper <= u'9';
  const bool letter = (upper >= u'A' && upper <= u'Z') || upper >= 0x80;
  return {letter ? 2 : digit ? 1 : 0, upper};
}

} // namespace

int wsprintfA(char *buffer, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(buffer, LongestFormatted, format, arguments);
  va_end(arguments);
  return std::clamp(length, 0, static_cast<int>(LongestFormatted) - 1);
}

int lstrcmpA(const char *left, const char *right) {
  if (left == nullptr || right == nullptr)
    return (left != nullptr) - (right != nullptr);
  const std::u16string a = text::ToWide(left);
  const std::u16string b = text::ToWide(right);
  const auto sign = [](std::weak_ordering order) { return std::is_gt(order) - std::is_lt(order); };
  const auto byKey = std::lexicographical_compare_three_way(
      a.begin(), a.end(), b.begin(), b.end(), [](char16_t x, char16_t y) { return SortKey(x) <=> SortKey(y); });
  return std::is_neq(byKey) ? sign(byKey) : -sign(a <=> b); // small letters before capitals
}
