// Without a user no window comes up. And how boxes are closed, for which Wine has an answer that Windows hasn't.
#include "acctkit/acctkit.h"

#include "support/client_machine.h"
#include "support/user.h"

namespace {

using NoUserTest = ClientTest;

TEST_F(NoUserTest, NothingComesUp) {
  InstallOutlookExpress("5,50,1");
  EXPECT_EQ(KERMWizard(), 0); // which has its result from the sheet
  EXPECT_EQ(MessageBoxA(nullptr, "text", "title", MB_OK), 0);
  EXPECT_FALSE(WinHelpA(nullptr, "C:\\help.hlp", HELP_CONTEXT, 5));
}

TEST(ClosedBoxTest, IsAgreedToOrCancelledOrStays) {
  const std::pair<UINT, int> boxes[] = {
      {MB_OK, IDOK}, {MB_OKCANCEL, IDCANCEL}, {MB_YESNOCANCEL, IDCANCEL}, {MB_YESNO, IDNO}};
  for (const auto &[type, result] : boxes) {
    UserSteps steps = {[](HWND top) { PostMessageA(top, WM_CLOSE, 0, 0); }};
    if (result == IDNO) // it has to be answered
      steps.emplace_back([](HWND top) { SendMessageA(top, WM_COMMAND, IDNO, 0); });
    WithUser(steps, [&] { EXPECT_EQ(MessageBoxA(nullptr, "text", "title", type), result) << type; });
  }
}

} // namespace
