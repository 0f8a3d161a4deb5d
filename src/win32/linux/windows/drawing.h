// Device contexts, and what is selected into them or drawn by them. All of it is known by handles.
#pragma once

#include "win32/win32_ui.h"

#include "win32/linux/machine/handle_table.h"

#include <memory>

namespace machine {

constexpr int OPAQUE = 2; // the other background mode

struct DrawingObject {
  bool isFont;
  int height;      // of a font
  COLORREF colour; // of a brush
};

// An object that is deleted while it is selected stays until another takes its place.
struct Selection {
  HGDIOBJ handle;
  std::shared_ptr<DrawingObject> object;
};

struct DeviceContext {
  HWND window;
  Selection font;
  Selection brush;
  COLORREF textColour;
  int backMode;
};

struct Icon {};

struct DrawingHandles {
  HandleTable<HGDIOBJ, DrawingObject> objects{0x1000000};
  HandleTable<HDC, DeviceContext> contexts{0x2000000};
  HandleTable<HICON, Icon> icons{0x3000000}; // those that wait for DestroyIcon
};

// Those of this process.
DrawingHandles &Handles();

} // namespace machine
