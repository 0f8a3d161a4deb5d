// The window classes, and how a window is made and destroyed.
#include "win32/linux/windows/dialogs.h"
#include "win32/linux/windows/system_controls.h"

#include <algorithm>
#include <iterator>
#include <strings.h>

using machine::Window;
using machine::WindowOf;
using machine::WindowPtr;

namespace {

struct WindowClass {
  const char *name;
  WNDPROC procedure;
};
constexpr WindowClass Classes[] = {{"#32770", machine::DialogProcedure},
                                   {"Button", machine::ButtonProcedure},
                                   {"Static", machine::StaticProcedure},
                                   {"Edit", machine::EditProcedure},
                                   {"ComboBox", machine::ComboBoxProcedure}};

const WindowClass *FindClass(const char *name) {
  const auto *const found =
      std::ranges::find_if(Classes, [&](const WindowClass &known) { return strcasecmp(known.name, name) == 0; });
  return found != std::end(Classes) ? found : nullptr;
}

// A window that is being destroyed, or lies in one that is, gets no more children.
bool TakesChildren(const WindowPtr &window) {
  return window && !window->destroying && (window->parent == nullptr || TakesChildren(WindowOf(window->parent)));
}

void AnnounceDestruction(HWND window) {
  SendMessageA(window, WM_DESTROY, 0, 0);
  if (const WindowPtr still = WindowOf(window))
    for (const HWND child : std::vector(still->children))
      AnnounceDestruction(child);
}

void Free(const WindowPtr &window) {
  window->destroying = true;
  for (const HWND child : std::vector(window->children))
    if (const WindowPtr still = WindowOf(child))
      Free(still);
  SendMessageA(window->handle, WM_NCDESTROY, 0, 0);
  if (IsWindow(window->handle) != FALSE)
    machine::RemoveFromTree(*window);
}

void DestroyOwned(HWND owner) {
  for (const HWND window : std::vector(WindowOf(GetDesktopWindow())->children))
    if (const WindowPtr owned = WindowOf(window); owned && owned->owner == owner)
      DestroyWindow(window);
}

} // namespace

HWND CreateWindowExA(DWORD, const char *className, const char *text, DWORD style, int x, int y, int width, int height,
                     HWND parent, HMENU menu, HINSTANCE, void *) {
  const WindowClass *const known = FindClass(className);
  const WindowPtr above = WindowOf(parent);
  const bool child = (style & (WS_CHILD | WS_POPUP)) == WS_CHILD;
  if (known == nullptr || (child ? !TakesChildren(above) : parent != nullptr && !above))
    return nullptr;

  const auto window = std::make_shared<Window>();
  window->className = known->name;
  window->procedure = known->procedure;
  window->style = style & ~WS_VISIBLE;
  if (above && parent != GetDesktopWindow())
    (child ? window->parent : window->owner) = child ? parent : machine::TopLevelOf(above)->handle;
  window->id = child ? static_cast<int>(reinterpret_cast<intptr_t>(menu)) : 0;
  window->text = text;
  window->bounds = {x, y, x + width, y + height};

  const HWND handle = machine::AddToTree(window);
  SendMessageA(handle, machine::WM_CREATE, 0, 0);
  if ((style & WS_VISIBLE) != 0)
    ShowWindow(handle, SW_SHOW);
  return IsWindow(handle) != FALSE ? handle : nullptr;
}

BOOL DestroyWindow(HWND handle) {
  const WindowPtr window = WindowOf(handle);
  if (!window || window->destroying || handle == GetDesktopWindow())
    return FALSE;
  window->destroying = true;
  ShowWindow(handle, SW_HIDE);
  DestroyOwned(handle);
  AnnounceDestruction(handle);
  Free(window);
  return TRUE;
}
