#include "win32/linux/windows/window_tree.h"

#include "win32/linux/text/code_page.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <unistd.h>
#include <utility>

using machine::Window;
using machine::WindowOf;
using machine::WindowPtr;

namespace {

const HWND Desktop = reinterpret_cast<HWND>(uintptr_t{0x10010});
constexpr RECT Screen = {0, 0, 1024, 768};

std::vector<HWND> &SiblingsOf(const Window &window) {
  return WindowOf(window.parent != nullptr ? window.parent : Desktop)->children;
}

} // namespace

namespace machine {

ThreadWindows &ThisThread() {
  static thread_local ThreadWindows thread = [] {
    auto desktop = std::make_shared<Window>();
    desktop->handle = Desktop;
    desktop->className = "#32769";
    desktop->procedure = DefWindowProcA;
    desktop->style = WS_POPUP | WS_VISIBLE;
    desktop->bounds = Screen;
    ThreadWindows made;
    made.windows.emplace(Desktop, std::move(desktop));
    return made;
  }();
  return thread;
}

HWND AddToTree(const WindowPtr &window) {
  static std::atomic<uintptr_t> last = 0x20000;
  const HWND handle = window->handle = reinterpret_cast<HWND>(last += 2);
  ThisThread().windows.emplace(handle, window);
  std::vector<HWND> &siblings = SiblingsOf(*window);
  siblings.insert(window->parent != nullptr ? siblings.end() : siblings.begin(), handle);
  return handle;
}

void RemoveFromTree(const Window &window) {
  ThreadWindows &thread = ThisThread();
  std::erase(SiblingsOf(window), window.handle);
  std::erase_if(thread.posted, [&](const PostedMessage &message) { return message.window == window.handle; });
  for (HWND *const state : {&thread.focus, &thread.active})
    if (*state == window.handle)
      *state = nullptr;
  thread.windows.erase(window.handle);
}

WindowPtr WindowOf(HWND handle) {
  const auto &windows = ThisThread().windows;
  const auto found = windows.find(handle);
  return found != windows.end() ? found->second : nullptr;
}

WindowPtr TopLevelOf(WindowPtr window) {
  while (const WindowPtr above = WindowOf(window->parent))
    window = above;
  return window;
}

bool IsWithin(HWND handle, HWND outer) {
  for (WindowPtr window = WindowOf(handle); window && window->parent != nullptr; window = WindowOf(window->parent))
    if (window->parent == outer)
      return true;
  return false;
}

void Raise(const Window &window) {
  std::vector<HWND> &siblings = SiblingsOf(window);
  const auto position = std::ranges::find(siblings, window.handle);
  std::rotate(siblings.begin(), position, position + 1);
}

int CopyText(const std::string &text, char *buffer, size_t size) {
  if (buffer == nullptr || size == 0)
    return 0;
  const std::string_view cut = text::WholeCharacters(text, size - 1);
  std::memcpy(buffer, cut.data(), cut.size());
  buffer[cut.size()] = '\0';
  return static_cast<int>(cut.size());
}

} // namespace machine

DWORD GetCurrentThreadId() { return static_cast<DWORD>(gettid()); }

BOOL IsWindow(HWND window) { return WindowOf(window) != nullptr; }

// ---- What a window is ----

LONG GetWindowLongA(HWND handle, int index) {
  const WindowPtr window = WindowOf(handle);
  return window && index == GWL_STYLE ? static_cast<LONG>(window->style) : 0;
}

LONG_PTR GetWindowLongPtrA(HWND handle, int index) {
  const WindowPtr window = WindowOf(handle);
  if (!window)
    return 0;
  switch (index) {
  case GWLP_WNDPROC:
    return reinterpret_cast<LONG_PTR>(window->procedure);
  case DWLP_MSGRESULT:
    return window->messageResult;
  case DWLP_USER:
    return window->userData;
  default:
    return 0;
  }
}

LONG_PTR SetWindowLongPtrA(HWND handle, int index, LONG_PTR value) {
  const LONG_PTR old = GetWindowLongPtrA(handle, index);
  const WindowPtr window = WindowOf(handle);
  if (window && index == GWLP_WNDPROC)
    window->procedure = reinterpret_cast<WNDPROC>(value);
  else if (window)
    (index == DWLP_MSGRESULT ? window->messageResult : window->userData) = value;
  return old;
}

int GetClassNameA(HWND handle, char *buffer, int size) {
  const WindowPtr window = WindowOf(handle);
  return window && size > 0 ? machine::CopyText(window->className, buffer, static_cast<size_t>(size)) : 0;
}

// ---- Relatives ----

HWND GetParent(HWND handle) {
  const WindowPtr window = WindowOf(handle);
  if (!window)
    return nullptr;
  return window->parent == nullptr && window->Has(WS_POPUP) ? window->owner : window->parent;
}

HWND GetWindow(HWND handle, UINT which) {
  const WindowPtr window = WindowOf(handle);
  if (!window)
    return nullptr;
  if (which == GW_OWNER)
    return window->owner;
  if (which == GW_CHILD)
    return window->children.empty() ? nullptr : window->children.front();
  if (which != GW_HWNDNEXT || handle == Desktop)
    return nullptr;
  const std::vector<HWND> &siblings = SiblingsOf(*window);
  const auto next = std::ranges::find(siblings, handle) + 1;
  return next != siblings.end() ? *next : nullptr;
}

HWND GetDesktopWindow() { return Desktop; }

// ---- Bounds ----

BOOL GetWindowRect(HWND handle, RECT *rect) {
  const WindowPtr window = WindowOf(handle);
  if (!window)
    return FALSE;
  *rect = window->bounds;
  for (WindowPtr above = WindowOf(window->parent); above; above = WindowOf(above->parent)) {
    rect->left += above->bounds.left;
    rect->right += above->bounds.left;
    rect->top += above->bounds.top;
    rect->bottom += above->bounds.top;
  }
  return TRUE;
}

BOOL GetClientRect(HWND handle, RECT *rect) {
  const WindowPtr window = WindowOf(handle);
  if (!window)
    return FALSE;
  const RECT &bounds = window->bounds;
  *rect = {0, 0, bounds.right - bounds.left, bounds.bottom - bounds.top};
  return TRUE;
}

BOOL SetWindowPos(HWND handle, HWND, int x, int y, int width, int height, UINT flags) {
  RECT size;
  if (GetClientRect(handle, &size) == FALSE)
    return FALSE;
  if ((flags & SWP_NOSIZE) == 0)
    size = {0, 0, width, height};
  WindowOf(handle)->bounds = {x, y, x + size.right, y + size.bottom};
  return TRUE;
}

BOOL CopyRect(RECT *target, const RECT *source) {
  *target = *source;
  return TRUE;
}
