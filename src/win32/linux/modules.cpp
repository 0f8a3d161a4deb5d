// Loadable libraries of the machine: shared objects, whatever their names end in.
#include "win32/win32.h"

#include "win32/linux/paths.h"
#include "win32/linux/text.h"

#include <dlfcn.h>
#include <string>

HMODULE LoadLibraryA(const char *path) {
  // A name without a dot means the file with ".dll" behind it.
  const std::u16string wide = text::ToWide(path);
  const bool dotted = wide.find(u'.', wide.find_last_of(u"\\/") + 1) != std::u16string::npos;
  const machine::DiskPath found = machine::FindOnDisk(dotted ? path : (std::string(path) + ".dll").c_str());
  if (found.error != ERROR_SUCCESS || !found.exists) {
    SetLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
  }
  void *const library = dlopen(found.path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr)
    SetLastError(ERROR_BAD_EXE_FORMAT);
  return static_cast<HMODULE>(library);
}

FARPROC GetProcAddress(HMODULE module, const char *name) {
  void *const entry = module != nullptr ? dlsym(module, name) : nullptr;
  if (entry == nullptr)
    SetLastError(ERROR_PROC_NOT_FOUND);
  return reinterpret_cast<FARPROC>(entry);
}

BOOL FreeLibrary(HMODULE module) {
  if (module == nullptr || dlclose(module) != 0) {
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
  }
  return TRUE;
}
