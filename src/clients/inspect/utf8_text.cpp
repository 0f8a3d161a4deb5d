#include "clients/inspect/utf8_text.h"

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
