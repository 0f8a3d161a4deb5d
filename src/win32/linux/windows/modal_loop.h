// Dialogs that keep their owner waiting.
#pragma once

#include "win32/linux/windows/window_tree.h"

namespace machine {

// Shows a dialog, whose owner is disabled meanwhile, runs it until `done` says so, and destroys it. False if there is
// no user (any more).
bool RunModalDialog(HWND dialog, const std::function<bool()> &done);

} // namespace machine
