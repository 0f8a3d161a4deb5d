// No exception may leave the library, since its callers may be C, and what an export does to the machine is one change
// of it. A plug-in is called through Guarded as well. What it throws is an object of its own code, which has to be
// destroyed before the plug-in is unloaded.
#pragma once

#include "win32/win32.h"

#include <cstdint>

// The body's result; 0 if it threw anything, as it does when memory runs out.
template <typename Body> int32_t Guarded(Body body) noexcept {
  try {
    return body();
  } catch (...) {
    return 0;
  }
}

// The same for an export without windows: what the body writes is put on disk at its end, also where its result is 0.
// The result is 0 if that couldn't be done, and nothing of it is there then; nor is it if the body threw.
template <typename Body> int32_t AsOneCall(Body body) noexcept {
  return Guarded([&]() -> int32_t {
    PlatformCall call;
    const int32_t result = body();
    return call.Commit() ? result : 0;
  });
}
