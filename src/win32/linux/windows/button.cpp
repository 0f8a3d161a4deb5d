// Push buttons and check boxes.
#include "win32/linux/windows/painting.h"
#include "win32/linux/windows/system_controls.h"

namespace {

using machine::Window;
using machine::WindowPtr;

struct ButtonState : machine::WindowState {
  bool checked = false;
};

DWORD TypeOf(const Window &button) { return button.style & BS_TYPEMASK; }

LRESULT DialogCode(const Window &button) {
  switch (TypeOf(button)) {
  case BS_PUSHBUTTON:
    return machine::DLGC_UNDEFPUSHBUTTON;
  case BS_DEFPUSHBUTTON:
    return machine::DLGC_DEFPUSHBUTTON;
  default:
    return 0;
  }
}

void Check(const WindowPtr &button, ButtonState &state, bool checked) {
  state.checked = checked;
  machine::Invalidate(button);
}

} // namespace

LRESULT machine::ButtonProcedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr button = WindowOf(handle);
  const auto state = StateOf<ButtonState>(button, message);
  if (!state)
    return DefWindowProcA(handle, message, wParam, lParam);
  switch (message) {
  case WM_GETDLGCODE:
    return DialogCode(*button);
  case BM_GETCHECK:
    return state->checked;
  case BM_SETCHECK:
    Check(button, *state, wParam == BST_CHECKED);
    return 0;
  case BM_CLICK:
    SetFocus(handle);
    if (TypeOf(*button) == BS_AUTOCHECKBOX)
      Check(button, *state, !state->checked);
    NotifyParent(*button, BN_CLICKED);
    return 0;
  default:
    return DefWindowProcA(handle, message, wParam, lParam);
  }
}
