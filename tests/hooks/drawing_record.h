// What is drawn, for a suite to see. The drawing calls here take the place of the layer's own, which lead nowhere.
#pragma once

#include "win32/win32_ui.h"

#include <cstddef>
#include <string>
#include <vector>

// An operation in a few words, of which "wrongly" says that something is set otherwise than for an entry of a list.
struct Drawn {
  HWND window;
  std::string words;
};
// By this process, in its order.
extern std::vector<Drawn> drawn;

// How many fonts, brushes, device contexts and icons of this process wait to be deleted, released or destroyed.
size_t LiveDrawingHandles();
