// What a key does to a window, by the messages that the platform's own dialogs would get of it.
#pragma once

#include "terminal/screen.h"

#include <string>

namespace terminal {

// Does to the window what the key does. A line for the user if the key was refused, else an empty text.
std::wstring Press(HWND top, const Key &key, Scrolling &scrolling);

} // namespace terminal
