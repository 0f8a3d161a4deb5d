// What the host program and the tests can know of icons, which nobody draws.
#pragma once

#include "win32/win32_ui.h"

#include <cstddef>
#include <string>

namespace machine {

// The file on the machine (code page 932) that an icon was taken from; empty for a system icon and for no icon.
std::string IconFile(HICON icon);

// How many icons of this process wait for DestroyIcon.
size_t LiveIcons();

} // namespace machine
