// Loadable libraries of the machine: shared objects, whatever their names end in.
#include "win32/win32_ui.h"

#include "win32/linux/paths.h"
#include "win32/linux/text.h"

#include <dlfcn.h>
#include <link.h>
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

BOOL GetModuleHandleExA(DWORD flags, const char *address, HMODULE *module) {
  Dl_info info;
  link_map *library = nullptr; // which is what a loaded library's handle points to
  if ((flags & GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS) == 0 ||
      dladdr1(address, &info, reinterpret_cast<void **>(&library), RTLD_DL_LINKMAP) == 0) {
    *module = nullptr;
    SetLastError(ERROR_MOD_NOT_FOUND);
    return FALSE;
  }
  if ((flags & GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT) == 0)
    dlopen(library->l_name, RTLD_NOW | RTLD_NOLOAD);
  *module = library;
  return TRUE;
}
