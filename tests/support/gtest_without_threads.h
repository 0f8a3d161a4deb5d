// Included ahead of GoogleTest where the compiler's library has no std::mutex: stands in for the one class that needs
// it, with which GoogleTest starts threads in tests of its own. Nobody else has any use for it.
#pragma once

#define GTEST_HAS_NOTIFICATION_ 1

#include <cstdlib>

namespace testing::internal {

class Notification {
public:
  [[noreturn]] void Notify() { std::abort(); }
  [[noreturn]] void WaitForNotification() { std::abort(); }
};

} // namespace testing::internal
