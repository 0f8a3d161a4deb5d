// The build stamp, a hidden text on a first page.
#pragma once

#include "mfc/afxwin.h"

#include <functional>

// Handles a double click on a first page: with Shift pressed it shows the build stamp, with Backspace pressed too the
// longer one. It also calls the default handling, in every case.
void HandleDoubleClick(const CWnd &page, const std::function<void()> &handleByDefault);
