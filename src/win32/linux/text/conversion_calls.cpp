// The Win32 calls that convert texts.
#include "win32/win32.h"

#include "win32/linux/text/code_page.h"

#include <string>
#include <string_view>

namespace {

bool IsCodePage932(UINT codePage) { return codePage == CP_ACP || codePage == 932; }

// The text that a length of the calls names: a terminated one with its terminator for -1.
template <typename Unit> std::basic_string_view<Unit> Given(const Unit *text, int length) {
  return length == -1 ? std::basic_string_view<Unit>(text, std::char_traits<Unit>::length(text) + 1)
                      : std::basic_string_view<Unit>(text, static_cast<size_t>(length));
}

// Hands a converted text to the caller's buffer; a size of 0 only asks for the size.
template <typename Unit> int HandOver(const std::basic_string<Unit> &converted, Unit *buffer, int size) {
  if (size != 0 && converted.size() > static_cast<size_t>(size)) {
    converted.copy(buffer, static_cast<size_t>(size));
    return 0;
  }
  if (size != 0)
    converted.copy(buffer, converted.size());
  return static_cast<int>(converted.size());
}

} // namespace

BOOL IsDBCSLeadByte(BYTE byte) { return text::IsLeadByte(byte) ? TRUE : FALSE; }

int MultiByteToWideChar(UINT codePage, DWORD flags, const char *text, int length, WCHAR *wide, int size) {
  if (text == nullptr || length == 0 || length < -1 || size < 0 || (size != 0 && wide == nullptr) ||
      !(IsCodePage932(codePage) || codePage == CP_UTF8))
    return 0;
  std::u16string converted;
  const bool valid = codePage == CP_UTF8 ? text::Utf8ToWide(Given(text, length), converted)
                                         : text::Cp932ToWide(Given(text, length), converted);
  if (!valid && (flags & MB_ERR_INVALID_CHARS) != 0)
    return 0;
  return HandOver(converted, wide, size);
}

int WideCharToMultiByte(UINT codePage, DWORD, const WCHAR *wide, int length, char *text, int size, const char *,
                        BOOL *) {
  if (wide == nullptr || length == 0 || length < -1 || size < 0 || (size != 0 && text == nullptr) ||
      !(IsCodePage932(codePage) || codePage == CP_UTF8))
    return 0;
  return HandOver(codePage == CP_UTF8 ? text::WideToUtf8(Given(wide, length)) : text::FromWide(Given(wide, length)),
                  text, size);
}
