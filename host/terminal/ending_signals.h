// The signals that end a program, handled while the screen is set up: the terminal is always restored first.
#pragma once

namespace terminal {

// The first signal that asks for an end is only recorded; a second one ends the program, and so does at once any other
// deadly signal. Signals that were ignored when the program started stay ignored.
class EndingSignals {
public:
  EndingSignals();
  EndingSignals(const EndingSignals &) = delete;
  EndingSignals &operator=(const EndingSignals &) = delete;
  ~EndingSignals();

  // The signal that has asked the program to end, 0 for none.
  static int Asked();
};

} // namespace terminal
