// What every export does around its work: no exception leaves the library, whose callers may be C.
#pragma once

#include <cstdint>
#include <exception>

// The body's result; 0 if it threw, as it does when memory runs out.
template <typename Body> int32_t Guarded(Body body) noexcept {
  try {
    return body();
  } catch (const std::exception &) {
    return 0;
  }
}
