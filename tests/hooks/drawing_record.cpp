#include "hooks/drawing_record.h"

#include "win32/linux/windows/drawing.h"

std::vector<Drawn> drawn;

namespace machine {

struct HandleTableHooks {
  template <typename Table> static size_t Size(const Table &table) { return table.things.size(); }
};

} // namespace machine

namespace {

machine::DeviceContext &Context(HDC handle) { return *machine::Handles().contexts.Find(handle); }

BOOL Record(HDC context, const std::string &words) {
  drawn.push_back({Context(context).window, words});
  return TRUE;
}

} // namespace

size_t LiveDrawingHandles() {
  const machine::DrawingHandles &handles = machine::Handles();
  using Hooks = machine::HandleTableHooks;
  return Hooks::Size(handles.objects) + Hooks::Size(handles.contexts) + Hooks::Size(handles.icons);
}

BOOL PatBlt(HDC context, int, int, int, int, DWORD) {
  return Record(context,
                Context(context).brush.object->colour == GetSysColor(COLOR_HIGHLIGHT) ? "highlight" : "window");
}

int DrawTextA(HDC context, const char *text, int length, RECT *, UINT format) {
  const bool highlighted = Context(context).textColour == GetSysColor(COLOR_HIGHLIGHTTEXT);
  const bool rightly = Context(context).backMode == TRANSPARENT && format == (DT_VCENTER | DT_SINGLELINE);
  return Record(context, std::string(text, static_cast<size_t>(length)) + (highlighted ? " highlighted" : "") +
                             (rightly ? "" : " wrongly"));
}

BOOL DrawFocusRect(HDC context, const RECT *) { return Record(context, "frame"); }

BOOL ImageList_Draw(HIMAGELIST, int, HDC context, int, int, UINT style) {
  return Record(context, (style & ILD_SELECTED) != 0 ? "image selected" : "image");
}
