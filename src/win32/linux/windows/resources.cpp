#include "win32/linux/windows/resources.h"

#include "win32/linux/machine/byte_reader.h"
#include "win32/win32_ui.h"

#include <algorithm>

extern "C" {
// A program need not have any.
extern const char win32_resources_begin[] __attribute__((weak, visibility("hidden")));
extern const char win32_resources_end[] __attribute__((weak, visibility("hidden")));
}

namespace machine {

namespace {

// A resource's type or name, 0 for a text.
WORD NextNumber(Reader &reader) {
  constexpr WORD NumberFollows = 0xFFFF;
  return reader.Next<WORD>() == NumberFollows ? reader.Next<WORD>() : WORD{0};
}

} // namespace

std::string_view DialogResource(const char *name) {
  constexpr WORD Dialog = 5;
  std::string_view left;
  if (win32_resources_begin != nullptr)
    left = {win32_resources_begin, static_cast<size_t>(win32_resources_end - win32_resources_begin)};
  while (!left.empty()) {
    Reader header(left.data(), left.size());
    const size_t dataSize = header.Next<DWORD>();
    const size_t headerSize = header.Next<DWORD>();
    if (NextNumber(header) == Dialog && NextNumber(header) == reinterpret_cast<uintptr_t>(name))
      return left.substr(headerSize, dataSize);
    left.remove_prefix(std::min(Aligned(headerSize + dataSize), left.size()));
  }
  return {};
}

} // namespace machine
