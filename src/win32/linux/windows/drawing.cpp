// Device contexts, which record what is drawn, and the fonts and brushes for them.
#include "win32/linux/windows/drawing.h"

#include "win32/linux/machine/handle_table.h"
#include "win32/linux/windows/window_tree.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

using machine::Drawn;
using machine::HandleTable;

constexpr COLORREF Black = 0x000000;
constexpr COLORREF White = 0xFFFFFF;
constexpr COLORREF NoColour = 0xFFFFFFFF;
constexpr int DefaultFontHeight = 16;

struct Object {
  bool isFont;
  int height;      // of a font
  COLORREF colour; // of a brush
};

// An object that is deleted while it is selected stays until another takes its place.
struct Selection {
  HGDIOBJ handle;
  std::shared_ptr<Object> object;
};

struct Context {
  HWND window;
  Selection font;
  Selection brush;
  COLORREF textColour = Black;
  int backMode = OPAQUE;
};

// What every context begins with belongs to the system and is never deleted.
struct Drawing {
  HandleTable<HGDIOBJ, Object> objects{0x1000000};
  HandleTable<HDC, Context> contexts{0x2000000};
  const Selection systemFont = Make({true, DefaultFontHeight, 0});
  const Selection systemBrush = Make({false, 0, White});

  Selection Make(const Object &made) {
    auto object = std::make_shared<Object>(made);
    return {objects.Add(object), object};
  }
  bool IsSystems(HGDIOBJ object) const { return object == systemFont.handle || object == systemBrush.handle; }
};

Drawing &System() {
  static Drawing drawing;
  return drawing;
}

thread_local machine::DrawingRecord *currentRecord = nullptr;

int TextHeight(const Context &context, const std::string &text, const RECT &place, UINT format) {
  const int line = context.font.object->height;
  if ((format & DT_SINGLELINE) == 0)
    return line * (1 + static_cast<int>(std::ranges::count(text, '\n')));
  return (format & DT_VCENTER) != 0 ? (place.bottom - place.top) / 2 - line / 2 + line : line;
}

// Changes a setting of a context and answers what it was, or that there is no such context.
template <typename Value> Value Change(HDC handle, Value Context::*setting, Value value, Value none) {
  const auto context = System().contexts.Find(handle);
  return context ? std::exchange((*context).*setting, value) : none;
}

} // namespace

namespace machine {

DrawingRecord::DrawingRecord() : outer(std::exchange(currentRecord, this)) {}
DrawingRecord::~DrawingRecord() { currentRecord = outer; }

size_t LiveDrawingObjects() {
  const Drawing &system = System();
  return system.objects.Size() - 2 + system.contexts.Size();
}

bool Draw(HDC handle, Drawn operation) {
  const auto context = System().contexts.Find(handle);
  if (!context)
    return false;
  operation.window = context->window;
  operation.backMode = context->backMode;
  if (operation.kind == Drawn::Kind::Fill)
    operation.colour = context->brush.object->colour;
  else if (operation.kind == Drawn::Kind::Text)
    operation.colour = context->textColour;
  if (currentRecord != nullptr)
    currentRecord->operations.push_back(std::move(operation));
  return true;
}

} // namespace machine

// ---- Contexts ----

HDC GetDC(HWND window) {
  if (window != nullptr && IsWindow(window) == FALSE)
    return nullptr;
  Drawing &system = System();
  return system.contexts.Add(std::make_shared<Context>(Context{window, system.systemFont, system.systemBrush}));
}

int ReleaseDC(HWND, HDC context) { return System().contexts.Remove(context) != nullptr; }

HDC BeginPaint(HWND handle, PAINTSTRUCT *paint) {
  paint->hdc = nullptr;
  const auto window = machine::WindowOf(handle);
  if (!window)
    return nullptr;
  window->invalid = false;
  return paint->hdc = GetDC(handle);
}

BOOL EndPaint(HWND window, const PAINTSTRUCT *paint) {
  ReleaseDC(window, paint->hdc);
  return TRUE;
}

HGDIOBJ SelectObject(HDC handle, HGDIOBJ object) {
  const auto context = System().contexts.Find(handle);
  const auto selected = System().objects.Find(object);
  if (!context || !selected)
    return nullptr;
  Selection &place = selected->isFont ? context->font : context->brush;
  return std::exchange(place, {object, selected}).handle;
}

COLORREF SetTextColor(HDC context, COLORREF colour) { return Change(context, &Context::textColour, colour, NoColour); }
int SetBkMode(HDC context, int mode) {
  return mode == TRANSPARENT || mode == OPAQUE ? Change(context, &Context::backMode, mode, 0) : 0;
}

// ---- Fonts and brushes ----

HBRUSH CreateSolidBrush(COLORREF colour) { return static_cast<HBRUSH>(System().Make({false, 0, colour}).handle); }

HFONT CreateFontA(int height, int, int, int, int, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD,
                  const char *) {
  const int pixels = height != 0 ? std::abs(std::clamp(height, -0x7FFF, 0x7FFF)) : DefaultFontHeight;
  return static_cast<HFONT>(System().Make({true, pixels, 0}).handle);
}

BOOL DeleteObject(HGDIOBJ object) { return System().IsSystems(object) || System().objects.Remove(object) != nullptr; }

BOOL GetTextMetricsA(HDC handle, TEXTMETRICA *metrics) {
  const auto context = System().contexts.Find(handle);
  if (!context)
    return FALSE;
  *metrics = {context->font.object->height, 0};
  return TRUE;
}

DWORD GetSysColor(int index) {
  const struct {
    int index;
    COLORREF colour;
  } colours[] = {
      {COLOR_WINDOW, White}, {COLOR_WINDOWTEXT, Black}, {COLOR_HIGHLIGHT, 0x6A240A}, {COLOR_HIGHLIGHTTEXT, White}};
  for (const auto &known : colours)
    if (known.index == index)
      return known.colour;
  return Black;
}

// ---- Drawing ----

BOOL PatBlt(HDC context, int x, int y, int width, int height, DWORD operation) {
  return operation == PATCOPY &&
         machine::Draw(context, {.kind = Drawn::Kind::Fill, .place = {x, y, x + width, y + height}});
}

int DrawTextA(HDC handle, const char *text, int length, RECT *rect, UINT format) {
  const auto context = System().contexts.Find(handle);
  if (!context || text == nullptr)
    return 0;
  const std::string drawn = length < 0 ? std::string(text) : std::string(text, static_cast<size_t>(length));
  machine::Draw(handle, {.kind = Drawn::Kind::Text, .place = *rect, .text = drawn, .style = format});
  return TextHeight(*context, drawn, *rect, format);
}

BOOL DrawFocusRect(HDC context, const RECT *rect) {
  return machine::Draw(context, {.kind = Drawn::Kind::FocusFrame, .place = *rect});
}
