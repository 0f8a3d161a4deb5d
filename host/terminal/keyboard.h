// Keys of the terminal become the messages that a dialog gets for them.
#pragma once

#include "terminal/screen.h"

#include <string>

namespace terminal {

// Sends the window what the key means to it. A line for the user if the key was refused, else an empty text.
std::wstring Press(HWND top, const Key &key, Scrolling &scrolling);

} // namespace terminal
