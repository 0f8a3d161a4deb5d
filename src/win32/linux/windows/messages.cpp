// How messages reach the windows, and what becomes of those that nobody wants.
#include "win32/linux/windows/painting.h"

using machine::WindowOf;
using machine::WindowPtr;

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
  machine::ThisThread().posted.push_back({window, message, wParam, lParam});
  return TRUE;
}

LRESULT DefWindowProcA(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr window = WindowOf(handle);
  if (!window)
    return 0;
  switch (message) {
  case machine::WM_SETTEXT:
    window->text = reinterpret_cast<const char *>(lParam);
    machine::Invalidate(window);
    return TRUE;
  case machine::WM_GETTEXT:
    return machine::CopyText(window->text, reinterpret_cast<char *>(lParam), wParam);
  case machine::WM_GETTEXTLENGTH:
    return static_cast<LRESULT>(window->text.size());
  case WM_PAINT:
    window->invalid = false;
    return 0;
  case WM_HELP: // goes up until somebody has help
    return SendMessageA(GetParent(handle), message, wParam, lParam);
  default:
    return 0;
  }
}

// ---- Text ----

BOOL SetWindowTextA(HWND window, const char *text) {
  return SendMessageA(window, machine::WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) > 0;
}

int GetWindowTextA(HWND window, char *buffer, int size) {
  if (size <= 0)
    return 0;
  buffer[0] = '\0';
  return static_cast<int>(
      SendMessageA(window, machine::WM_GETTEXT, static_cast<WPARAM>(size), reinterpret_cast<LPARAM>(buffer)));
}

int GetWindowTextLengthA(HWND window) {
  return static_cast<int>(SendMessageA(window, machine::WM_GETTEXTLENGTH, 0, 0));
}
