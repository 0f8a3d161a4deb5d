// Profile files: headings in brackets, and below each its lines `name=value`. They are read anew by every call.
#include "win32/win32.h"

#include "win32/linux/hive.h"
#include "win32/linux/text.h"

#include <algorithm>
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

// A file's text; empty for one that can't be read.
std::u16string ReadProfile(const std::string &path) {
  const HANDLE file =
      CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE)
    return {};
  std::string bytes;
  char block[4096];
  for (DWORD read = 0; ReadFile(file, block, sizeof block, &read, nullptr) != FALSE && read != 0;)
    bytes.append(block, read);
  CloseHandle(file);
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

std::vector<Text> Sections(Text profile) {
  std::vector<Text> names;
  while (!profile.empty())
    if (const std::optional<Text> heading = Heading(TakeLine(profile)))
      names.push_back(*heading);
  return names;
}

struct Entry {
  Text name;
  Text value;
};

// The entries of the first section with that name.
std::vector<Entry> EntriesOf(Text profile, Text section) {
  std::vector<Entry> entries;
  bool within = false;
  while (!profile.empty()) {
    const Text line = TakeLine(profile);
    const size_t equals = line.find(u'=');
    if (const std::optional<Text> heading = Heading(line)) {
      if (within)
        break;
      within = machine::SameName(*heading, section);
    } else if (within && equals != Text::npos && !line.starts_with(u';')) {
      entries.push_back({Trimmed(line.substr(0, equals)), Unquoted(Trimmed(line.substr(equals + 1)))});
    }
  }
  return entries;
}

// How many bytes of a text are whole characters within a room.
size_t WholeCharacters(std::string_view text, size_t room) {
  size_t length = 0;
  while (length < text.size()) {
    const size_t size = text::IsLeadByte(static_cast<unsigned char>(text[length])) ? 2 : 1;
    if (length + size > room)
      break;
    length += size;
  }
  return length;
}

// Hands a text to the caller's buffer. One that has to be cut has that many terminators behind it.
DWORD Give(std::string_view text, DWORD terminators, char *buffer, DWORD size) {
  if (size == 0)
    return 0;
  const size_t length = text.size() < size ? text.size() : WholeCharacters(text, size - std::min(size, terminators));
  text.copy(buffer, length);
  std::memset(buffer + length, 0, std::min<size_t>(size - length, terminators));
  return static_cast<DWORD>(length);
}

DWORD GiveNames(const std::vector<Text> &names, char *buffer, DWORD size) {
  std::string list;
  for (const Text name : names)
    list += text::FromWide(name) + '\0';
  return Give(list, 2, buffer, size);
}

} // namespace

DWORD GetPrivateProfileStringA(const char *section, const char *key, const char *defaultText, char *buffer, DWORD size,
                               const char *path) {
  const std::u16string profile = ReadProfile(FullPath(path != nullptr ? path : "win.ini"));
  if (section == nullptr)
    return GiveNames(Sections(profile), buffer, size);
  const std::u16string wantedSection = text::ToWide(section);
  const std::vector<Entry> entries = EntriesOf(profile, Trimmed(wantedSection));
  if (key == nullptr && !entries.empty()) {
    std::vector<Text> names(entries.size());
    std::ranges::transform(entries, names.begin(), &Entry::name);
    return GiveNames(names, buffer, size);
  }
  if (key != nullptr) {
    const std::u16string wanted = text::ToWide(key);
    for (const Entry &entry : entries)
      if (machine::SameName(entry.name, Trimmed(wanted)))
        return Give(text::FromWide(entry.value), 1, buffer, size);
  }
  const std::string_view standIn = defaultText != nullptr ? defaultText : "";
  return Give(standIn.substr(0, standIn.find_last_not_of(' ') + 1), 1, buffer, size);
}
