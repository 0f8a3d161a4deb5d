// The classes that windows are made of.
#pragma once

#include "win32/win32_ui.h"

namespace machine {

struct WindowClass {
  const char *name;
  WNDPROC procedure;
};

// Without regard to case; null for a name that no class has.
const WindowClass *FindClass(const char *name);

} // namespace machine
