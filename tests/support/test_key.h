// A key that is closed at the end of a scope.
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
