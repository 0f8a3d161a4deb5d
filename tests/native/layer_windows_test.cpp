// What only the layer's windows have: a loop that waits for a user of ours, and windows of each thread.
#include "support/user.h"
#include "win32/linux/windows/modal_loop.h"
#include "win32/linux/windows/painting.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string events;

LRESULT Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_PAINT)
    events += "paint ";
  if (message >= WM_USER)
    events += "posted " + std::to_string(message - WM_USER) + " ";
  if (message == WM_USER + 1)
    PostMessageA(window, WM_USER + 2, 0, 0);
  return DefWindowProcA(window, message, wParam, lParam);
}

HWND Create(DWORD style, HWND parent) {
  const HWND window = CreateWindowExA(0, "STATIC", "", style, 0, 0, 10, 10, parent, nullptr, nullptr, nullptr);
  SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure));
  return window;
}

TEST(ModalLoopTest, UserComesAfterMessagesAndPainting) {
  const HWND top = Create(WS_POPUP | WS_VISIBLE, nullptr);
  const HWND child = Create(WS_CHILD | WS_VISIBLE, top);
  events.clear();
  PostMessageA(child, WM_USER + 1, 0, 0);
  const auto paintAndPost = [&](HWND front) {
    events += "user ";
    EXPECT_EQ(front, top);
    machine::Invalidate(machine::WindowOf(child));
    PostMessageA(child, WM_USER, 0, 0);
  };
  const auto destroy = [&](HWND) {
    events += "user ";
    DestroyWindow(top);
  };
  WithUser({paintAndPost, destroy}, [&] { EXPECT_TRUE(machine::RunModalLoop(top, [] { return false; })); });
  EXPECT_EQ(events, "posted 1 posted 2 paint paint user posted 0 paint user ");
}

TEST(ModalLoopTest, EndsWithoutUser) {
  const HWND top = Create(WS_POPUP | WS_VISIBLE, nullptr);
  EXPECT_FALSE(machine::RunModalLoop(top, [] { return false; }));
  EXPECT_TRUE(IsWindow(top));
  DestroyWindow(top);
}

TEST(LayerWindowsTest, EachThreadHasItsOwn) {
  const HWND top = Create(WS_POPUP | WS_VISIBLE, nullptr);
  OnAnotherThread([top] {
    EXPECT_FALSE(IsWindow(top));
    EXPECT_EQ(GetActiveWindow(), nullptr);
  });
  EXPECT_EQ(GetActiveWindow(), top);
  DestroyWindow(top);
}

} // namespace
