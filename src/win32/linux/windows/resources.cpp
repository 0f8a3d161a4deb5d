// Reader of compiled resources, and the calls that find one.
//
// A module has its resources in an ELF note, as a Windows module has them in a section that its headers name: whoever
// knows the module finds them, no symbol goes out for it, and they come and go with the module.
#include "win32/linux/windows/resources.h"

#include "win32/linux/last_error.h"
#include "win32/linux/machine/byte_reader.h"
#include "win32/linux/text/code_page.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <link.h>
#include <span>

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

// The resources among the notes of a segment, empty if they aren't there.
std::string_view NoteOfResources(std::string_view notes) {
  constexpr std::string_view Owner("Win32", sizeof "Win32");
  while (!notes.empty()) {
    machine::Reader header(notes.data(), notes.size());
    const size_t nameSize = header.Next<DWORD>();
    const size_t size = header.Next<DWORD>();
    const size_t begin = sizeof(ElfW(Nhdr)) + machine::Aligned(nameSize);
    if (header.Failed() || begin > notes.size() || size > notes.size() - begin)
      return {};
    if (notes.substr(sizeof(ElfW(Nhdr)), nameSize) == Owner)
      return notes.substr(begin, size);
    notes.remove_prefix(std::min(machine::Aligned(begin + size), notes.size()));
  }
  return {};
}

// The resources of a module, of the program for null.
std::vector<Resource> ResourcesOf(HMODULE module) {
  struct Search {
    const link_map *module;
    std::string_view found;
  } search{static_cast<const link_map *>(module), {}};
  const auto look = [](dl_phdr_info *loaded, size_t, void *data) {
    auto &[wanted, found] = *static_cast<Search *>(data);
    if (wanted != nullptr && wanted->l_addr != loaded->dlpi_addr)
      return 0; // the program comes first, and so is it for null
    for (const ElfW(Phdr) & segment : std::span(loaded->dlpi_phdr, loaded->dlpi_phnum))
      if (segment.p_type == PT_NOTE && segment.p_align == alignof(DWORD) && found.empty())
        found = NoteOfResources({reinterpret_cast<const char *>(loaded->dlpi_addr + segment.p_vaddr), segment.p_memsz});
    return 1;
  };
  dl_iterate_phdr(look, &search);
  return machine::ReadResources(search.found);
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
  MEMORY_BASIC_INFORMATION region;
  if (VirtualQuery(address, &region, sizeof region) == 0)
    return 0;
  const auto *const at = static_cast<const char *>(address);
  for (const auto &[type, name, data] : ResourcesOf(region.AllocationBase))
    if (std::greater_equal<>()(at, data.data()) && std::less<>()(at, data.data() + data.size()))
      return static_cast<size_t>(data.data() + data.size() - at);
  return 0;
}

} // namespace machine

HRSRC FindResourceA(HMODULE module, const char *name, const char *type) {
  const ResourceName wanted = NameOf(name);
  const ResourceName wantedType = NameOf(type);
  for (const Resource &each : ResourcesOf(module))
    if (each.type == wantedType && each.name == wanted)
      return reinterpret_cast<HRSRC>(const_cast<char *>(each.data.data()));
  return machine::Fail(ERROR_RESOURCE_NAME_NOT_FOUND, nullptr);
}

// A resource is in memory as long as its module, so that its handle is its address.
HGLOBAL LoadResource(HMODULE, HRSRC resource) { return resource; }

void *LockResource(HGLOBAL resource) { return resource; }
