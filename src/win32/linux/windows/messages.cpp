// How messages reach the windows, what becomes of those that nobody wants, and the modal loop.
#include "win32/linux/last_error.h"
#include "win32/linux/public/machine.h"
#include "win32/linux/windows/dialogs.h"
#include "win32/linux/windows/window_tree.h"

#include <atomic>
#include <ctime>

using machine::FrontEnd;
using machine::ThisThread;
using machine::Window;
using machine::WindowOf;
using machine::WindowPtr;

namespace {

constexpr size_t LongestQueue = 10000;

std::atomic<FrontEnd *> frontEnd;

bool HandOutMessage(HWND top) {
  auto &posted = ThisThread().posted;
  if (posted.empty())
    return false;
  const MSG message = posted.front();
  posted.pop_front();
  if (!machine::PressDialogKey(top, message))
    SendMessageA(message.hwnd, message.message, message.wParam, message.lParam);
  return true;
}

bool HasArea(const Window &window) {
  return window.bounds.left < window.bounds.right && window.bounds.top < window.bounds.bottom;
}

void Paint(const WindowPtr &window) {
  SendMessageA(window->handle, WM_PAINT, 0, 0);
  window->invalid = false; // also where the procedure didn't begin to paint, which would go on for ever
}

// Paints the first invalid window in or below one.
bool PaintBelow(const WindowPtr &window) {
  if (!window->Has(WS_VISIBLE))
    return false;
  if (window->invalid && HasArea(*window)) {
    Paint(window);
    return true;
  }
  for (const HWND child : window->children)
    if (PaintBelow(WindowOf(child)))
      return true;
  return false;
}

} // namespace

namespace machine {

FrontEnd *SetFrontEnd(FrontEnd *with) { return frontEnd.exchange(with); }

FrontEnd *CurrentFrontEnd() { return frontEnd; }

bool RunModalLoop(HWND top, const std::function<bool()> &done) {
  const auto over = [&] { return done() || IsWindow(top) == FALSE; };
  while (!over()) {
    if (HandOutMessage(top) || PaintBelow(WindowOf(GetDesktopWindow())))
      continue;
    FrontEnd *const user = CurrentFrontEnd();
    const LockPause pause; // nobody waits for this user but us
    if (user == nullptr || !user->WaitForUser(top))
      return over();
  }
  return true;
}

} // namespace machine

LRESULT SendMessageA(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr window = WindowOf(handle); // stays while its procedure runs, even if that destroys it
  return window ? window->procedure(handle, message, wParam, lParam) : 0;
}

LRESULT CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return procedure != nullptr ? procedure(window, message, wParam, lParam) : 0;
}

BOOL PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (!WindowOf(window))
    return FALSE;
  auto &posted = ThisThread().posted;
  if (posted.size() == LongestQueue)
    return machine::Fail(ERROR_NOT_ENOUGH_QUOTA, FALSE);
  posted.push_back({window, message, wParam, lParam, static_cast<DWORD>(std::time(nullptr)), {0, 0}});
  return TRUE;
}

BOOL UpdateWindow(HWND handle) {
  const WindowPtr window = WindowOf(handle);
  if (window && window->invalid && IsWindowVisible(handle) != FALSE)
    Paint(window);
  return window != nullptr;
}

LRESULT DefWindowProcA(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr window = WindowOf(handle);
  if (!window)
    return 0;
  const auto setText = [&](const char *text) { window->text = text != nullptr ? text : ""; };
  switch (message) {
  case WM_NCCREATE:
    if (lParam != 0)
      setText(reinterpret_cast<const CREATESTRUCTA *>(lParam)->lpszName);
    return TRUE;
  case WM_SETTEXT:
    setText(reinterpret_cast<const char *>(lParam));
    return TRUE;
  case WM_GETTEXT:
    return machine::CopyText(window->text, reinterpret_cast<char *>(lParam), wParam);
  case WM_GETTEXTLENGTH:
    return static_cast<LRESULT>(window->text.size());
  case WM_PAINT:
    window->invalid = false;
    return 0;
  case WM_CLOSE:
    DestroyWindow(handle);
    return 0;
  case WM_HELP: // goes up until somebody has help
    return SendMessageA(GetParent(handle), message, wParam, lParam);
  default:
    return 0;
  }
}
