// Included before GoogleTest if the compiler's library has no std::mutex. Replaces the only class of GoogleTest that
// needs it, which starts threads in GoogleTest's own tests and isn't used here.
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
