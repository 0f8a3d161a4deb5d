#include "terminal/columns.h"

#include "utf8.h"

#include <algorithm>
#include <cwchar>
#include <string_view>

namespace terminal {

namespace {

// How many bytes the first character takes; a byte that begins none stands for itself.
size_t LengthOfFirst(std::string_view text) {
  std::mbstate_t state{};
  const size_t length = std::mbrlen(text.data(), text.size(), &state);
  return length == 0 || length > text.size() ? 1 : length;
}

int CharacterWidth(const std::string &character) {
  std::mbstate_t state{};
  wchar_t wide = 0;
  const size_t length = std::mbrtowc(&wide, character.data(), character.size(), &state);
  return length > character.size() ? 1 : std::max(wcwidth(wide), 0);
}

bool IsBlank(const std::string &character) { return character == " " || character == "\t"; }

// Whether a line may end between the two.
bool MayBreak(const std::string &before, const std::string &after) {
  static const std::vector<std::string> neverFirst = Characters(ToUtf8("、。」）！？ー"));
  if (std::ranges::find(neverFirst, after) != neverFirst.end())
    return false;
  return IsBlank(before) || CharacterWidth(before) > 1 || CharacterWidth(after) > 1;
}

// How many of the characters make the first line.
size_t CountOfFirstLine(const std::vector<std::string> &characters, size_t from, int width) {
  size_t fitting = from;
  for (int used = 0; fitting < characters.size(); ++fitting)
    if ((used += CharacterWidth(characters[fitting])) > width)
      break;
  if (fitting == characters.size())
    return fitting - from;
  size_t end = fitting;
  while (end > from && !MayBreak(characters[end - 1], characters[end]))
    --end;
  return std::max<size_t>((end > from ? end : fitting) - from, 1);
}

void WrapLine(const std::string &line, int width, std::vector<std::string> &lines) {
  const std::vector<std::string> characters = Characters(line);
  size_t from = 0;
  do {
    const size_t end = from + CountOfFirstLine(characters, from, width);
    std::string &made = lines.emplace_back();
    for (; from < end && from < characters.size(); ++from)
      made += characters[from];
  } while (from < characters.size());
}

} // namespace

std::vector<std::string> Characters(const std::string &text) {
  std::vector<std::string> characters;
  for (size_t at = 0; at < text.size();) {
    const size_t length = LengthOfFirst(std::string_view(text).substr(at));
    characters.push_back(text.substr(at, length));
    at += length;
  }
  return characters;
}

int Width(const std::string &text) {
  int width = 0;
  for (const std::string &character : Characters(text))
    width += CharacterWidth(character);
  return width;
}

std::string Fit(const std::string &text, int width) {
  std::string fitting;
  int used = 0;
  for (const std::string &character : Characters(text)) {
    if (used + CharacterWidth(character) > width)
      break;
    used += CharacterWidth(character);
    fitting += character;
  }
  return fitting.append(static_cast<size_t>(std::max(width - used, 0)), ' ');
}

std::vector<std::string> Wrap(const std::string &text, int width) {
  std::vector<std::string> lines;
  for (size_t at = 0; at <= text.size();) {
    const size_t end = std::min(text.find('\n', at), text.size());
    std::string line = text.substr(at, end - at);
    if (line.ends_with('\r'))
      line.pop_back();
    WrapLine(line, width, lines);
    at = end + 1;
  }
  return lines;
}

} // namespace terminal
