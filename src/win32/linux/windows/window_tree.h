// The windows behind the calls: records that are looked up by their handles, so that the handle of a window that is
// gone finds nothing. A window belongs to the thread that made it; to every other thread it isn't there.
#pragma once

#include "win32/win32_ui.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace machine {

// What a window procedure of the layer keeps with its window.
struct WindowState {
  virtual ~WindowState() = default;
};

struct Window {
  HWND handle = nullptr;
  std::string className;
  WNDPROC procedure = nullptr;
  DWORD style = 0;
  DWORD exStyle = 0;
  HWND parent = nullptr;      // of a child
  HWND owner = nullptr;       // of a top-level window
  std::vector<HWND> children; // the topmost first
  LONG_PTR id = 0;
  LONG_PTR userData = 0;
  std::vector<std::byte> extra; // as many bytes as the class asks for
  std::string text;
  HFONT font = nullptr;
  RECT bounds = {};         // in the parent's client area, which is the whole of it
  HWND lastFocus = nullptr; // where the focus goes when this top-level window is activated
  bool invalid = false;     // BeginPaint makes it valid
  bool destroying = false;  // DestroyWindow is at it
  std::shared_ptr<WindowState> state;

  bool Has(DWORD bits) const { return (style & bits) == bits; }
};

using WindowPtr = std::shared_ptr<Window>;

// The windows of a thread. The top-level windows are the children of the desktop.
struct ThreadWindows {
  std::unordered_map<HWND, WindowPtr> windows;
  HWND focus = nullptr;
  HWND active = nullptr;
  std::deque<MSG> posted;
};
ThreadWindows &ThisThread();

// Null for a handle that is no window of this thread, which GetLastError then says too.
WindowPtr WindowOf(HWND handle);

// The state that the procedure of a layer's class keeps, null for a window that has another or none.
template <typename State> std::shared_ptr<State> StateOf(HWND handle) {
  const WindowPtr window = WindowOf(handle);
  return window ? std::dynamic_pointer_cast<State>(window->state) : nullptr;
}

// The window itself or the topmost of its parents.
WindowPtr TopLevelOf(WindowPtr window);

// Copies a text as the calls answer one, cut to whole characters and terminated, and answers its length.
int CopyText(const std::string &text, char *buffer, size_t size);

} // namespace machine
