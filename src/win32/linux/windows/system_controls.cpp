// What the controls have in common.
#include "win32/linux/windows/system_controls.h"

#include "win32/linux/windows/painting.h"

namespace machine {

LRESULT ControlDefault(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr control = WindowOf(handle);
  if (!control)
    return 0;
  switch (message) {
  case WM_SETFONT:
    control->font = reinterpret_cast<HFONT>(wParam);
    if (lParam != 0)
      Invalidate(control);
    return 0;
  case WM_GETFONT:
    return reinterpret_cast<LRESULT>(control->font);
  case WM_SETTEXT:
    Invalidate(control);
    [[fallthrough]];
  default:
    return DefWindowProcA(handle, message, wParam, lParam);
  }
}

void NotifyParent(const Window &control, WORD code) {
  SendMessageA(control.parent, WM_COMMAND, MAKEWPARAM(static_cast<unsigned>(control.id), code),
               reinterpret_cast<LPARAM>(control.handle));
}

} // namespace machine
