#include "win32/linux/windows/resources.h"

#include "win32/linux/machine/byte_reader.h"

#include <algorithm>

extern "C" {
extern const char win32_resources_begin[] __attribute__((weak, visibility("hidden")));
extern const char win32_resources_end[] __attribute__((weak, visibility("hidden")));
}

namespace machine {

namespace {

WORD NextName(Reader &reader) {
  constexpr char16_t NumberFollows = 0xFFFF;
  auto unit = reader.Next<char16_t>();
  if (unit == NumberFollows)
    return reader.Next<WORD>();
  while (unit != 0)
    unit = reader.Next<char16_t>();
  return 0;
}

const std::vector<Resource> &LibraryResources() {
  static const std::vector<Resource> resources = ReadResources(
      win32_resources_begin != nullptr
          ? std::string_view(win32_resources_begin, static_cast<size_t>(win32_resources_end - win32_resources_begin))
          : std::string_view());
  return resources;
}

} // namespace

std::vector<Resource> ReadResources(std::string_view block) {
  std::vector<Resource> resources;
  for (;;) {
    Reader header(block.data(), block.size());
    const size_t dataSize = header.Next<DWORD>();
    const size_t headerSize = header.Next<DWORD>();
    const WORD type = NextName(header);
    const WORD name = NextName(header);
    if (header.Failed() || headerSize == 0 || headerSize > block.size() || dataSize > block.size() - headerSize)
      return resources;
    if (dataSize != 0) // the first one of a file is empty and marks it as one of this form
      resources.push_back({type, name, block.substr(headerSize, dataSize)});
    block.remove_prefix(std::min(Aligned(headerSize + dataSize), block.size()));
  }
}

std::string_view DialogResource(const char *name) {
  constexpr WORD Dialog = 5;
  for (const Resource &resource : LibraryResources())
    if (resource.type == Dialog && resource.name == reinterpret_cast<uintptr_t>(name))
      return resource.data;
  return {};
}

} // namespace machine
