// The modal loop: it dispatches the posted messages, has windows painted and, when it is idle, waits for the user.
#pragma once

#include "win32/linux/public/front_end.h"

#include <functional>

namespace machine {

// Null if the process has none.
FrontEnd *CurrentFrontEnd();

// Runs until `done` says so or the top-level window is gone. False if there is no user (any more).
bool RunModalLoop(HWND top, const std::function<bool()> &done);

// Shows a dialog, whose owner is disabled meanwhile, runs the loop for it, and destroys it.
bool RunModalDialog(HWND dialog, const std::function<bool()> &done);

} // namespace machine
