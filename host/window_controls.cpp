#include "window_controls.h"

#include "utf8.h"

#include <algorithm>
#include <cctype>

DWORD StyleOf(HWND window) { return static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE)); }

std::string ClassOf(HWND window) {
  char name[64] = "";
  GetClassNameA(window, name, sizeof name);
  std::string lower = name;
  std::ranges::transform(lower, lower.begin(), [](unsigned char letter) { return std::tolower(letter); });
  return lower;
}

bool IsClass(HWND window, const char *className) { return ClassOf(window) == className; }

bool IsUsable(HWND control) { return control != nullptr && IsWindowVisible(control) && IsWindowEnabled(control); }

std::vector<HWND> ChildrenOf(HWND window) {
  std::vector<HWND> children;
  for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
    children.push_back(child);
  return children;
}

std::string ReadRawText(HWND window) {
  std::string text(static_cast<size_t>(GetWindowTextLengthA(window)) + 1, '\0');
  text.resize(static_cast<size_t>(GetWindowTextA(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

std::string ReadText(HWND window) { return ToUtf8(ReadRawText(window)); }

std::vector<std::string> ReadItems(HWND comboBox) {
  std::vector<std::string> items;
  const LRESULT count = SendMessageA(comboBox, CB_GETCOUNT, 0, 0);
  for (WPARAM index = 0; static_cast<LRESULT>(index) < count; ++index) {
    std::string item(static_cast<size_t>(SendMessageA(comboBox, CB_GETLBTEXTLEN, index, 0)) + 1, '\0');
    item.resize(
        static_cast<size_t>(SendMessageA(comboBox, CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(item.data()))));
    items.push_back(ToUtf8(item));
  }
  return items;
}

bool IsCheckBox(HWND control) {
  return IsClass(control, "button") && (StyleOf(control) & BS_TYPEMASK) > BS_DEFPUSHBUTTON;
}

bool IsChecked(HWND button) { return SendMessageA(button, BM_GETCHECK, 0, 0) == static_cast<LRESULT>(BST_CHECKED); }

bool IsReadOnly(HWND edit) { return (StyleOf(edit) & ES_READONLY) != 0; }

void PostKey(HWND top, int key) {
  const HWND focus = GetFocus();
  PostMessageA(focus != nullptr ? focus : top, WM_KEYDOWN, static_cast<WPARAM>(key), 0);
}
