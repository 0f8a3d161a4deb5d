// Files as the stores use them: opened exclusively, read or replaced whole, and closed at the end of a scope.
#pragma once

#include "win32/win32.h"

#include <string>
#include <string_view>
#include <utility>

// Owns a file that CreateFileA opened.
class FileHandle {
public:
  explicit FileHandle(HANDLE opened) : handle(opened) {}
  ~FileHandle() { Close(); }
  FileHandle(FileHandle &&other) noexcept : handle(std::exchange(other.handle, INVALID_HANDLE_VALUE)) {}
  FileHandle &operator=(FileHandle &&) = delete;
  FileHandle(const FileHandle &) = delete;
  FileHandle &operator=(const FileHandle &) = delete;

  explicit operator bool() const { return handle != INVALID_HANDLE_VALUE; }
  HANDLE Get() const { return handle; }
  // False if the file wasn't open, or if the written data couldn't be put in place.
  bool Close() { return *this && CloseHandle(std::exchange(handle, INVALID_HANDLE_VALUE)) != FALSE; }

private:
  HANDLE handle;
};

// Opens a file exclusively: it fails while another handle is open, and no other can be opened until this one is closed.
FileHandle OpenFileAlone(const char *path, DWORD access, DWORD disposition);

// Whether a file can be opened for reading.
bool CanReadFile(const char *path);

// Reads a whole file. False if it can't be read, or has more bytes than the limit. Reserves `room` more bytes in
// `bytes`, so that edits needn't move them.
bool ReadWholeFile(const FileHandle &file, size_t limit, std::string &bytes, size_t room = 0);

// Makes the file at the path, or replaces it, with these bytes. False if it couldn't be opened, written or put in
// place.
bool WriteWholeFile(const char *path, DWORD access, std::string_view bytes);
