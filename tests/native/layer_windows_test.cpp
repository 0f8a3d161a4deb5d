// What only the layer's windows have: a front end, and windows of each thread.
#include "win32/linux/windows/modal_loop.h"
#include "win32/linux/windows/painting.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

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

class FrontEnd : public machine::FrontEnd {
public:
  std::function<bool(HWND top)> act;

  bool WaitForUser(HWND top) override { return act(top); }
  bool ShowHelp(const char *, ULONG_PTR) override { return false; }
};

class LayerWindowsTest : public testing::Test {
protected:
  FrontEnd user;
  HWND top = nullptr;
  HWND child = nullptr;

  void SetUp() override {
    machine::SetFrontEnd(nullptr);
    top = Create(WS_POPUP | WS_VISIBLE, nullptr);
    child = Create(WS_CHILD | WS_VISIBLE, top);
    events.clear();
  }
  void TearDown() override {
    machine::SetFrontEnd(nullptr);
    if (IsWindow(top))
      DestroyWindow(top);
  }

  static HWND Create(DWORD style, HWND parent) {
    const HWND window = CreateWindowExA(0, "STATIC", "", style, 0, 0, 10, 10, parent, nullptr, nullptr, nullptr);
    SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure));
    return window;
  }
  bool Run(std::function<bool(HWND top)> act) {
    user.act = std::move(act);
    machine::SetFrontEnd(&user);
    return machine::RunModalLoop(top, [] { return false; });
  }
};

TEST_F(LayerWindowsTest, UserComesAfterMessagesAndPainting) {
  PostMessageA(child, WM_USER + 1, 0, 0);
  int turns = 0;
  EXPECT_TRUE(Run([&](HWND window) {
    events += "user ";
    EXPECT_EQ(window, top);
    machine::Invalidate(machine::WindowOf(child));
    return (++turns == 2 ? DestroyWindow(top) : PostMessageA(child, WM_USER, 0, 0)) != FALSE;
  }));
  EXPECT_EQ(events, "posted 1 posted 2 paint paint user posted 0 paint user ");
}

TEST_F(LayerWindowsTest, LoopEndsWithoutUser) {
  EXPECT_FALSE(Run([](HWND) { return false; }));
  EXPECT_TRUE(IsWindow(top));
}

TEST_F(LayerWindowsTest, EachThreadHasItsOwn) {
  SetFocus(child);
  std::thread([this] {
    EXPECT_FALSE(IsWindow(top));
    EXPECT_EQ(GetFocus(), nullptr);
    const HWND own = Create(WS_POPUP | WS_VISIBLE, nullptr);
    EXPECT_EQ(GetActiveWindow(), own);
  }).join();
  EXPECT_EQ(GetFocus(), child);
}

} // namespace
