// Lays out a window for a terminal: its controls become texts in rows and columns, about where they stand in the
// window.
#pragma once

#include "win32/win32_ui.h"

#include <string>
#include <vector>

namespace terminal {

enum class Look {
  Backdrop,
  Shadow,
  Title,
  Plain,
  Disabled,
  Field,
  FocusedField,
  Selected, // in a field or a list
  DefaultButton,
  Focused,
};

struct Size {
  int columns = 0;
  int rows = 0;
};
struct Position {
  int column = 0;
  int row = 0;
};
// A text in one look.
struct TextRun {
  Position position; // from the corner of its pane
  std::wstring text;
  Look look = Look::Plain;
};

// A part of the screen, in a frame.
struct Pane {
  Position corner; // within the frame
  Size size;
  std::wstring title;
  std::vector<TextRun> texts;
  Position cursor;
};

// The text of a window that has more lines than are shown.
struct Scrolling {
  HWND window = nullptr;
  int first = 0;
  int shown = 0;
  int lines = 0;
};

struct Layout {
  std::vector<Pane> panes; // an open list lies over its window
  Scrolling scrolling;
};

// The smallest screen that a wizard can be worked in.
constexpr Size SmallestScreen = {60, 18};

// Lays out a window on a screen, which keeps its last row for hints. `scrolling` tells how the text was scrolled
// before.
Layout LayOut(HWND top, Size screen, const Scrolling &scrolling);

} // namespace terminal
