#include "win32/linux/windows/drawing.h"

#include "win32/linux/windows/window_tree.h"

#include <cstdlib>
#include <utility>

namespace {

using machine::DeviceContext;
using machine::DrawingObject;
using machine::Handles;
using machine::Selection;

constexpr COLORREF Black = 0x000000;
constexpr COLORREF White = 0xFFFFFF;
constexpr COLORREF NoColour = 0xFFFFFFFF;
constexpr int DefaultFontHeight = 16;

Selection Make(const DrawingObject &made) {
  auto object = std::make_shared<DrawingObject>(made);
  return {Handles().objects.Add(object), object};
}

// Changes a setting of a context and answers what it was, or that there is no such context.
template <typename Value> Value Change(HDC handle, Value DeviceContext::*setting, Value value, Value none) {
  const auto context = Handles().contexts.Find(handle);
  return context ? std::exchange((*context).*setting, value) : none;
}

} // namespace

machine::DrawingHandles &machine::Handles() {
  static DrawingHandles handles;
  return handles;
}

// ---- Contexts ----

HDC GetDC(HWND window) {
  static const Selection systemFont = Make({true, DefaultFontHeight, 0});
  static const Selection systemBrush = Make({false, 0, White});
  if (IsWindow(window) == FALSE)
    return nullptr;
  return Handles().contexts.Add(
      std::make_shared<DeviceContext>(DeviceContext{window, systemFont, systemBrush, Black, machine::OPAQUE}));
}

int ReleaseDC(HWND, HDC context) { return Handles().contexts.Remove(context) != nullptr; }

HDC BeginPaint(HWND handle, PAINTSTRUCT *paint) {
  paint->hdc = GetDC(handle);
  if (const auto window = machine::WindowOf(handle))
    window->invalid = false;
  return paint->hdc;
}

BOOL EndPaint(HWND window, const PAINTSTRUCT *paint) {
  ReleaseDC(window, paint->hdc);
  return TRUE;
}

HGDIOBJ SelectObject(HDC handle, HGDIOBJ object) {
  const auto context = Handles().contexts.Find(handle);
  const auto selected = Handles().objects.Find(object);
  if (!context || !selected)
    return nullptr;
  return std::exchange(selected->isFont ? context->font : context->brush, {object, selected}).handle;
}

COLORREF SetTextColor(HDC context, COLORREF colour) {
  return Change(context, &DeviceContext::textColour, colour, NoColour);
}

int SetBkMode(HDC context, int mode) { return Change(context, &DeviceContext::backMode, mode, 0); }

// ---- Fonts and brushes ----

HBRUSH CreateSolidBrush(COLORREF colour) { return static_cast<HBRUSH>(Make({false, 0, colour}).handle); }

HFONT CreateFontA(int height, int, int, int, int, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD,
                  const char *) {
  return static_cast<HFONT>(Make({true, std::abs(height), 0}).handle);
}

BOOL DeleteObject(HGDIOBJ object) { return Handles().objects.Remove(object) != nullptr; }

BOOL GetTextMetricsA(HDC handle, TEXTMETRICA *metrics) {
  const auto context = Handles().contexts.Find(handle);
  if (!context)
    return FALSE;
  *metrics = {context->font.object->height, 0};
  return TRUE;
}

DWORD GetSysColor(int index) {
  switch (index) {
  case COLOR_WINDOW:
  case COLOR_HIGHLIGHTTEXT:
    return White;
  case COLOR_HIGHLIGHT:
    return 0x6A240A;
  default:
    return Black;
  }
}
