#include "support/loaded_library.h"

#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

HMODULE LoadFromBuild(const char *path) { return dlopen(path, RTLD_NOW | RTLD_LOCAL); }

bool IsInMemory(const char *path) {
  std::ifstream maps("/proc/self/maps");
  return std::string(std::istreambuf_iterator<char>(maps), {}).find(std::filesystem::canonical(path)) !=
         std::string::npos;
}

std::vector<size_t> CountHandles() {
  return {static_cast<size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}))};
}
