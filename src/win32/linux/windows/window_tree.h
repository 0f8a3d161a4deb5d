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

// Messages that only the layer sends by itself.
constexpr UINT WM_CREATE = 0x0001; // which can't refuse here
constexpr UINT WM_SETTEXT = 0x000C;
constexpr UINT WM_GETTEXT = 0x000D;
constexpr UINT WM_GETTEXTLENGTH = 0x000E;

// Styles that nobody outside looks at.
constexpr DWORD WS_DISABLED = 0x08000000;
constexpr DWORD WS_TABSTOP = 0x00010000;

// What a window procedure of the layer keeps with its window.
struct WindowState {
  virtual ~WindowState() = default;
};

struct Window {
  HWND handle = nullptr;
  std::string className;
  WNDPROC procedure = nullptr;
  DWORD style = 0;
  HWND parent = nullptr;      // of a child
  HWND owner = nullptr;       // of a top-level window
  std::vector<HWND> children; // the topmost first
  int id = 0;
  LONG_PTR messageResult = 0; // DWLP_MSGRESULT
  LONG_PTR userData = 0;      // DWLP_USER
  std::string text;
  RECT bounds = {};         // in the parent's client area, which is the whole of it
  HWND lastFocus = nullptr; // where the focus goes when this top-level window is activated
  bool invalid = false;     // BeginPaint makes it valid
  bool destroying = false;
  std::shared_ptr<WindowState> state;

  bool Has(DWORD bits) const { return (style & bits) == bits; }
};

using WindowPtr = std::shared_ptr<Window>;

struct PostedMessage {
  HWND window;
  UINT message;
  WPARAM wParam;
  LPARAM lParam;
};

// The windows of a thread. The top-level windows are the children of the desktop.
struct ThreadWindows {
  std::unordered_map<HWND, WindowPtr> windows;
  HWND focus = nullptr;
  HWND active = nullptr;
  std::deque<PostedMessage> posted;
};
ThreadWindows &ThisThread();

// Gives a new window a handle, and its position among its siblings: behind those of a child, in front of other
// top-level windows.
HWND AddToTree(const WindowPtr &window);
// Removes a window, and what the thread has of it: the focus, posted messages.
void RemoveFromTree(const Window &window);

// Null for a handle that is no window of this thread.
WindowPtr WindowOf(HWND handle);

// The state that the procedure of a layer's class keeps, which it makes with the first message; null for a window that
// has another or none.
template <typename State> std::shared_ptr<State> StateOf(const WindowPtr &window, UINT message = WM_NULL) {
  if (!window)
    return nullptr;
  if (message == WM_CREATE)
    window->state = std::make_shared<State>();
  return std::dynamic_pointer_cast<State>(window->state);
}

// The window itself or the topmost of its parents.
WindowPtr TopLevelOf(WindowPtr window);

// Whether a window lies in another, however deep.
bool IsWithin(HWND handle, HWND outer);

// Puts a window in front of its siblings.
void Raise(const Window &window);

// Copies a text as the calls answer one, cut to whole characters and terminated, and answers its length.
int CopyText(const std::string &text, char *buffer, size_t size);

} // namespace machine
