// Profile files: headings in brackets, and below each its lines `name=value`. They are read anew by every call, and
// parsed anew when they have changed: who asks for many values asks for one after the other.
#include "win32/win32.h"

#include "win32/linux/machine/hive.h"
#include "win32/linux/text/code_page.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Text = std::u16string_view;

constexpr Text Blanks = u" \t\v\f\u001A"; // with the end mark of old editors

Text Trimmed(Text text) {
  const size_t begin = text.find_first_not_of(Blanks);
  return begin == Text::npos ? Text() : text.substr(begin, text.find_last_not_of(Blanks) + 1 - begin);
}

Text Unquoted(Text text) {
  const bool quoted =
      text.size() >= 2 && (text.front() == u'"' || text.front() == u'\'') && text.back() == text.front();
  return quoted ? text.substr(1, text.size() - 2) : text;
}

// A file name without a folder means the Windows directory's.
std::string FullPath(const std::string &path) {
  if (text::ToWide(path).find_first_of(u"\\/:") != Text::npos)
    return path;
  char directory[MAX_PATH] = "";
  GetWindowsDirectoryA(directory, sizeof directory);
  return std::string(directory) + '\\' + path;
}

// A file's bytes; none of one that can't be read.
std::string ReadBytes(const std::string &path) {
  const HANDLE file =
      CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE)
    return {};
  std::string bytes;
  std::array<char, 65536> block;
  for (DWORD read = 0; ReadFile(file, block.data(), block.size(), &read, nullptr) != FALSE && read != 0;)
    bytes.append(block.data(), read);
  CloseHandle(file);
  return bytes;
}

std::u16string Decoded(std::string_view bytes) {
  constexpr std::string_view ByteOrderMark = "\xFF\xFE";
  if (!bytes.starts_with(ByteOrderMark))
    return text::ToWide(bytes);
  std::u16string wide((bytes.size() - ByteOrderMark.size()) / sizeof(char16_t), u'\0');
  std::memcpy(wide.data(), bytes.data() + ByteOrderMark.size(), wide.size() * sizeof(char16_t));
  return wide;
}

// Takes the first line off the text. What is behind a zero byte doesn't count.
Text TakeLine(Text &profile) {
  const size_t end = std::min(profile.find_first_of(u"\r\n"), profile.size());
  const Text line = profile.substr(0, end);
  profile.remove_prefix(std::min(end + 1, profile.size()));
  return Trimmed(line.substr(0, line.find(u'\0')));
}

// The section that a line begins, if it does.
std::optional<Text> Heading(Text line) {
  const size_t end = line.find(u']');
  if (!line.starts_with(u'[') || end == Text::npos)
    return std::nullopt;
  return Trimmed(line.substr(1, end - 1));
}

struct Entry {
  Text name;
  Text value;
};

struct Section {
  Text name;
  std::vector<Entry> entries;
};

std::vector<Section> Parse(Text profile) {
  std::vector<Section> sections;
  while (!profile.empty()) {
    const Text line = TakeLine(profile);
    const size_t equals = line.find(u'=');
    if (const std::optional<Text> heading = Heading(line))
      sections.push_back({*heading, {}});
    else if (!sections.empty() && equals != Text::npos && !line.starts_with(u';'))
      sections.back().entries.push_back({Trimmed(line.substr(0, equals)), Unquoted(Trimmed(line.substr(equals + 1)))});
  }
  return sections;
}

// The sections of the file, which hold until the thread's next call.
const std::vector<Section> &ReadProfile(const std::string &path) {
  struct Profile {
    std::string bytes;
    std::u16string text;
    std::vector<Section> sections;
  };
  thread_local Profile last;
  if (std::string bytes = ReadBytes(path); bytes != last.bytes) {
    last = {};
    last.text = Decoded(bytes);
    last.sections = Parse(last.text);
    last.bytes = std::move(bytes); // once all went well
  }
  return last.sections;
}

// The first of that name, be it a section or an entry; null without one.
template <typename Named> const Named *FindNamed(const std::vector<Named> &all, const char *name) {
  const std::u16string wide = text::ToWide(name);
  const auto found = std::ranges::find_if(
      all, [wanted = Trimmed(wide)](Text known) { return machine::SameName(known, wanted); }, &Named::name);
  return found != all.end() ? &*found : nullptr;
}

// Hands a text to the caller's buffer. One that has to be cut has that many terminators behind it.
DWORD Give(std::string_view text, DWORD terminators, char *buffer, DWORD size) {
  if (size == 0)
    return 0;
  const size_t length =
      text.size() < size ? text.size() : text::WholeCharacters(text, size - std::min(size, terminators)).size();
  text.copy(buffer, length);
  std::memset(buffer + length, 0, std::min<size_t>(size - length, terminators));
  return static_cast<DWORD>(length);
}

template <typename Named> DWORD GiveNames(const std::vector<Named> &all, char *buffer, DWORD size) {
  std::string list;
  for (const Named &named : all)
    list += text::FromWide(named.name) + '\0';
  return Give(list, 2, buffer, size);
}

} // namespace

DWORD GetPrivateProfileStringA(const char *section, const char *key, const char *defaultText, char *buffer, DWORD size,
                               const char *path) {
  const std::vector<Section> &profile = ReadProfile(FullPath(path != nullptr ? path : "win.ini"));
  if (section == nullptr)
    return GiveNames(profile, buffer, size);
  const Section *const found = FindNamed(profile, section);
  if (key == nullptr && found != nullptr && !found->entries.empty())
    return GiveNames(found->entries, buffer, size);
  if (key != nullptr && found != nullptr)
    if (const Entry *const entry = FindNamed(found->entries, key))
      return Give(text::FromWide(entry->value), 1, buffer, size);
  const std::string_view standIn = defaultText != nullptr ? defaultText : "";
  return Give(standIn.substr(0, standIn.find_last_not_of(' ') + 1), 1, buffer, size);
}
