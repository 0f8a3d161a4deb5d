#include "stores/registry_dat.h"

#include "stores/profile_registry.h"

#include <cstdint>
#include <cstring>

std::string NewRegistryDat() {
  constexpr size_t RootNameOffset = 128;
  constexpr size_t RecordSize = 32;
  // Magic number, version 1.2, the file's length, the root's offset; the root's name, and the root itself.
  std::string file("ADdv\1\0\2\0\0\0\0\0\x82\0\0\0", 16);
  file.resize(RootNameOffset);
  file.append("/\0\x82\0\0\0\x80\0\0\0\2\0\1\0", 14).resize(ProfileRegistry::RootOffset + RecordSize);
  return file;
}

void EnterLength(std::string &file) {
  constexpr size_t LengthOffset = 8;
  const auto length = static_cast<uint32_t>(file.size());
  std::memcpy(&file[LengthOffset], &length, sizeof length);
}
