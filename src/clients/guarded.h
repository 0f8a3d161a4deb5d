// No exception may leave the library, since its callers may be C: every export does its work through Guarded. A plug-in
// is called through it as well. What it throws is an object of its own code, which has to be destroyed before the
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
