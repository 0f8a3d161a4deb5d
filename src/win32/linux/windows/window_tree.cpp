// Window classes, the windows themselves and the tree that they are.
#include "win32/linux/windows/window_tree.h"

#include "win32/linux/last_error.h"
#include "win32/linux/text/code_page.h"
#include "win32/linux/windows/system_controls.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <mutex>
#include <optional>
#include <unistd.h>

using machine::Fail;
using machine::ThisThread;
using machine::ThreadWindows;
using machine::Window;
using machine::WindowOf;
using machine::WindowPtr;

namespace {

const HWND Desktop = reinterpret_cast<HWND>(uintptr_t{0x10010});
constexpr RECT Screen = {0, 0, 1024, 768};

// ---- Classes ----

struct WindowClass {
  std::string name;
  WNDPROC procedure;
  size_t extra;
};

constexpr size_t FirstAtom = 0xC000;
constexpr size_t LargestExtra = 0x10000;

std::mutex classGuard;

// A class's atom is its place here, behind the atoms that are no classes.
std::vector<WindowClass> &Classes() {
  static std::vector<WindowClass> classes = {{"#32770", DefDlgProcA, DLGWINDOWEXTRA},
                                             {"Button", machine::ButtonProcedure, 0},
                                             {"Static", machine::StaticProcedure, 0},
                                             {"Edit", machine::EditProcedure, 0},
                                             {"ComboBox", machine::ComboBoxProcedure, 0}};
  return classes;
}

bool SameName(const char *left, const char *right) {
  return _mbsicmp(reinterpret_cast<const unsigned char *>(left), reinterpret_cast<const unsigned char *>(right)) == 0;
}

std::optional<WindowClass> FindClass(const char *name) {
  const std::lock_guard lock(classGuard);
  const std::vector<WindowClass> &classes = Classes();
  const auto atom = reinterpret_cast<uintptr_t>(name);
  if (atom <= 0xFFFF)
    return atom >= FirstAtom && atom - FirstAtom < classes.size() ? std::optional(classes[atom - FirstAtom])
                                                                  : std::nullopt;
  const auto found =
      std::ranges::find_if(classes, [&](const WindowClass &known) { return SameName(known.name.c_str(), name); });
  return found != classes.end() ? std::optional(*found) : std::nullopt;
}

// ---- The tree ----

std::vector<HWND> &SiblingsOf(const Window &window) {
  return WindowOf(window.parent != nullptr ? window.parent : Desktop)->children;
}

// Coordinates are cut to the sixteen bits that a screen can have, so that sums of them stay in range.
int Coordinate(int value) { return std::clamp(value, -0x8000, 0x7FFF); }

void Place(Window &window, int x, int y, int width, int height) {
  window.bounds.left = Coordinate(x);
  window.bounds.top = Coordinate(y);
  window.bounds.right = window.bounds.left + std::max(Coordinate(width), 0);
  window.bounds.bottom = window.bounds.top + std::max(Coordinate(height), 0);
}

// ---- Creation and destruction ----

HWND NewHandle() {
  static std::atomic<uintptr_t> last = 0x20000;
  return reinterpret_cast<HWND>(last += 2);
}

void Forget(const Window &window) {
  if (!IsWindow(window.handle))
    return;
  ThreadWindows &thread = ThisThread();
  std::erase(SiblingsOf(window), window.handle);
  std::erase_if(thread.posted, [&](const MSG &message) { return message.hwnd == window.handle; });
  for (HWND *const state : {&thread.focus, &thread.active})
    if (*state == window.handle)
      *state = nullptr;
  thread.windows.erase(window.handle);
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
  Forget(*window);
}

void DestroyOwned(HWND owner) {
  for (const HWND window : std::vector(WindowOf(Desktop)->children))
    if (const WindowPtr owned = WindowOf(window); owned && owned->owner == owner)
      DestroyWindow(window);
}

bool IsBeingDestroyed(WindowPtr window) {
  for (; window; window = WindowOf(window->parent))
    if (window->destroying && window->handle != Desktop)
      return true;
  return false;
}

LONG CheckCreation(bool classKnown, bool child, HWND parent, const WindowPtr &above) {
  if (!classKnown)
    return ERROR_CANNOT_FIND_WND_CLASS;
  if (child && parent == nullptr)
    return ERROR_TLW_WITH_WSCHILD;
  const bool fits = above ? !child || !IsBeingDestroyed(above) : parent == nullptr;
  return fits ? ERROR_SUCCESS : ERROR_INVALID_WINDOW_HANDLE;
}

// WM_NCCREATE and WM_CREATE, which can refuse the window.
bool Announce(const Window &window, const CREATESTRUCTA &creation) {
  const auto parameter = reinterpret_cast<LPARAM>(&creation);
  return SendMessageA(window.handle, WM_NCCREATE, 0, parameter) != 0 &&
         SendMessageA(window.handle, WM_CREATE, 0, parameter) != -1 && IsWindow(window.handle);
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
    desktop->destroying = true; // nobody destroys it
    ThreadWindows made;
    made.windows.emplace(Desktop, std::move(desktop));
    return made;
  }();
  return thread;
}

WindowPtr WindowOf(HWND handle) {
  if (handle == nullptr)
    return nullptr;
  const auto &windows = ThisThread().windows;
  const auto found = windows.find(handle);
  return found != windows.end() ? found->second : Fail(ERROR_INVALID_WINDOW_HANDLE, nullptr);
}

WindowPtr TopLevelOf(WindowPtr window) {
  while (const WindowPtr above = WindowOf(window->parent))
    window = above;
  return window;
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

WORD RegisterClassA(const WNDCLASSA *windowClass) {
  const char *const name = windowClass->lpszClassName;
  const int extra = windowClass->cbWndExtra;
  if (reinterpret_cast<uintptr_t>(name) <= 0xFFFF || windowClass->lpfnWndProc == nullptr || extra < 0 ||
      static_cast<size_t>(extra) > LargestExtra)
    return Fail(ERROR_INVALID_PARAMETER, WORD{0});
  if (FindClass(name))
    return Fail(ERROR_CLASS_ALREADY_EXISTS, WORD{0});
  const std::lock_guard lock(classGuard);
  Classes().push_back({name, windowClass->lpfnWndProc, static_cast<size_t>(extra)});
  return static_cast<WORD>(FirstAtom + Classes().size() - 1);
}

DWORD GetCurrentThreadId() { return static_cast<DWORD>(gettid()); }

HWND CreateWindowExA(DWORD exStyle, const char *className, const char *text, DWORD style, int x, int y, int width,
                     int height, HWND parent, HMENU menu, HINSTANCE instance, void *parameter) {
  const std::optional<WindowClass> known = FindClass(className);
  const WindowPtr above = WindowOf(parent);
  const bool child = (style & (WS_CHILD | WS_POPUP)) == WS_CHILD;
  if (const LONG error = CheckCreation(known.has_value(), child, parent, above); error != ERROR_SUCCESS)
    return Fail(error, nullptr);

  const auto window = std::make_shared<Window>();
  window->handle = NewHandle();
  window->className = known->name;
  window->procedure = known->procedure;
  window->style = style & ~WS_VISIBLE;
  window->exStyle = exStyle;
  if (above && parent != Desktop)
    (child ? window->parent : window->owner) = child ? parent : machine::TopLevelOf(above)->handle;
  window->id = child ? reinterpret_cast<LONG_PTR>(menu) : 0;
  window->extra.resize(known->extra);
  Place(*window, x, y, width, height);
  ThisThread().windows.emplace(window->handle, window);
  std::vector<HWND> &siblings = SiblingsOf(*window);
  siblings.insert(child ? siblings.end() : siblings.begin(), window->handle);

  const CREATESTRUCTA creation = {parameter, instance,  menu,   parent, height, width, y, x, static_cast<LONG>(style),
                                  text,      className, exStyle};
  const HWND handle = window->handle;
  if (!Announce(*window, creation)) {
    if (IsWindow(handle))
      Free(window);
    return nullptr;
  }
  if ((style & WS_VISIBLE) != 0)
    ShowWindow(handle, SW_SHOW);
  return IsWindow(handle) ? handle : nullptr;
}

BOOL DestroyWindow(HWND handle) {
  const WindowPtr window = WindowOf(handle);
  if (!window || window->destroying)
    return FALSE;
  window->destroying = true;
  ShowWindow(handle, SW_HIDE);
  DestroyOwned(handle);
  AnnounceDestruction(handle);
  Free(window);
  return TRUE;
}

BOOL IsWindow(HWND window) { return WindowOf(window) != nullptr; }

// ---- What a window is ----

namespace {

// The old value, with the new one put in its place if there is one.
template <typename Value> LONG_PTR Exchange(Value &value, const LONG_PTR *with) {
  const auto old = reinterpret_cast<LONG_PTR>(reinterpret_cast<void *>(value));
  if (with != nullptr)
    value = reinterpret_cast<Value>(*with);
  return old;
}
template <typename Value>
requires std::is_integral_v<Value> LONG_PTR Exchange(Value &value, const LONG_PTR *with) {
  const auto old = static_cast<LONG_PTR>(value);
  if (with != nullptr)
    value = static_cast<Value>(*with);
  return old;
}

// A number of a window by its index, of `size` bytes where the index is one of the class's own.
LONG_PTR WindowLong(HWND handle, int index, size_t size, const LONG_PTR *with) {
  const WindowPtr window = WindowOf(handle);
  if (!window)
    return 0;
  switch (index) {
  case GWL_STYLE:
    return Exchange(window->style, with);
  case GWL_EXSTYLE:
    return Exchange(window->exStyle, with);
  case GWLP_WNDPROC:
    return Exchange(window->procedure, with);
  case GWLP_ID:
    return Exchange(window->id, with);
  case GWLP_USERDATA:
    return Exchange(window->userData, with);
  default:
    break;
  }
  if (index < 0 || static_cast<size_t>(index) + size > window->extra.size())
    return Fail(ERROR_INVALID_INDEX, LONG_PTR{0});
  LONG_PTR old = 0;
  std::byte *const place = window->extra.data() + index;
  std::memcpy(&old, place, size);
  if (with != nullptr)
    std::memcpy(place, with, size);
  return old;
}

} // namespace

LONG GetWindowLongA(HWND window, int index) {
  return static_cast<LONG>(WindowLong(window, index, sizeof(LONG), nullptr));
}

LONG_PTR GetWindowLongPtrA(HWND window, int index) { return WindowLong(window, index, sizeof(LONG_PTR), nullptr); }

LONG_PTR SetWindowLongPtrA(HWND window, int index, LONG_PTR value) {
  return WindowLong(window, index, sizeof value, &value);
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

BOOL IsChild(HWND parent, HWND handle) {
  for (WindowPtr window = WindowOf(handle); window && window->parent != nullptr; window = WindowOf(window->parent))
    if (window->parent == parent)
      return TRUE;
  return FALSE;
}

HWND GetDesktopWindow() { return Desktop; }

// ---- Text ----

BOOL SetWindowTextA(HWND window, const char *text) {
  return SendMessageA(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) > 0;
}

int GetWindowTextA(HWND window, char *buffer, int size) {
  if (size <= 0)
    return 0;
  buffer[0] = '\0';
  return static_cast<int>(
      SendMessageA(window, WM_GETTEXT, static_cast<WPARAM>(size), reinterpret_cast<LPARAM>(buffer)));
}

int GetWindowTextLengthA(HWND window) { return static_cast<int>(SendMessageA(window, WM_GETTEXTLENGTH, 0, 0)); }

// ---- Places ----

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

BOOL SetWindowPos(HWND handle, HWND insertAfter, int x, int y, int width, int height, UINT flags) {
  const WindowPtr window = WindowOf(handle);
  if (!window || handle == Desktop)
    return FALSE;
  const RECT old = window->bounds;
  const bool sizes = (flags & SWP_NOSIZE) == 0;
  Place(*window, x, y, sizes ? width : old.right - old.left, sizes ? height : old.bottom - old.top);
  if ((flags & SWP_NOZORDER) == 0) {
    std::vector<HWND> &siblings = SiblingsOf(*window);
    std::erase(siblings, handle);
    const auto behind = std::ranges::find(siblings, insertAfter);
    siblings.insert(behind == siblings.end() ? siblings.begin() : behind + 1, handle);
  }
  return TRUE;
}

BOOL CopyRect(RECT *target, const RECT *source) {
  *target = *source;
  return TRUE;
}
