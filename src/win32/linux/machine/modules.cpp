// Loadable libraries of the machine: shared objects, whatever their names end in.
#include "win32/win32.h"

#include "win32/linux/machine/machine_folder.h"
#include "win32/linux/machine/paths.h"
#include "win32/linux/machine/running_transaction.h"

#include <dlfcn.h>
#include <fstream>
#include <link.h>
#include <string>

namespace {

bool IsWindowsProgram(const std::filesystem::path &path) {
  char magic[2] = "";
  return std::ifstream(path, std::ios::binary).read(magic, sizeof magic) && magic[0] == 'M' && magic[1] == 'Z';
}

} // namespace

HMODULE LoadLibraryA(const char *path) {
  // A name without a dot means the file with ".dll" behind it.
  const std::u16string wide = machine::WidePath(path);
  const bool dotted = wide.find(u'.', wide.rfind(u'\\') + 1) != std::u16string::npos;
  const machine::DiskPath found = machine::FindOnDisk(dotted ? path : (std::string(path) + ".dll").c_str());
  if (!found.exists)
    return nullptr;
  if (machine::IsRehearsal()) {
    machine::RecordNotice(found.path.string() + ": this would be asked");
    return nullptr;
  }
  void *const library = dlopen(found.path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr && IsWindowsProgram(found.path))
    machine::RecordNotice(found.path.string() + ": a Windows library, which can't be loaded here");
  return library;
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
