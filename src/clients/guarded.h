// No exception leaves the library, whose callers may be C: every export does its work in here. So does every call of a
// plug-in, which may throw anything: the destructor of what it threw is its own code, and has to have run before the
// plug-in is unloaded.
#pragma once

#include <cstdint>

// The body's result; 0 if it threw anything, as it does when memory runs out.
template <typename Body> int32_t Guarded(Body body) noexcept {
  try {
    return body();
  } catch (...) {
    return 0;
  }
}
