// Keeps the terminal as it was found, for whatever ends the program, and hears what comes from outside meanwhile.
#pragma once

namespace terminal {

class Guard {
public:
  // To be made when the screen is set up: `restore` are the terminal's own control sequences that undo it.
  explicit Guard(const char *restore);
  Guard(const Guard &) = delete;
  Guard &operator=(const Guard &) = delete;
  ~Guard();

  // Can be read from when the size of the terminal has changed or a signal has asked the program to end.
  int Waker() const;
  void Rest(); // reads all of it

  // The signal that has asked the program to end, 0 for none. Where that isn't heeded, the same once more ends it.
  static int AskedToEnd();
};

// The modes of the terminal as they are now, to which a Guard goes back when the program ends by a signal.
void RememberModes();

} // namespace terminal
