// Reads keys from the terminal.
#pragma once

#include "terminal/key.h"

#include <map>
#include <string>

namespace terminal {

class KeyReader {
public:
  // Its `waker` can be read from when there is something other than a key to heed.
  explicit KeyReader(int itsWaker);

  // The terminal's own sequence for a key, in addition to those that most terminals have.
  void Learn(const char *sequence, KeyCode code);

  // Waits for a key, or for the waker, which reads as Redraw.
  Key Read();

private:
  Key Decode(int byte);
  Key DecodeSequence();
  Key DecodeCharacter(int firstByte);

  int waker;
  int unread = -1;                          // a byte that came right behind Escape
  std::map<std::string, KeyCode> sequences; // without their Escape
};

} // namespace terminal
