#include "utf8.h"

#include "usage.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {

using WideText = std::basic_string<WCHAR>;

// An empty text for bytes that the flags don't let pass.
WideText Widen(UINT codePage, const std::string &text, DWORD flags = 0) {
  if (text.empty())
    return {};
  const int length = static_cast<int>(text.size());
  WideText wide(text.size(), WCHAR{});
  wide.resize(static_cast<size_t>(MultiByteToWideChar(codePage, flags, text.data(), length, wide.data(), length)));
  return wide;
}

std::string Narrow(UINT codePage, const WideText &wide) {
  constexpr size_t LongestCharacter = 4;
  if (wide.empty())
    return {};
  std::string text(wide.size() * LongestCharacter, '\0');
  text.resize(static_cast<size_t>(WideCharToMultiByte(codePage, 0, wide.data(), static_cast<int>(wide.size()),
                                                      text.data(), static_cast<int>(text.size()), nullptr, nullptr)));
  return text;
}

std::string ReadFile(const std::string &path) {
  constexpr std::streamsize Most = 1 << 20;
  std::ifstream file(std::filesystem::path(reinterpret_cast<const char8_t *>(path.c_str())), std::ios::binary);
  std::string text(static_cast<size_t>(Most) + 1, '\0');
  file.read(text.data(), Most + 1);
  if (file.bad() || (!file && !file.eof()))
    throw UsageError(path + ": the file can't be read");
  if (file.gcount() > Most)
    throw UsageError(path + ": the file has more than a megabyte");
  text.resize(static_cast<size_t>(file.gcount()));
  return text;
}

} // namespace

std::string WideToUtf8(const WideText &wide) { return Narrow(CP_UTF8, wide); }

std::string ToUtf8(const std::string &text) { return Narrow(CP_UTF8, Widen(CP_ACP, text)); }

bool IsUtf8(std::string_view bytes) {
  return bytes.empty() || !Widen(CP_UTF8, std::string(bytes), MB_ERR_INVALID_CHARS).empty();
}

std::string MixedToUtf8(const std::string &bytes) { return IsUtf8(bytes) ? bytes : ToUtf8(bytes); }

std::optional<std::string> FromUtf8(const std::string &utf8) {
  const std::string text = Narrow(CP_ACP, Widen(CP_UTF8, utf8));
  return ToUtf8(text) == utf8 ? std::optional(text) : std::nullopt;
}

void ForEachLine(const std::string &path, const std::function<void(const std::string &line, size_t number)> &take) {
  constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
  const std::string text = ReadFile(path);
  std::string_view left = text;
  if (left.starts_with(ByteOrderMark))
    left.remove_prefix(ByteOrderMark.size());
  for (size_t number = 1; !left.empty(); ++number) {
    std::string line(left.substr(0, left.find('\n')));
    left.remove_prefix(std::min(left.size(), line.size() + 1));
    if (line.ends_with('\r'))
      line.pop_back();
    try {
      if (!IsUtf8(line) || line.find('\0') != std::string::npos)
        throw UsageError("the line is no text in UTF-8");
      take(line, number);
    } catch (const UsageError &error) {
      throw UsageError(path + ':' + std::to_string(number) + ": " + error.what());
    }
  }
}
