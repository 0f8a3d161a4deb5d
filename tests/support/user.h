// Someone who sits in front of the windows while a test runs a modal loop (a sheet, a message box).
#pragma once

#include "win32/win32_ui.h"

#include <deque>
#include <functional>

// A step gets the window in front. One that opens a modal loop of its own goes on when the later steps have ended that.
using UserSteps = std::deque<std::function<void(HWND top)>>;

// Runs what blocks in a modal loop; each time the loop has nothing left to do the user takes the next step. A loop that
// is still open after the last step, and steps that were never reached, fail the test.
void WithUser(UserSteps steps, const std::function<void()> &run);

// Runs work on another thread to its end.
void OnAnotherThread(const std::function<void()> &work);
