#include "hooks/drawing_record.h"

#include "win32/linux/windows/drawing.h"

using Kind = Drawn::Kind;

std::vector<Drawn> drawn;

namespace {

BOOL Record(HDC handle, Kind kind, UINT style = 0, const std::string &text = "") {
  const auto context = machine::Handles().contexts.Find(handle);
  if (!context)
    return FALSE;
  const COLORREF colour = kind == Kind::Fill ? context->brush.object->colour : context->textColour;
  drawn.push_back({kind, context->window, colour, context->backMode, style, text});
  return TRUE;
}

} // namespace

size_t LiveDrawingHandles() {
  const machine::DrawingHandles &handles = machine::Handles();
  return handles.objects.Size() + handles.contexts.Size() + handles.icons.Size();
}

BOOL PatBlt(HDC context, int, int, int, int, DWORD) { return Record(context, Kind::Fill); }

int DrawTextA(HDC context, const char *text, int length, RECT *, UINT format) {
  return Record(context, Kind::Text, format, std::string(text, static_cast<size_t>(length)));
}

BOOL DrawFocusRect(HDC context, const RECT *) { return Record(context, Kind::FocusFrame); }

BOOL ImageList_Draw(HIMAGELIST, int, HDC context, int, int, UINT style) { return Record(context, Kind::Image, style); }
