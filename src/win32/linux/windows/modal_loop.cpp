#include "win32/linux/windows/modal_loop.h"

bool machine::RunModalDialog(HWND dialog, const std::function<bool()> &done) {
  const HWND owner = GetWindow(dialog, GW_OWNER);
  const bool disabled = owner != nullptr && EnableWindow(owner, FALSE) == FALSE;
  ShowWindow(dialog, SW_SHOW);
  const bool over = RunModalLoop(dialog, done);
  if (disabled)
    EnableWindow(owner, TRUE); // first, so that it can become the active window
  DestroyWindow(dialog);
  return over;
}
