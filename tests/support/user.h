// A user in front of the windows while a test runs a modal loop (a sheet, a message box).
#pragma once

#include "win32/win32_ui.h"

#include <deque>
#include <functional>

// A step gets the front window. A step that opens another modal loop goes on after later steps have ended that loop.
using UserSteps = std::deque<std::function<void(HWND top)>>;

// Runs code that blocks in a modal loop. Each time the loop has nothing left to do, the user takes the next step. The
// test fails if the loop is still open after the last step, or if steps are left over.
void WithUser(UserSteps steps, const std::function<void()> &run);

// Runs `work` on another thread, and returns when it has ended.
void OnAnotherThread(const std::function<void()> &work);
