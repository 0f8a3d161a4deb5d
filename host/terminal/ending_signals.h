// What the signals do that end a program, while the screen is set up.
#pragma once

namespace terminal {

// A signal that asks the program to end is kept until it is looked for; where that isn't heeded, the next one ends it.
// The others end the program at once. The terminal is then as it was. What whoever started the program has told it to
// ignore, it goes on ignoring.
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
