// What is drawn, for a suite to see. The drawing calls here take the place of the layer's own, which lead nowhere.
#pragma once

#include "win32/win32_ui.h"

#include <cstddef>
#include <string>
#include <vector>

struct Drawn {
  enum class Kind { Fill, Text, FocusFrame, Image };

  Kind kind;
  HWND window;
  COLORREF colour; // of a fill or a text
  int backMode;
  UINT style = 0; // DT_* of a text, ILD_* of an image
  std::string text = {};
};

// By this process, in its order.
extern std::vector<Drawn> drawn;

// How many fonts, brushes, device contexts and icons of this process wait to be deleted, released or destroyed.
size_t LiveDrawingHandles();
