// INI files: headings in brackets, and below each its lines `name=value`. Every call reads the file, and parses
// it only if it has changed: callers read many values in a row.
#include "win32/win32.h"

#include "win32/linux/machine/machine_folder.h"
#include "win32/linux/machine/paths.h"
#include "win32/linux/text/code_page.h"
#include "win32/linux/text/names.h"

#include <algorithm>
#include <array>
#include <memory>
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

struct CloseFile {
  void operator()(HANDLE file) const { CloseHandle(file); }
};

// A larger file is nobody's settings, and would keep a user waiting who has it asked for value after value.
constexpr size_t LargestFile = size_t{256} << 10;

// A file's bytes; none of one that can't be read or is too large.
std::string ReadBytes(const char *path) {
  const HANDLE opened =
      CreateFileA(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
  if (opened == INVALID_HANDLE_VALUE)
    return {};
  const std::unique_ptr<void, CloseFile> file(opened);
  std::string bytes;
  std::array<char, 65536> block;
  for (DWORD read = 0; bytes.size() <= LargestFile &&
                       ReadFile(file.get(), block.data(), block.size(), &read, nullptr) != FALSE && read != 0;)
    bytes.append(block.data(), read);
  if (bytes.size() <= LargestFile)
    return bytes;
  machine::RecordFault(machine::NameOnMachine(path) + ": this file has more than 256 KB and isn't read");
  return {};
}

std::u16string Decoded(std::string_view bytes) {
  constexpr std::string_view ByteOrderMark = "\xFF\xFE";
  if (!bytes.starts_with(ByteOrderMark))
    return text::ToWide(bytes);
  return text::WideOf(bytes.substr(ByteOrderMark.size()));
}

// Takes the first line off the text. What is behind a zero byte doesn't count.
Text TakeLine(Text &rest) {
  const size_t end = std::min(rest.find_first_of(u"\r\n"), rest.size());
  const Text line = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
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

std::vector<Section> Parse(Text ini) {
  std::vector<Section> sections;
  while (!ini.empty()) {
    const Text line = TakeLine(ini);
    const size_t equals = line.find(u'=');
    if (const std::optional<Text> heading = Heading(line))
      sections.push_back({*heading, {}});
    else if (!sections.empty() && equals != Text::npos && !line.starts_with(u';'))
      sections.back().entries.push_back({Trimmed(line.substr(0, equals)), Unquoted(Trimmed(line.substr(equals + 1)))});
  }
  return sections;
}

// The sections of the file, which hold until the thread's next call.
const std::vector<Section> &ReadSections(const char *path) {
  struct IniFile {
    std::string bytes;
    std::u16string text;
    std::vector<Section> sections;
  };
  thread_local IniFile last;
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
      all, [wanted = Trimmed(wide)](Text known) { return text::SameName(known, wanted); }, &Named::name);
  return found != all.end() ? &*found : nullptr;
}

} // namespace

DWORD GetPrivateProfileStringA(const char *section, const char *key, const char *defaultText, char *buffer, DWORD size,
                               const char *path) {
  const Section *const found = FindNamed(ReadSections(path), section);
  const Entry *const entry = found != nullptr ? FindNamed(found->entries, key) : nullptr;
  const std::string value = entry != nullptr ? text::FromWide(entry->value) : defaultText;
  const std::string_view given = value.size() < size ? value : text::WholeCharacters(value, size - 1);
  buffer[given.copy(buffer, given.size())] = '\0';
  return static_cast<DWORD>(given.size());
}
