// The terminal's screen and keyboard.
#pragma once

#include "terminal/guard.h"
#include "terminal/key_reader.h"
#include "terminal/layout.h"

#include <memory>
#include <string>
#include <vector>

namespace terminal {

// A line that tells why this terminal can't show a screen, or an empty text.
std::string Problem();

class Screen {
public:
  Screen();
  Screen(const Screen &) = delete;
  Screen &operator=(const Screen &) = delete;
  ~Screen();

  Size Dimensions() const;

  // Shows the panes, the last one in front, above a line of hints.
  void Show(const std::vector<Pane> &panes, const std::string &hints);
  Key ReadKey();

private:
  struct Forms;
  void Clear();

  std::unique_ptr<Forms> forms;
  std::unique_ptr<Guard> guard;
  std::unique_ptr<KeyReader> reader;
};

} // namespace terminal
