// The Windows half: a timer, whose message comes when the thread has no other message left, also in nested modal loops.
#include "support/user.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

UserSteps left;

void CALLBACK TakeStep(HWND, UINT, UINT_PTR, DWORD) {
  if (left.empty()) {
    ADD_FAILURE() << "the user doesn't know what to do";
    PostMessageA(GetActiveWindow(), WM_COMMAND, IDCANCEL, 0);
    return;
  }
  const auto step = std::move(left.front());
  left.pop_front();
  step(GetActiveWindow());
}

// Makes a window that the system finds instead of its help program's, so that no help is shown.
HWND MakeHelpWindow() {
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = DefWindowProcA;
  windowClass.lpszClassName = "MS_WINHELP";
  RegisterClassA(&windowClass);
  return CreateWindowExA(0, windowClass.lpszClassName, "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
}

DWORD WINAPI RunWork(void *work) {
  (*static_cast<const std::function<void()> *>(work))();
  return 0;
}

} // namespace

void WithUser(UserSteps steps, const std::function<void()> &run) {
  left = std::move(steps);
  const HWND help = MakeHelpWindow();
  const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, TakeStep);
  run();
  KillTimer(nullptr, timer);
  DestroyWindow(help);
  EXPECT_EQ(left.size(), 0U) << "steps that the user never took";
}

void OnAnotherThread(const std::function<void()> &work) {
  const HANDLE thread = CreateThread(nullptr, 0, RunWork, const_cast<std::function<void()> *>(&work), 0, nullptr);
  ASSERT_NE(thread, nullptr);
  WaitForSingleObject(thread, INFINITE);
  CloseHandle(thread);
}
