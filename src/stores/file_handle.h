// Owns a file that CreateFileA opened, and closes it at the end of its scope.
#pragma once

#include "win32/win32.h"

#include <utility>

class FileHandle {
public:
  explicit FileHandle(HANDLE opened) : handle(opened) {}
  ~FileHandle() {
    if (*this)
      CloseHandle(handle);
  }
  FileHandle(FileHandle &&other) noexcept : handle(std::exchange(other.handle, INVALID_HANDLE_VALUE)) {}
  FileHandle &operator=(FileHandle &&) = delete;
  FileHandle(const FileHandle &) = delete;
  FileHandle &operator=(const FileHandle &) = delete;

  explicit operator bool() const { return handle != INVALID_HANDLE_VALUE; }
  HANDLE Get() const { return handle; }

private:
  HANDLE handle;
};
