// When the library was built, which a first page shows to those who know how to ask for it.
#pragma once

#include "mfc/afxwin.h"

#include <functional>

// What a double click does on a first page: with Shift pressed it shows when the library was built, with Backspace more
// of it. The default handling comes in between.
void HandleDoubleClick(const CWnd &page, const std::function<void()> &handleByDefault);
