// A module has its resources in an ELF note, as a Windows module has them in a section that its headers name. So they
// are found by the module alone, without an exported symbol, and come and go with it.
#include "win32/linux/windows/resources.h"

#include "win32/linux/machine/byte_reader.h"

#include <algorithm>
#include <link.h>
#include <span>

namespace machine {

namespace {

// The resources among the notes of a segment, empty if they aren't there.
std::string_view NoteOfResources(std::string_view notes) {
  constexpr std::string_view Owner("Win32", sizeof "Win32");
  constexpr size_t HeaderSize = sizeof(ElfW(Nhdr));
  while (notes.size() > HeaderSize) {
    Reader header(notes.data(), notes.size());
    const size_t ownerSize = header.Next<DWORD>();
    const size_t size = header.Next<DWORD>();
    const size_t begin = HeaderSize + Aligned(ownerSize);
    if (notes.substr(HeaderSize, ownerSize) == Owner)
      return notes.substr(begin, size);
    notes.remove_prefix(std::min(Aligned(begin + size), notes.size()));
  }
  return {};
}

std::string_view ResourcesOf(HMODULE module) {
  struct Search {
    const link_map *module;
    std::string_view found;
  } search{static_cast<const link_map *>(module), {}};
  const auto look = [](dl_phdr_info *loaded, size_t, void *data) {
    auto &[wanted, found] = *static_cast<Search *>(data);
    if (wanted != nullptr && wanted->l_addr != loaded->dlpi_addr)
      return 0; // the program comes first, and so is it for null
    for (const auto &segment : std::span(loaded->dlpi_phdr, loaded->dlpi_phnum))
      if (segment.p_type == PT_NOTE && segment.p_align == alignof(DWORD) && found.empty())
        found = NoteOfResources({reinterpret_cast<const char *>(loaded->dlpi_addr + segment.p_vaddr), segment.p_memsz});
    return 1;
  };
  dl_iterate_phdr(look, &search);
  return search.found;
}

// A resource's type or name, 0 for a text.
WORD NextNumber(Reader &reader) {
  constexpr WORD NumberFollows = 0xFFFF;
  return reader.Next<WORD>() == NumberFollows ? reader.Next<WORD>() : WORD{0};
}

} // namespace

std::string_view DialogResource(HMODULE module, const char *name) {
  constexpr WORD Dialog = 5;
  std::string_view left = ResourcesOf(module);
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
