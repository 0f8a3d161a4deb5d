// Static texts, icons and bitmaps.
#include "win32/linux/windows/painting.h"
#include "win32/linux/windows/system_controls.h"

#include <utility>

namespace {

struct StaticState : machine::WindowState {
  HICON icon = nullptr;
};

} // namespace

LRESULT machine::StaticProcedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr control = WindowOf(handle);
  const auto state = StateOf<StaticState>(control, message);
  if (!state)
    return DefWindowProcA(handle, message, wParam, lParam);
  switch (message) {
  case STM_SETICON:
    Invalidate(control);
    return reinterpret_cast<LRESULT>(std::exchange(state->icon, reinterpret_cast<HICON>(wParam)));
  case STM_GETICON:
    return reinterpret_cast<LRESULT>(state->icon);
  default:
    return DefWindowProcA(handle, message, wParam, lParam);
  }
}
