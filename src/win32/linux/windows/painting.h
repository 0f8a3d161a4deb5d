// Which windows are to be painted.
#pragma once

#include "win32/linux/windows/window_tree.h"

namespace machine {

// The window and all that is in it are to be painted.
void Invalidate(const WindowPtr &window);

// Has the first visible window of this thread that is invalid painted; false if there is none.
bool PaintNext();

} // namespace machine
