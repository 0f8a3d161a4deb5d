#include "stores/prefs_file.h"

#include "stores/file_handle.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace {

// The farthest that a line's start may be before the needle.
constexpr ptrdiff_t LongestWayBack = 1024;

// A line in a text: from the LF before it (or the text's first byte) up to its own LF, which isn't part of it.
struct LineSpan {
  char *begin;
  char *needle;
  char *end;
};

// Finds the line of the first occurrence of the needle; false if there is none, or its start is too far away.
bool FindLine(const char *needle, PrefsText &prefs, LineSpan &line) {
  line.needle = std::strstr(prefs.text, needle);
  if (line.needle == nullptr)
    return false;
  line.end = std::strchr(line.needle, '\n');
  if (line.end == nullptr)
    return false;
  char *const farthest = line.needle - std::min(LongestWayBack, line.needle - prefs.text);
  line.begin = line.needle;
  while (*line.begin != '\n' && line.begin != farthest)
    --line.begin;
  // If the search for the start stops exactly on the line's first byte, the LF before it stays.
  return *line.begin == '\n' || line.begin == prefs.text || line.begin[-1] == '\n';
}

void Erase(PrefsText &prefs, const LineSpan &line) {
  const auto removed = static_cast<size_t>(line.end - line.begin);
  const auto behind = static_cast<size_t>(prefs.text + prefs.length - line.end);
  std::memmove(line.begin, line.end, behind);
  prefs.length -= removed;
  std::memset(prefs.text + prefs.length, 0, removed);
}

// Copies bytes with a terminator into an empty buffer; 0 if they don't fit.
int32_t CopyOut(std::string_view bytes, char *out, int32_t size) {
  if (static_cast<ptrdiff_t>(bytes.size()) >= size)
    return 0;
  out[bytes.copy(out, bytes.size())] = '\0';
  return 1;
}

void Clear(char *out, int32_t size) {
  if (size > 0)
    std::memset(out, 0, static_cast<size_t>(size));
}

// Puts a line at an offset of the text. Without room the text stays as it is, and is no longer whole.
void Insert(PrefsText &prefs, size_t offset, const char *line) {
  const size_t length = std::strlen(line);
  if (length > PrefsCapacity - prefs.length) {
    prefs.whole = false;
    return;
  }
  char *const gap = prefs.text + offset;
  std::memmove(gap + length, gap, prefs.length - offset);
  std::copy_n(line, length, gap);
  prefs.length += length;
}

} // namespace

PrefsText::PrefsText() : text(), length(0), read(false), whole(true) {}

void LoadPrefsText(const char *path, PrefsText &prefs) {
  DWORD size = 0;
  const FileHandle file = OpenFileAlone(path, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS);
  prefs.read = file && ReadFile(file.Get(), prefs.text, sizeof prefs.text, &size, nullptr);
  prefs.length = prefs.read ? strnlen(prefs.text, std::min<size_t>(size, PrefsCapacity)) : 0;
  prefs.whole = prefs.read && prefs.length == size;
  if (prefs.read && !prefs.whole)
    PlatformCall::Report(path, "too long, or with a zero byte in it");
  std::memset(prefs.text + prefs.length, 0, sizeof prefs.text - prefs.length);
  if (prefs.length > 0 && prefs.text[prefs.length - 1] != '\n')
    AppendPrefLine(prefs, "\n");
}

void SavePrefsText(const char *path, const PrefsText &prefs, DWORD access) {
  if (prefs.whole)
    WriteWholeFile(path, access, {prefs.text, prefs.length});
}

int32_t HasPrefText(const char *needle, const PrefsText &prefs) {
  return std::strstr(prefs.text, needle) != nullptr ? 1 : 0;
}

int32_t RemovePrefLine(const char *needle, PrefsText &prefs) {
  LineSpan line;
  if (!FindLine(needle, prefs, line))
    return 0;
  Erase(prefs, line);
  return 1;
}

int32_t TakePrefLine(const char *needle, PrefsText &prefs, char *keep, int32_t keepSize) {
  LineSpan line;
  if (!FindLine(needle, prefs, line) || CopyOut({line.needle, line.end}, keep, keepSize) == 0)
    return 0;
  Erase(prefs, line);
  return 1;
}

void AppendPrefLine(PrefsText &prefs, const char *line) { Insert(prefs, prefs.length, line); }

int32_t InsertPrefLine(const char *needle, PrefsText &prefs, const char *line) {
  const char *const found = std::strstr(prefs.text, needle);
  const char *const end = found != nullptr ? std::strchr(found, '\n') : nullptr;
  if (end == nullptr)
    return 0;
  Insert(prefs, static_cast<size_t>(end + 1 - prefs.text), line);
  return 1;
}

std::optional<std::string> FindPrefValue(const std::string &needle, const PrefsText &prefs) {
  const char *quote = std::strstr(prefs.text, needle.c_str());
  for (int skipped = 0; quote != nullptr && skipped < 2; ++skipped) {
    quote = std::strchr(quote, '"');
    if (quote != nullptr)
      ++quote;
  }
  const char *const close = quote != nullptr ? std::strchr(quote, '"') : nullptr;
  return close != nullptr ? std::optional(std::string(quote, close)) : std::nullopt;
}

std::vector<std::string> ListItems(const std::string &list) {
  std::vector<std::string> items(1);
  for (const char byte : list)
    if (byte == ',')
      items.emplace_back();
    else
      items.back() += byte;
  return items;
}

int32_t ReadPrefValue(const char *needle, const PrefsText &prefs, char *out, int32_t size) {
  Clear(out, size);
  const auto value = FindPrefValue(needle, prefs);
  return value ? CopyOut(*value, out, size) : 0;
}

int32_t CountListItems(const char *list) { return static_cast<int32_t>(ListItems(list).size()); }

int32_t GetListItem(const char *list, int32_t index, char *out, int32_t size) {
  const std::vector<std::string> items = ListItems(list);
  if (static_cast<size_t>(index) >= items.size())
    return 0;
  Clear(out, size);
  return CopyOut(items[static_cast<size_t>(index)], out, size);
}

int32_t ToUtf8Value(const char *value, char (&out)[PrefValueSize]) {
  Clear(out, PrefValueSize);
  WCHAR wide[PrefValueSize];
  if (std::strlen(value) >= PrefValueSize || MultiByteToWideChar(CP_ACP, 0, value, -1, wide, PrefValueSize) == 0)
    return 0;
  if (WideCharToMultiByte(CP_UTF8, 0, wide, -1, out, PrefValueSize, nullptr, nullptr) == 0) {
    Clear(out, PrefValueSize);
    return 0;
  }
  return 1;
}
