#include "stores/file_handle.h"

FileHandle OpenFileAlone(const char *path, DWORD access, DWORD disposition) {
  return FileHandle(CreateFileA(path, access, 0, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

bool CanReadFile(const char *path) { return static_cast<bool>(OpenFileAlone(path, GENERIC_READ, OPEN_EXISTING)); }

bool ReadWholeFile(const FileHandle &file, size_t limit, std::string &bytes, size_t room) {
  DWORD high = 0;
  const DWORD size = GetFileSize(file.Get(), &high);
  DWORD read = 0;
  if (high != 0 || size == INVALID_FILE_SIZE || size > limit)
    return false;
  bytes.reserve(size + room);
  bytes.resize(size);
  return ReadFile(file.Get(), bytes.data(), size, &read, nullptr) && read == size;
}

bool WriteWholeFile(const char *path, DWORD access, std::string_view bytes) {
  FileHandle file = OpenFileAlone(path, access, CREATE_ALWAYS);
  DWORD written = 0;
  return file && WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
         written == bytes.size() && file.Close();
}
