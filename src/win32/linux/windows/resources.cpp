// Reader of compiled resources, and the calls that find one.
#include "win32/linux/windows/resources.h"

#include "win32/linux/last_error.h"
#include "win32/linux/machine/byte_reader.h"
#include "win32/linux/text/code_page.h"

#include <algorithm>
#include <cstdlib>
#include <functional>

extern "C" {
extern const char win32_resources_begin[] __attribute__((weak, visibility("hidden")));
extern const char win32_resources_end[] __attribute__((weak, visibility("hidden")));
}

using machine::Resource;
using machine::ResourceName;

namespace {

ResourceName NextName(machine::Reader &reader) {
  constexpr char16_t NumberFollows = 0xFFFF;
  ResourceName name;
  for (auto unit = reader.Next<char16_t>(); unit != 0; unit = reader.Next<char16_t>()) {
    if (unit == NumberFollows && name.text.empty())
      return {reader.Next<WORD>(), {}};
    name.text += text::Upper(unit);
  }
  return name;
}

const std::vector<Resource> &LibraryResources() {
  static const std::vector<Resource> resources = machine::ReadResources(
      win32_resources_begin != nullptr
          ? std::string_view(win32_resources_begin, static_cast<size_t>(win32_resources_end - win32_resources_begin))
          : std::string_view());
  return resources;
}

// A name as the calls give it: a number in place of an address, "#" and a number, or a text.
ResourceName NameOf(const char *given) {
  const auto number = reinterpret_cast<uintptr_t>(given);
  if (number <= 0xFFFF)
    return {static_cast<WORD>(number), {}};
  if (*given == '#')
    return {static_cast<WORD>(std::strtoul(given + 1, nullptr, 10)), {}};
  return {0, text::ToUpper(text::ToWide(given))};
}

const Resource *AsResource(HRSRC handle) {
  const std::vector<Resource> &resources = LibraryResources();
  const auto found =
      std::ranges::find_if(resources, [&](const Resource &each) { return static_cast<const void *>(&each) == handle; });
  return found != resources.end() ? &*found : nullptr;
}

} // namespace

namespace machine {

std::vector<Resource> ReadResources(std::string_view block) {
  std::vector<Resource> resources;
  for (;;) {
    Reader header(block.data(), block.size());
    const size_t dataSize = header.Next<DWORD>();
    const size_t headerSize = header.Next<DWORD>();
    const ResourceName type = NextName(header);
    const ResourceName name = NextName(header);
    if (header.Failed() || headerSize == 0 || headerSize > block.size() || dataSize > block.size() - headerSize)
      return resources;
    if (dataSize != 0) // the first one of a file is empty and marks it as one of this form
      resources.push_back({type, name, block.substr(headerSize, dataSize)});
    block.remove_prefix(std::min(Aligned(headerSize + dataSize), block.size()));
  }
}

size_t BytesOfResourceAt(const void *address) {
  const auto *const at = static_cast<const char *>(address);
  for (const auto &[type, name, data] : LibraryResources())
    if (std::greater_equal<>()(at, data.data()) && std::less<>()(at, data.data() + data.size()))
      return static_cast<size_t>(data.data() + data.size() - at);
  return 0;
}

} // namespace machine

HRSRC FindResourceA(HMODULE, const char *name, const char *type) {
  const std::vector<Resource> &resources = LibraryResources();
  const auto found =
      std::ranges::find_if(resources, [wantedType = NameOf(type), wanted = NameOf(name)](const Resource &each) {
        return each.type == wantedType && each.name == wanted;
      });
  return found != resources.end() ? reinterpret_cast<HRSRC>(const_cast<Resource *>(&*found))
                                  : machine::Fail(ERROR_RESOURCE_NAME_NOT_FOUND, nullptr);
}

HGLOBAL LoadResource(HMODULE, HRSRC handle) {
  const Resource *const resource = AsResource(handle);
  return resource != nullptr ? const_cast<char *>(resource->data.data()) : nullptr;
}

void *LockResource(HGLOBAL resource) { return resource; }
