#include "win32/linux/windows/modal_loop.h"

#include "win32/linux/machine/running_transaction.h"
#include "win32/linux/windows/dialogs.h"
#include "win32/linux/windows/painting.h"

#include <atomic>

namespace machine {

namespace {

std::atomic<FrontEnd *> frontEnd;

bool HandOutMessage(HWND top) {
  auto &posted = ThisThread().posted;
  if (posted.empty())
    return false;
  const PostedMessage message = posted.front();
  posted.pop_front();
  if (!PressDialogKey(top, message))
    SendMessageA(message.window, message.message, message.wParam, message.lParam);
  return true;
}

} // namespace

FrontEnd *SetFrontEnd(FrontEnd *with) { return frontEnd.exchange(with); }

FrontEnd *CurrentFrontEnd() { return frontEnd; }

bool RunModalLoop(HWND top, const std::function<bool()> &done) {
  const auto over = [&] { return done() || IsWindow(top) == FALSE; };
  while (!over()) {
    if (HandOutMessage(top) || PaintNext())
      continue;
    FrontEnd *const user = CurrentFrontEnd();
    const TransactionPause pause; // other processes don't wait for the user
    if (user == nullptr || !user->WaitForUser(top))
      return over();
  }
  return true;
}

bool RunModalDialog(HWND dialog, const std::function<bool()> &done) {
  const HWND owner = GetWindow(dialog, GW_OWNER);
  const bool disabled = owner != nullptr && EnableWindow(owner, FALSE) == FALSE;
  ShowWindow(dialog, SW_SHOW);
  const bool over = RunModalLoop(dialog, done);
  if (disabled)
    EnableWindow(owner, TRUE); // first, so that it can become the active window
  DestroyWindow(dialog);
  return over;
}

} // namespace machine
