// Texts as user interfaces compare them.
#include "win32/win32.h"

#include "win32/linux/text/code_page.h"
#include "win32/linux/text/names.h"

#include <algorithm>
#include <compare>
#include <string>
#include <utility>

namespace {

// Dictionaries have other signs before digits and those before letters, and both cases of a letter together.
std::pair<int, char16_t> SortKey(char16_t character) {
  const char16_t upper = text::Upper(character);
  const bool digit = upper >= u'0' && upper <= u'9';
  const bool letter = (upper >= u'A' && upper <= u'Z') || upper >= 0x80;
  return {letter ? 2 : digit ? 1 : 0, upper};
}

} // namespace

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
