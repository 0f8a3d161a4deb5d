#include "terminal/columns.h"

#include <algorithm>
#include <cstdlib>
#include <cwchar>

namespace terminal {

namespace {

// How many characters stand in so many columns.
size_t CountWithin(std::wstring_view text, int width) {
  size_t count = 0;
  while (count < text.size() && (width -= wcwidth(text[count])) >= 0)
    ++count;
  return count;
}

// Whether a line may end between the two.
bool MayBreak(wchar_t before, wchar_t after) {
  constexpr std::wstring_view NeverFirst = L"、。」）！？ー";
  return NeverFirst.find(after) == NeverFirst.npos && (before == L' ' || wcwidth(before) > 1 || wcwidth(after) > 1);
}

size_t LengthOfFirstLine(std::wstring_view text, int width) {
  const size_t fitting = CountWithin(text, width);
  if (fitting == text.size())
    return fitting;
  size_t end = fitting;
  while (end > 0 && !MayBreak(text[end - 1], text[end]))
    --end;
  return std::max<size_t>(end > 0 ? end : fitting, 1);
}

} // namespace

std::wstring Widen(const std::string &utf8) {
  std::wstring text(utf8.size(), L'\0');
  const size_t length = std::mbstowcs(text.data(), utf8.c_str(), text.size());
  text.resize(std::min(length, text.size()));
  std::erase(text, L'\r');
  std::ranges::replace_if(
      text, [](wchar_t character) { return character != L'\n' && wcwidth(character) < 0; }, L' ');
  return text;
}

std::string Narrow(wchar_t character) {
  std::string utf8(MB_CUR_MAX, '\0');
  utf8.resize(static_cast<size_t>(std::max(std::wctomb(utf8.data(), character), 0)));
  return utf8;
}

int Width(std::wstring_view text) {
  int width = 0;
  for (const wchar_t character : text)
    width += wcwidth(character);
  return width;
}

std::wstring Fit(std::wstring_view text, int width) {
  std::wstring fitting(text.substr(0, CountWithin(text, width)));
  return fitting.append(static_cast<size_t>(std::max(width - Width(fitting), 0)), L' ');
}

std::vector<std::wstring> Wrap(std::wstring_view text, int width) {
  std::vector<std::wstring> lines;
  for (;;) {
    const std::wstring_view line = text.substr(0, text.find(L'\n'));
    const size_t length = LengthOfFirstLine(line, width);
    lines.emplace_back(line.substr(0, length));
    if (length == text.size())
      return lines;
    text.remove_prefix(length < line.size() ? length : length + 1); // with the line feed
  }
}

} // namespace terminal
