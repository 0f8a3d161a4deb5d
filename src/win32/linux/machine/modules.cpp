// Loadable libraries of the machine: shared objects, whatever their names end in.
#include "win32/win32.h"

#include "win32/linux/machine/descriptor.h"
#include "win32/linux/machine/machine_folder.h"
#include "win32/linux/machine/paths.h"
#include "win32/linux/machine/running_transaction.h"

#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool IsWindowsProgram(const machine::Descriptor &file) {
  char magic[2] = "";
  return pread(file.Get(), magic, sizeof magic, 0) == sizeof magic && magic[0] == 'M' && magic[1] == 'Z';
}

// Whether the file ends before what the loader maps of it does. The loader would look there all the same, which ends
// the process.
bool IsCut(const machine::Descriptor &file) {
  struct stat status;
  ElfW(Ehdr) header;
  ElfW(Phdr) segment;
  if (fstat(file.Get(), &status) != 0 || pread(file.Get(), &header, sizeof header, 0) != sizeof header ||
      std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_phentsize != sizeof segment)
    return false; // which the loader refuses
  const auto size = static_cast<ElfW(Off)>(status.st_size);
  for (unsigned index = 0; index < header.e_phnum; ++index) {
    const auto place = static_cast<off_t>(header.e_phoff + index * sizeof segment);
    if (pread(file.Get(), &segment, sizeof segment, place) != sizeof segment ||
        (segment.p_type == PT_LOAD && (segment.p_offset > size || segment.p_filesz > size - segment.p_offset)))
      return true;
  }
  return false;
}

} // namespace

HMODULE LoadLibraryA(const char *path) {
  // A name without a dot means the file with ".dll" behind it.
  const std::u16string wide = machine::WidePath(path);
  const bool dotted = wide.find(u'.', wide.rfind(u'\\') + 1) != std::u16string::npos;
  const std::filesystem::path found = machine::FindFile(dotted ? path : (std::string(path) + ".dll").c_str());
  if (found.empty())
    return nullptr;
  const machine::Descriptor file(open(found.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!file || IsCut(file))
    machine::RecordFault(found.string() + ": " + (file ? "this library is cut short" : std::strerror(errno)));
  else if (IsWindowsProgram(file))
    machine::RecordNotice(found.string() + ": a Windows library, which can't be loaded here");
  else if (machine::IsRehearsal())
    machine::RecordNotice(found.string() + ": not loaded in a dry run, but the command would ask it");
  else if (void *const library = dlopen(found.c_str(), RTLD_NOW | RTLD_LOCAL))
    return library;
  else
    machine::RecordFault(dlerror());
  return nullptr;
}

FARPROC GetProcAddress(HMODULE module, const char *name) {
  return module != nullptr ? reinterpret_cast<FARPROC>(dlsym(module, name)) : nullptr;
}

BOOL FreeLibrary(HMODULE module) { return module != nullptr && dlclose(module) == 0 ? TRUE : FALSE; }

size_t VirtualQuery(const void *address, MEMORY_BASIC_INFORMATION *information, size_t) {
  Dl_info found;
  link_map *library = nullptr; // which is what a loaded library's handle points to
  if (dladdr1(address, &found, reinterpret_cast<void **>(&library), RTLD_DL_LINKMAP) == 0)
    return 0;
  information->AllocationBase = library;
  return sizeof *information;
}
