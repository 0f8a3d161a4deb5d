// What shows the windows to a user and acts for that user: the layer itself has no screen and no keyboard. AcctKit
// never includes this; the host program and the tests do.
//
// A modal loop (of a message box, of a property sheet) dispatches posted messages, has windows painted, and calls
// WaitForUser when it is idle. That acts as a user would, by messages to the windows.
#pragma once

#include "win32/win32_ui.h"

namespace machine {

class FrontEnd {
public:
  virtual ~FrontEnd() = default;

  // Waits for the user, who sees this top-level window, and does to the windows what the user does. Called on the
  // thread of the modal loop; further modal loops may run within. False if there is no user any more: the
  // dialog then counts as never shown.
  virtual bool WaitForUser(HWND top) = 0;

  // Shows a help file (a path on the machine, code page 932) at a topic. False if it can't.
  virtual bool ShowHelp(const char *file, ULONG_PTR topic) = 0;
};

// Sets the front end of this process, null for none, and returns the one before. Without one, every modal loop fails at
// once. The front end has to live until another is set. On any thread.
FrontEnd *SetFrontEnd(FrontEnd *frontEnd);

// The user presses a key and lets it go again, as GetAsyncKeyState sees it.
void PressKey(int key);

} // namespace machine
