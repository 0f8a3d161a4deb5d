// Keys and files that are closed at the end of a scope.
#pragma once

#include "win32/win32.h"

#include <utility>

class TestKey {
public:
  explicit TestKey(HKEY opened = nullptr) : handle(opened) {}
  ~TestKey() {
    if (handle != nullptr)
      RegCloseKey(handle);
  }
  TestKey(TestKey &&other) noexcept : handle(std::exchange(other.handle, nullptr)) {}
  TestKey &operator=(TestKey &&) = delete;

  explicit operator bool() const { return handle != nullptr; }
  HKEY Get() const { return handle; }

private:
  HKEY handle;
};

class TestFile {
public:
  explicit TestFile(HANDLE opened) : handle(opened) {}
  ~TestFile() { Close(); }
  TestFile(const TestFile &) = delete;
  TestFile &operator=(const TestFile &) = delete;

  explicit operator bool() const { return handle != INVALID_HANDLE_VALUE; }
  HANDLE Get() const { return handle; }
  BOOL Close() { return *this ? CloseHandle(std::exchange(handle, INVALID_HANDLE_VALUE)) : FALSE; }

private:
  HANDLE handle;
};
