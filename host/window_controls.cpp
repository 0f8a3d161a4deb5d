#include "window_controls.h"

#include "utf8.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace {

DWORD StyleOf(HWND window, DWORD mask) { return static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE)) & mask; }

bool HasStyle(HWND window, DWORD bits) { return StyleOf(window, bits) == bits; }

std::string ClassOf(HWND window) {
  char name[64] = "";
  GetClassNameA(window, name, sizeof name);
  std::string lower = name;
  std::ranges::transform(lower, lower.begin(), [](unsigned char letter) { return std::tolower(letter); });
  return lower;
}

ControlKind KindOf(HWND window, const std::string &className) {
  if (className == "static") {
    const DWORD type = StyleOf(window, SS_TYPEMASK);
    return type == SS_ICON ? ControlKind::Icon : type == SS_BITMAP ? ControlKind::Other : ControlKind::Label;
  }
  if (className == "edit")
    return StyleOf(window, ES_MULTILINE | ES_READONLY) != 0 ? ControlKind::Document : ControlKind::Field;
  if (className == "combobox")
    return HasStyle(window, CBS_DROPDOWNLIST) ? ControlKind::List : ControlKind::EditableList;
  if (className == "button")
    return StyleOf(window, BS_TYPEMASK) > BS_DEFPUSHBUTTON ? ControlKind::CheckBox : ControlKind::Button;
  return ControlKind::Other;
}

HWND EditOf(const Control &control) {
  HWND edit = nullptr;
  if (control.IsEdit())
    edit = control.window;
  else if (control.kind == ControlKind::EditableList)
    edit = GetWindow(control.window, GW_CHILD);
  return edit == nullptr || HasStyle(edit, ES_READONLY) ? nullptr : edit;
}

void ReadList(Control &list) {
  const HWND window = list.window;
  const LRESULT count = SendMessageA(window, CB_GETCOUNT, 0, 0);
  for (WPARAM index = 0; static_cast<LRESULT>(index) < count; ++index) {
    std::string item(static_cast<size_t>(SendMessageA(window, CB_GETLBTEXTLEN, index, 0)) + 1, '\0');
    item.resize(static_cast<size_t>(SendMessageA(window, CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(item.data()))));
    list.items.push_back(ToUtf8(item));
  }
  list.selected = static_cast<int>(SendMessageA(window, CB_GETCURSEL, 0, 0));
  list.listIsOpen = SendMessageA(window, CB_GETDROPPEDSTATE, 0, 0) != FALSE;
}

// An ampersand marks the letter behind it; two of them stand for one that is shown.
void ReadLabel(Control &control) {
  const std::string &text = control.text;
  if (!control.IsButton() && (control.kind != ControlKind::Label || HasStyle(control.window, SS_NOPREFIX))) {
    control.label = text;
    return;
  }
  for (size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '&' && ++at < text.size() && text[at] != '&')
      control.mnemonic = static_cast<char>(std::tolower(static_cast<unsigned char>(text[at])));
    if (at < text.size())
      control.label += text[at];
  }
}

} // namespace

Control ReadControl(HWND window) {
  Control control;
  control.window = window;
  control.id = GetDlgCtrlID(window);
  control.className = ClassOf(window);
  control.kind = KindOf(window, control.className);
  control.edit = EditOf(control);
  GetWindowRect(window, &control.bounds);
  control.text = ReadText(window);
  ReadLabel(control);
  control.visible = IsWindowVisible(window) != FALSE;
  control.enabled = IsWindowEnabled(window) != FALSE;
  control.focused = GetFocus() == window || (control.edit != nullptr && GetFocus() == control.edit);
  if (control.kind == ControlKind::Icon)
    control.icon = reinterpret_cast<HICON>(SendMessageA(window, STM_GETICON, 0, 0));
  if (control.kind == ControlKind::CheckBox)
    control.checked = SendMessageA(window, BM_GETCHECK, 0, 0) == static_cast<LRESULT>(BST_CHECKED);
  if (control.IsList())
    ReadList(control);
  return control;
}

std::vector<Control> ControlsIn(HWND window) {
  std::vector<Control> controls;
  for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
    if (ClassOf(child) == "#32770")
      std::ranges::move(ControlsIn(child), std::back_inserter(controls));
    else
      controls.push_back(ReadControl(child));
  return controls;
}

bool IsUsable(HWND control) { return control != nullptr && IsWindowVisible(control) && IsWindowEnabled(control); }

std::string ReadText(HWND window) { return ToUtf8(ReadRawText(window)); }

std::string ReadRawText(HWND edit) {
  std::string text(static_cast<size_t>(GetWindowTextLengthA(edit)) + 1, '\0');
  text.resize(static_cast<size_t>(GetWindowTextA(edit, text.data(), static_cast<int>(text.size()))));
  return text;
}

Selection SelectionIn(HWND edit) {
  DWORD begin = 0;
  DWORD end = 0;
  SendMessageA(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&begin), reinterpret_cast<LPARAM>(&end));
  return {begin, end};
}

void PostKey(HWND top, int key) {
  const HWND focus = GetFocus();
  PostMessageA(focus != nullptr ? focus : top, WM_KEYDOWN, static_cast<WPARAM>(key), 0);
}
