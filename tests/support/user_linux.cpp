// The Linux half: a front end of the layer.
#include "support/user.h"

#include "win32/linux/public/front_end.h"

#include <gtest/gtest.h>

#include <thread>
#include <utility>

namespace {

class SteppingFrontEnd : public machine::FrontEnd {
public:
  UserSteps left;

  bool WaitForUser(HWND top) override {
    if (left.empty()) {
      ADD_FAILURE() << "the user doesn't know what to do";
      return false;
    }
    const auto step = std::move(left.front());
    left.pop_front();
    step(top);
    return true;
  }

  bool ShowHelp(const char *, ULONG_PTR) override { return false; }
};

} // namespace

void WithUser(UserSteps steps, const std::function<void()> &run) {
  SteppingFrontEnd user;
  user.left = std::move(steps);
  machine::FrontEnd *before = machine::SetFrontEnd(&user);
  run();
  machine::SetFrontEnd(before);
  EXPECT_EQ(user.left.size(), 0U) << "steps that the user never took";
}

void OnAnotherThread(const std::function<void()> &work) { std::thread(work).join(); }
