// Windows 98 has some calls as stubs alone, which fail. ACCTKIT_STUBS names those, with blanks between them; they fail
// here too, from before the first static object of the program is made.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

template <typename Result, typename... Arguments> Result WINAPI NotImplemented(Arguments...) {
  SetLastError(ERROR_CALL_NOT_IMPLEMENTED);
  return Result{};
}

// Each with its parameters, which it takes off the stack.
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

template <typename Part> Part *InProgram(DWORD offset) {
  return reinterpret_cast<Part *>(reinterpret_cast<BYTE *>(GetModuleHandleA(nullptr)) + offset);
}

// The place from which the program calls an import; null if it has no such import.
void **FindImport(const std::string &name) {
  const auto *const headers = InProgram<IMAGE_NT_HEADERS>(static_cast<DWORD>(InProgram<IMAGE_DOS_HEADER>(0)->e_lfanew));
  const DWORD table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  for (auto *dll = InProgram<IMAGE_IMPORT_DESCRIPTOR>(table); dll->Name != 0; ++dll) {
    const auto *const names = InProgram<ULONG_PTR>(dll->OriginalFirstThunk);
    for (size_t index = 0; names[index] != 0; ++index)
      if (!IMAGE_SNAP_BY_ORDINAL(names[index]) &&
          name == InProgram<IMAGE_IMPORT_BY_NAME>(static_cast<DWORD>(names[index]))->Name)
        return InProgram<void *>(dll->FirstThunk) + index;
  }
  return nullptr;
}

void Replace(void **import, void *stub) {
  DWORD protection = 0;
  VirtualProtect(import, sizeof *import, PAGE_READWRITE, &protection);
  *import = stub;
  VirtualProtect(import, sizeof *import, protection, &protection);
}

struct StubbedImports {
  StubbedImports() {
    const char *const names = std::getenv("ACCTKIT_STUBS");
    for (const char *left = names != nullptr ? names : ""; *left != '\0';) {
      const std::string name(left, std::strcspn(left, " "));
      left += name.size() + std::strspn(left + name.size(), " ");
      void **const import = FindImport(name);
      if (import == nullptr)
        Refuse(name, "is no import of this program");
      Replace(import, StubOf(name));
    }
  }
};
__attribute__((init_priority(101))) StubbedImports stubbed;

} // namespace
