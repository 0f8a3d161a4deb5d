// A user who works the windows in the terminal, full screen.
#pragma once

#include "terminal/screen.h"

#include "platform.h"

#include <functional>
#include <string>

namespace terminal {

class User : public platform::User {
public:
  bool Act(HWND top) noexcept override;
  bool SeeHelp(const char *file, ULONG_PTR topic) noexcept override;

  bool HasLeft() const { return left; }

private:
  void Draw(HWND top);

  Screen screen;
  Scrolling scrolling;
  std::wstring notice; // about the last key
  bool left = false;
};

// Runs what opens windows, which are shown in this program's terminal. False if the user has left before its end. A
// signal that meanwhile asked the program to end ends it here, when the terminal is again as it was.
bool Run(const std::function<void()> &run);

} // namespace terminal
