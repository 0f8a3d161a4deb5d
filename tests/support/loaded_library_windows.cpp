#include "support/loaded_library.h"

#include "support/stubs_windows.h"

HMODULE LoadFromBuild(const char *path) {
  const HMODULE library = LoadLibraryA(path);
  if (library != nullptr)
    StubImports(library);
  return library;
}

bool IsInMemory(const char *path) { return GetModuleHandleA(path) != nullptr; }

std::vector<size_t> CountHandles() {
  DWORD kernelHandles = 0;
  GetProcessHandleCount(GetCurrentProcess(), &kernelHandles);
  const DWORD nextThreadLocalIndex = TlsAlloc();
  TlsFree(nextThreadLocalIndex);
  return {kernelHandles, nextThreadLocalIndex};
}
