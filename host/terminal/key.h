// The keys of a terminal as far as windows are worked with them.
#pragma once

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
  Suspend,
  Redraw, // the screen is to be drawn anew, as after a change of its size
  Quit,   // the user leaves, or the terminal has gone
};

struct Key {
  KeyCode code = KeyCode::None;
  std::string text; // the character, in UTF-8
};

} // namespace terminal
