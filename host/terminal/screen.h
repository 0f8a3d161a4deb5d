// The terminal's screen and keyboard, by curses.
#pragma once

#include "terminal/ending_signals.h"
#include "terminal/layout.h"

#include <memory>
#include <string>
#include <vector>

struct screen;

namespace terminal {

// A line that tells why this terminal can't show a screen, or an empty text.
std::string Fault();

struct Key {
  int code = 0; // curses' one (KEY_...), 0 for a character; KEY_EXIT if the user leaves or has gone
  wchar_t character = L'\0';
  bool alt = false;
};

class Screen {
public:
  // Where there is no Fault.
  Screen();
  Screen(const Screen &) = delete;
  Screen &operator=(const Screen &) = delete;
  ~Screen();

  Size Dimensions() const;

  // Shows the panes, the last one in front, above a line of hints.
  void Show(const std::vector<Pane> &panes, const std::wstring &hints);
  // Shows a text alone.
  void ShowText(const std::wstring &text);

  // Waits for a key. After one that has no meaning to the windows the screen is to be shown anew, whose size may have
  // changed.
  Key ReadKey();

private:
  struct Closer {
    void operator()(screen *opened) const;
  };
  EndingSignals signals; // curses leaves alone what is handled already
  std::unique_ptr<screen, Closer> opened;
};

} // namespace terminal
