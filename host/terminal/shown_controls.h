// What a user sees of a window and its controls, by the platform's calls alone. Texts are UTF-8.
#pragma once

#include "win32/win32_ui.h"

#include <string>
#include <vector>

namespace terminal {

enum class Kind {
  Text,
  Field,        // a line to type in
  Document,     // several lines, to be read
  List,         // a drop-down list
  EditableList, // the same with a line to type in
  Check,
  Button,
};

struct Control {
  HWND window = nullptr;
  Kind kind = Kind::Text;
  RECT place = {}; // from the corner of the top window, in pixels
  std::string text;
  char mnemonic = '\0'; // a small letter or a digit
  bool enabled = false;
  bool focused = false;
};

// The controls that are visible in a window and the dialogs within it, in their tab order. Pictures and empty texts
// aren't among them.
std::vector<Control> ControlsIn(HWND top);

// The control that has the focus, the whole combo box for its edit part.
HWND FocusedControl();

// The edit control to type in, null if there is none: a field itself, or the one within a list.
HWND EditOf(const Control &control);

// Places in the text of an edit control, in bytes of the code page.
struct Selection {
  size_t begin = 0;
  size_t end = 0;
};
Selection SelectionIn(HWND edit);

// What stands in an edit control, parted by its selection, at whose end the caret is.
struct Typed {
  std::string before;
  std::string selected;
  std::string behind;
};
Typed TypedIn(HWND edit);

bool IsListOpen(const Control &control);
int SelectedItem(HWND list);

// Null if no enabled button of the window has the id.
HWND EnabledButton(HWND top, int id);

// The button that Enter presses: the focused one, or the window's default one.
HWND DefaultButton(HWND top);

} // namespace terminal
