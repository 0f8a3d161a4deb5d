// Which window is shown, enabled and active, and which has the focus.
#include "win32/linux/windows/painting.h"

#include <algorithm>

using machine::ThisThread;
using machine::ThreadWindows;
using machine::Window;
using machine::WindowOf;
using machine::WindowPtr;

namespace {

template <typename Test> bool AllUpwards(WindowPtr window, Test test) {
  for (; window; window = WindowOf(window->parent))
    if (!test(*window))
      return false;
  return true;
}

bool IsEnabledWithParents(const WindowPtr &window) {
  return AllUpwards(window, [](const Window &each) { return !each.Has(machine::WS_DISABLED); });
}

bool CanBeActive(const WindowPtr &window) {
  return window && window->Has(WS_VISIBLE) && !window->Has(machine::WS_DISABLED);
}

bool CanTakeFocus(const WindowPtr &window) {
  return window && IsWindowVisible(window->handle) != FALSE && IsEnabledWithParents(window);
}

bool IsOwnedBy(HWND owner, WindowPtr window) {
  for (; window; window = WindowOf(window->owner))
    if (window->handle == owner)
      return true;
  return false;
}

// Makes a top-level window the active one and gives it the focus that it had last.
void Activate(const Window &top) {
  if (!top.Has(machine::WS_DISABLED))
    SetFocus(CanTakeFocus(WindowOf(top.lastFocus)) ? top.lastFocus : top.handle);
}

// A window that is hidden can't stay active or keep the focus: they go to another.
void Deactivate(const WindowPtr &window) {
  ThreadWindows &thread = ThisThread();
  if (window->parent != nullptr) {
    if (thread.focus == window->handle || machine::IsWithin(thread.focus, window->handle))
      SetFocus(window->parent);
    return;
  }
  if (thread.active != window->handle)
    return;
  // The owner comes first, then the topmost of the others.
  std::vector<HWND> candidates = WindowOf(GetDesktopWindow())->children;
  candidates.insert(candidates.begin(), window->owner);
  const auto next = std::ranges::find_if(candidates, [](HWND each) { return CanBeActive(WindowOf(each)); });
  if (next != candidates.end())
    return Activate(*WindowOf(*next));
  SetFocus(nullptr);
  thread.active = nullptr;
}

} // namespace

HWND GetActiveWindow() { return ThisThread().active; }

HWND GetLastActivePopup(HWND owner) {
  const std::vector<HWND> &order = WindowOf(GetDesktopWindow())->children; // the last active one is in front
  const auto found = std::ranges::find_if(order, [&](HWND each) {
    return each == owner || (IsWindowVisible(each) != FALSE && IsOwnedBy(owner, WindowOf(each)));
  });
  return found != order.end() ? *found : owner;
}

HWND SetFocus(HWND handle) {
  ThreadWindows &thread = ThisThread();
  const WindowPtr window = WindowOf(handle);
  if (handle != nullptr && (!window || !IsEnabledWithParents(window) || handle == GetDesktopWindow()))
    return nullptr;
  const HWND old = thread.focus;
  if (window) {
    const WindowPtr top = machine::TopLevelOf(window);
    top->lastFocus = handle;
    thread.active = top->handle;
    machine::Raise(*top);
  }
  if (old == handle)
    return old;
  thread.focus = handle;
  if (old != nullptr)
    SendMessageA(old, WM_KILLFOCUS, reinterpret_cast<WPARAM>(handle), 0);
  if (handle != nullptr && thread.focus == handle)
    SendMessageA(handle, WM_SETFOCUS, reinterpret_cast<WPARAM>(old), 0);
  return old;
}

HWND GetFocus() { return ThisThread().focus; }

BOOL EnableWindow(HWND handle, BOOL enable) {
  const WindowPtr window = WindowOf(handle);
  if (!window)
    return FALSE;
  const bool disabled = window->Has(machine::WS_DISABLED);
  if (disabled != (enable != FALSE))
    return disabled;
  window->style ^= machine::WS_DISABLED;
  if (!disabled && GetFocus() == handle)
    SetFocus(nullptr);
  machine::Invalidate(window);
  SendMessageA(handle, WM_ENABLE, disabled, 0);
  return disabled;
}

BOOL IsWindowEnabled(HWND handle) {
  const WindowPtr window = WindowOf(handle);
  return window && !window->Has(machine::WS_DISABLED);
}

BOOL ShowWindow(HWND handle, int command) {
  const WindowPtr window = WindowOf(handle);
  if (!window)
    return FALSE;
  const bool visible = window->Has(WS_VISIBLE);
  const bool show = command != SW_HIDE;
  if (visible != show) {
    SendMessageA(handle, WM_SHOWWINDOW, show, 0);
    window->style ^= WS_VISIBLE;
    if (show)
      machine::Invalidate(window);
    else
      Deactivate(window);
  }
  if (show && window->parent == nullptr)
    Activate(*window);
  return visible;
}

BOOL IsWindowVisible(HWND handle) {
  const WindowPtr window = WindowOf(handle);
  return window && AllUpwards(window, [](const Window &each) { return each.Has(WS_VISIBLE); });
}
