#include "support/stubs_windows.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

template <typename Result, typename... Arguments> Result WINAPI NotImplemented(Arguments...) {
  SetLastError(ERROR_CALL_NOT_IMPLEMENTED);
  return Result{};
}

// Each stub with its parameters, which it must remove from the stack.
const struct {
  const char *name;
  void *stub;
} Stubs[] = {
    {"CreateSemaphoreW", reinterpret_cast<void *>(NotImplemented<HANDLE, void *, LONG, LONG, const wchar_t *>)},
    {"GetModuleHandleW", reinterpret_cast<void *>(NotImplemented<HMODULE, const wchar_t *>)},
    {"LoadLibraryW", reinterpret_cast<void *>(NotImplemented<HMODULE, const wchar_t *>)},
};

[[noreturn]] void Refuse(const std::string &name, const char *why) {
  std::fprintf(stderr, "ACCTKIT_STUBS: %s %s\n", name.c_str(), why);
  std::exit(1);
}

void *StubOf(const std::string &name) {
  for (const auto &each : Stubs)
    if (name == each.name)
      return each.stub;
  Refuse(name, "has no stub here");
}

template <typename Part> Part *Within(HMODULE module, ULONG_PTR offset) {
  return reinterpret_cast<Part *>(reinterpret_cast<BYTE *>(module) + offset);
}

// The address that a module uses to call an import; null if it has no such import.
void **FindImport(HMODULE module, const std::string &name) {
  const auto *const headers =
      Within<IMAGE_NT_HEADERS>(module, static_cast<ULONG_PTR>(Within<IMAGE_DOS_HEADER>(module, 0)->e_lfanew));
  const DWORD table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  for (auto *dll = Within<IMAGE_IMPORT_DESCRIPTOR>(module, table); dll->Name != 0; ++dll) {
    const auto *const names = Within<ULONG_PTR>(module, dll->OriginalFirstThunk);
    for (size_t index = 0; names[index] != 0; ++index)
      if (!IMAGE_SNAP_BY_ORDINAL(names[index]) && name == Within<IMAGE_IMPORT_BY_NAME>(module, names[index])->Name)
        return Within<void *>(module, dll->FirstThunk) + index;
  }
  return nullptr;
}

void Replace(void **import, void *stub) {
  DWORD protection = 0;
  VirtualProtect(import, sizeof *import, PAGE_READWRITE, &protection);
  *import = stub;
  VirtualProtect(import, sizeof *import, protection, &protection);
}

struct StubbedProgram {
  StubbedProgram() { StubImports(GetModuleHandleA(nullptr)); }
};
__attribute__((init_priority(101))) StubbedProgram program;

} // namespace

void StubImports(HMODULE module) {
  const char *const names = std::getenv("ACCTKIT_STUBS");
  for (const char *left = names != nullptr ? names : ""; *left != '\0';) {
    const std::string name(left, std::strcspn(left, " "));
    left += name.size() + std::strspn(left + name.size(), " ");
    void **const import = FindImport(module, name);
    if (import == nullptr)
      Refuse(name, "is no import of this module");
    Replace(import, StubOf(name));
  }
}
