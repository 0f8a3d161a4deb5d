// What a key does to a window, by the messages that the platform's own dialogs would get of it.
#pragma once

#include "terminal/layout.h"

#include <string>

namespace terminal {

enum class KeyCode {
  None,
  Character,
  Mnemonic, // a character with Alt
  Enter,
  Escape,
  Tab,
  BackTab,
  Backspace,
  Delete,
  EraseAll,
  Left,
  Right,
  Up,
  Down,
  Home,
  End,
  PageUp,
  PageDown,
  Help,
  ToggleList,
  Redraw, // the screen is to be drawn anew, as after a change of its size
  Quit,   // the user leaves, or the terminal has gone
};

struct Key {
  KeyCode code = KeyCode::None;
  std::string text; // the character, in UTF-8
};

// Does to the window what the key does. A line for the user if the key was refused, else an empty text.
std::string Press(HWND top, const Key &key, Scrolling &scrolling);

} // namespace terminal
