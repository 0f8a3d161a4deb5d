#include "win32/linux/text/names.h"

#include <algorithm>

namespace text {

std::u16string_view TakeName(std::u16string_view &path) {
  path.remove_prefix(std::min(path.find_first_not_of(u'\\'), path.size()));
  const std::u16string_view name = path.substr(0, path.find(u'\\'));
  path.remove_prefix(name.size());
  return name;
}

char16_t UpperBeyondAscii(char16_t character) {
  struct Range {
    char16_t first, last, distance;
  };
  static constexpr Range Ranges[] = {{0xE0, 0xF6, 0x20},     {0xF8, 0xFE, 0x20},    {0x3B1, 0x3C1, 0x20},
                                     {0x3C3, 0x3CB, 0x20},   {0x430, 0x44F, 0x20},  {0x450, 0x45F, 0x50},
                                     {0x2170, 0x217F, 0x10}, {0xFF41, 0xFF5A, 0x20}};
  for (const Range &range : Ranges)
    if (character >= range.first && character <= range.last)
      return static_cast<char16_t>(character - range.distance);
  return character;
}

std::u16string ToUpper(std::u16string_view wide) {
  std::u16string upper(wide);
  for (char16_t &unit : upper)
    unit = Upper(unit);
  return upper;
}

bool SameName(std::u16string_view left, std::u16string_view right) {
  return left.size() == right.size() && std::ranges::equal(left, right, {}, text::Upper, text::Upper);
}

} // namespace text
