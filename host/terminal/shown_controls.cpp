#include "terminal/shown_controls.h"

#include "utf8.h"
#include "window_controls.h"

#include <algorithm>
#include <cctype>
#include <optional>

namespace terminal {

namespace {

bool HasText(HWND label) {
  const DWORD type = StyleOf(label) & SS_TYPEMASK;
  return type != SS_ICON && type != SS_BITMAP && GetWindowTextLengthA(label) > 0;
}

// Nothing for a window that shows nothing of its own.
std::optional<Kind> KindOf(HWND window) {
  const DWORD style = StyleOf(window);
  if (IsClass(window, "static") && HasText(window))
    return Kind::Text;
  if (IsClass(window, "edit"))
    return (style & ES_MULTILINE) != 0 ? Kind::Document : Kind::Field;
  if (IsClass(window, "combobox"))
    return (style & CBS_DROPDOWNLIST) == CBS_DROPDOWNLIST ? Kind::List : Kind::EditableList;
  if (IsClass(window, "button"))
    return IsCheckBox(window) ? Kind::Check : Kind::Button;
  return std::nullopt;
}

bool HasMnemonic(HWND window, Kind kind) {
  return kind == Kind::Check || kind == Kind::Button || (kind == Kind::Text && (StyleOf(window) & SS_NOPREFIX) == 0);
}

// Takes the marks of mnemonics out of a label; two of them stand for one that is shown.
void TakeMnemonic(Control &control) {
  std::string shown;
  for (size_t at = 0; at < control.text.size(); ++at) {
    if (control.text[at] == '&' && ++at < control.text.size() && control.text[at] != '&')
      control.mnemonic = static_cast<char>(std::tolower(static_cast<unsigned char>(control.text[at])));
    if (at < control.text.size())
      shown += control.text[at];
  }
  control.text = shown;
}

Control Describe(HWND top, HWND window, Kind kind) {
  Control control;
  control.window = window;
  control.kind = kind;
  control.text = ReadText(window);
  control.enabled = IsWindowEnabled(window) != FALSE;
  control.focused = FocusedControl() == window;
  RECT corner{};
  GetWindowRect(top, &corner);
  GetWindowRect(window, &control.place);
  control.place.left -= corner.left;
  control.place.right -= corner.left;
  control.place.top -= corner.top;
  control.place.bottom -= corner.top;
  if (HasMnemonic(window, kind))
    TakeMnemonic(control);
  return control;
}

void Collect(HWND top, HWND parent, std::vector<Control> &controls) {
  for (const HWND child : ChildrenOf(parent)) {
    if (IsWindowVisible(child) == FALSE)
      continue;
    if (const std::optional<Kind> kind = KindOf(child))
      controls.push_back(Describe(top, child, *kind));
    else if (IsClass(child, "#32770"))
      Collect(top, child, controls);
  }
}

} // namespace

std::vector<Control> ControlsIn(HWND top) {
  std::vector<Control> controls;
  Collect(top, top, controls);
  return controls;
}

HWND FocusedControl() {
  const HWND focus = GetFocus();
  const HWND parent = GetParent(focus);
  return IsClass(parent, "combobox") ? parent : focus;
}

HWND EditOf(const Control &control) {
  switch (control.kind) {
  case Kind::Field:
    return control.window;
  case Kind::EditableList:
    return GetWindow(control.window, GW_CHILD);
  default:
    return nullptr;
  }
}

Selection SelectionIn(HWND edit) {
  DWORD begin = 0;
  DWORD end = 0;
  SendMessageA(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&begin), reinterpret_cast<LPARAM>(&end));
  return {begin, end};
}

Typed TypedIn(HWND edit) {
  const std::string text = ReadRawText(edit);
  const Selection selection = SelectionIn(edit);
  const size_t end = std::min(selection.end, text.size());
  const size_t begin = std::min(selection.begin, end);
  return {ToUtf8(text.substr(0, begin)), ToUtf8(text.substr(begin, end - begin)), ToUtf8(text.substr(end))};
}

bool IsListOpen(const Control &control) {
  return (control.kind == Kind::List || control.kind == Kind::EditableList) &&
         SendMessageA(control.window, CB_GETDROPPEDSTATE, 0, 0) != FALSE;
}

int SelectedItem(HWND list) { return static_cast<int>(SendMessageA(list, CB_GETCURSEL, 0, 0)); }

HWND EnabledButton(HWND top, int id) {
  const HWND button = GetDlgItem(top, id);
  return IsUsable(button) ? button : nullptr;
}

HWND DefaultButton(HWND top) {
  const HWND focused = FocusedControl();
  if (focused != nullptr && KindOf(focused) == Kind::Button)
    return focused;
  const LRESULT answer = SendMessageA(top, DM_GETDEFID, 0, 0);
  return EnabledButton(top, LOWORD(static_cast<uintptr_t>(answer)));
}

} // namespace terminal
