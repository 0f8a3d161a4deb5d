// A window's controls as its user meets them: one record of each serves scripts, their transcript and the terminal.
// They are read, and keys sent to them, by the platform's calls alone. Texts are UTF-8.
#pragma once

#include "win32/win32_ui.h"

#include <cstddef>
#include <string>
#include <vector>

enum class ControlKind {
  Label,
  Icon,
  Field,        // a line to type in
  Document,     // several lines, or a text that can only be read
  List,         // a drop-down list
  EditableList, // the same with a line to type in
  CheckBox,     // any button that has a mark
  Button,
  Other,
};

struct Control {
  HWND window = nullptr;
  HWND edit = nullptr; // the edit control to type in, the control itself or a part of it; null if there is none
  int id = 0;
  ControlKind kind = ControlKind::Other;
  std::string className; // in small letters
  RECT bounds = {};      // on the screen, in pixels
  std::string text;      // with the marks of its mnemonic
  std::string label;     // without them
  char mnemonic = '\0';  // a small letter or a digit
  HICON icon = nullptr;
  std::vector<std::string> items; // of a list
  int selected = -1;              // of its items
  bool visible = false;
  bool enabled = false;
  bool focused = false; // itself or a part of it
  bool checked = false;
  bool listIsOpen = false;

  bool IsEdit() const { return kind == ControlKind::Field || kind == ControlKind::Document; }
  bool IsList() const { return kind == ControlKind::List || kind == ControlKind::EditableList; }
  bool IsButton() const { return kind == ControlKind::Button || kind == ControlKind::CheckBox; }
  // Whether a user could press or fill it.
  bool IsUsable() const { return visible && enabled; }
};

Control ReadControl(HWND window);

// The controls of a window and of the dialogs within it, hidden ones too, in the order in which Tab goes through them.
std::vector<Control> ControlsIn(HWND window);

// Whether there is such a control, and a user could press it.
bool IsUsable(HWND control);

// A window's text, and that of an edit control in the system's code page.
std::string ReadText(HWND window);
std::string ReadRawText(HWND edit);

// What is selected in an edit control, in bytes of the code page.
struct Selection {
  size_t begin = 0;
  size_t end = 0; // where the caret is
};
Selection SelectionIn(HWND edit);

// Posts a key to what has the focus, or to the window if nothing has: its modal loop finds out whose key it is.
void PostKey(HWND top, int key);
