// What is drawn goes nowhere, since nobody sees these windows: the calls only answer.
#include "win32/linux/windows/drawing.h"

namespace {

bool IsContext(HDC context) { return machine::Handles().contexts.Find(context) != nullptr; }

} // namespace

BOOL PatBlt(HDC context, int, int, int, int, DWORD) { return IsContext(context); }

int DrawTextA(HDC handle, const char *, int, RECT *, UINT) {
  const auto context = machine::Handles().contexts.Find(handle);
  return context ? context->font.object->height : 0;
}

BOOL DrawFocusRect(HDC context, const RECT *) { return IsContext(context); }

BOOL ImageList_Draw(HIMAGELIST, int, HDC context, int, int, UINT) { return IsContext(context); }
