#include "clients/file_queries.h"

#include "win32/win32.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

namespace {

// A language and code page that a version resource's string table is for.
struct Translation {
  WORD language;
  WORD codePage;
};

// Where resources that don't tell their translations have their texts, as a rule: Japanese and US English, in Unicode,
// then in their Windows code pages.
constexpr Translation UsualTranslations[] = {{0x0411, 0x04B0}, {0x0409, 0x04B0}, {0x0411, 0x03A4}, {0x0409, 0x04E4}};

bool QueryProductVersion(const BYTE *resource, Translation translation, std::string &out) {
  char query[64];
  std::snprintf(query, sizeof query, "\\StringFileInfo\\%04x%04x\\ProductVersion", translation.language,
                translation.codePage);
  void *text = nullptr;
  UINT size = 0;
  if (!VerQueryValueA(resource, query, &text, &size) || text == nullptr)
    return false;
  out.assign(static_cast<const char *>(text), strnlen(static_cast<const char *>(text), size));
  return true;
}

} // namespace

bool PathExists(const char *path) {
  WIN32_FIND_DATAA data;
  const HANDLE search = FindFirstFileA(path, &data);
  return search != INVALID_HANDLE_VALUE && FindClose(search);
}

bool PathIsMissing(const char *path) {
  if (PathExists(path))
    return false;
  const DWORD error = GetLastError(); // the last one is what some file systems answer
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_NO_MORE_FILES;
}

int32_t GetProductVersion(const char *path, std::string &out) {
  DWORD ignored = 0;
  const DWORD size = GetFileVersionInfoSizeA(path, &ignored);
  if (size == 0)
    return 0;
  const std::unique_ptr<BYTE[]> resource(new (std::nothrow) BYTE[size]);
  if (!resource || !GetFileVersionInfoA(path, 0, size, resource.get()))
    return 0;

  void *listed = nullptr;
  UINT listedSize = 0;
  if (VerQueryValueA(resource.get(), "\\VarFileInfo\\Translation", &listed, &listedSize)) {
    Translation translation;
    for (UINT offset = 0; offset + sizeof translation <= listedSize; offset += sizeof translation) {
      std::memcpy(&translation, static_cast<const BYTE *>(listed) + offset, sizeof translation);
      if (QueryProductVersion(resource.get(), translation, out))
        return 1;
    }
  }
  for (const Translation &translation : UsualTranslations)
    if (QueryProductVersion(resource.get(), translation, out))
      return 1;
  return 0;
}
