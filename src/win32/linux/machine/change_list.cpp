#include "win32/linux/machine/change_list.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <set>

namespace machine {

// Hives have megabytes: four rows of eight bytes at a time, which don't wait for each other.
Digest DigestOf(std::string_view bytes) {
  constexpr size_t Rows = 4;
  std::array<uint64_t, Rows> hashes = {1, 2, 3, 4};
  const auto mix = [](uint64_t &hash, uint64_t block) { hash = std::rotl((hash ^ block) * 0xFF51AFD7ED558CCD, 31); };
  std::array<uint64_t, Rows> blocks;
  const uint64_t size = bytes.size();
  for (; bytes.size() >= sizeof blocks; bytes.remove_prefix(sizeof blocks)) {
    std::memcpy(blocks.data(), bytes.data(), sizeof blocks);
    for (size_t row = 0; row < Rows; ++row)
      mix(hashes[row], blocks[row]);
  }
  blocks = {};
  std::memcpy(blocks.data(), bytes.data(), bytes.size());
  for (size_t row = 0; row < Rows; ++row)
    mix(hashes[row], blocks[row]);
  for (size_t row = 1; row < Rows; ++row)
    mix(hashes[0], hashes[row]);
  return {size, hashes[0]};
}

namespace {

constexpr std::string_view Heading = "acctkit changes ";
constexpr std::string_view Version = "1";

std::string Hex(uint64_t number) {
  char digits[16];
  return {digits, std::to_chars(digits, digits + sizeof digits, number, 16).ptr};
}

std::string TextOf(const Content &content) {
  return content ? std::to_string(content->size) + ':' + Hex(content->hash) : "-";
}

bool ReadNumber(std::string_view text, int base, uint64_t &number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  return error == std::errc() && end == text.data() + text.size();
}

bool ReadContent(std::string_view text, Content &content) {
  const size_t colon = text.find(':');
  Digest digest{};
  if (text == "-")
    return true;
  if (colon == std::string_view::npos || !ReadNumber(text.substr(0, colon), 10, digest.size) ||
      !ReadNumber(text.substr(colon + 1), 16, digest.hash))
    return false;
  content = digest;
  return true;
}

// Takes the text before a separator off another one; all of it if there is none.
std::string_view TakeText(std::string_view &rest, char separator) {
  const size_t end = std::min(rest.find(separator), rest.size());
  const std::string_view taken = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return taken;
}

// Whether it names a file in a folder, and not one elsewhere.
bool IsPlainName(std::string_view name) {
  return !name.empty() && name.find('/') == std::string_view::npos && name != "." && name != "..";
}

bool ReadFileLine(std::string_view line, ListedFile &file) {
  file.stored = TakeText(line, ' ');
  const bool isSound = ReadContent(TakeText(line, ' '), file.before) && ReadContent(TakeText(line, ' '), file.after);
  file.path = line;
  return isSound && IsPlainName(file.stored);
}

} // namespace

std::string ChangeList::Text() const {
  std::string text = std::string(Heading).append(Version).append(undoable ? " undoable " : " final ") + token + '\n';
  for (const ListedFile &file : files)
    text += "file " + file.stored + ' ' + TextOf(file.before) + ' ' + TextOf(file.after) + ' ' + file.path + '\n';
  for (const std::string &folder : folders)
    text += "folder " + folder + '\n';
  return text + "end\n";
}

ListState ReadChangeList(std::string_view text, ChangeList &list) {
  if (!text.starts_with(Heading) || text.back() != '\n')
    return ListState::Damaged;
  text.remove_prefix(Heading.size());
  std::string_view heading = TakeText(text, '\n');
  if (TakeText(heading, ' ') != Version)
    return ListState::Newer;
  list.undoable = TakeText(heading, ' ') == "undoable";
  list.token = heading;
  bool isSound = IsPlainName(list.token);
  std::set<std::string> stored; // each file is put in place once
  while (isSound && !text.empty()) {
    std::string_view line = TakeText(text, '\n');
    const std::string_view kind = TakeText(line, ' ');
    if (kind == "end")
      return ListState::Whole;
    if (kind == "folder")
      list.folders.emplace_back(line);
    else
      isSound = kind == "file" && ReadFileLine(line, list.files.emplace_back()) &&
                stored.insert(list.files.back().stored).second;
  }
  return ListState::Damaged; // it has no end
}

} // namespace machine
