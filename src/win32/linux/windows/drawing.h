// What is drawn, for those who want to see it without a screen: the host program and the tests.
#pragma once

#include "win32/win32_ui.h"

#include <cstddef>
#include <string>
#include <vector>

namespace machine {

struct Drawn {
  enum class Kind { Fill, Text, FocusFrame, Image };

  Kind kind;
  RECT place;
  COLORREF colour = 0; // of a fill or a text
  std::string text = {};
  int image = 0;  // index in the system image list
  UINT style = 0; // DT_* of a text, ILD_* of an image
  int backMode = 0;
  HWND window = nullptr;
};

// Keeps what this thread draws as long as it lives, or until another takes its place for a while.
class DrawingRecord {
public:
  DrawingRecord();
  ~DrawingRecord();
  DrawingRecord(const DrawingRecord &) = delete;
  DrawingRecord &operator=(const DrawingRecord &) = delete;

  std::vector<Drawn> operations;

private:
  DrawingRecord *outer;
};

// How many fonts, brushes and device contexts of this process wait to be deleted or released.
size_t LiveDrawingObjects();

// Draws on a context; false if it is none.
bool Draw(HDC context, Drawn operation);

} // namespace machine
