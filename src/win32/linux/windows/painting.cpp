#include "win32/linux/windows/painting.h"

#include <algorithm>

namespace machine {

namespace {

bool HasArea(const RECT &bounds) { return bounds.left < bounds.right && bounds.top < bounds.bottom; }

bool PaintIn(const WindowPtr &window) {
  if (!window->Has(WS_VISIBLE))
    return false;
  if (window->invalid && HasArea(window->bounds)) {
    SendMessageA(window->handle, WM_PAINT, 0, 0);
    window->invalid = false; // also if the procedure didn't begin to paint: it would be asked for ever
    return true;
  }
  return std::ranges::any_of(window->children, [](HWND child) { return PaintIn(WindowOf(child)); });
}

} // namespace

void Invalidate(const WindowPtr &window) {
  window->invalid = true;
  for (const HWND child : window->children)
    Invalidate(WindowOf(child));
}

bool PaintNext() { return PaintIn(WindowOf(GetDesktopWindow())); }

} // namespace machine
