// The list of clients on a wizard's page, as it is drawn, and what is left of a wizard's icons, fonts and brushes.
#include "acctkit/acctkit.h"

#include "hooks/drawing_record.h"
#include "resources/resource.h"
#include "support/client_machine.h"
#include "support/user.h"

#include <gtest/gtest.h>

namespace {

TEST_F(ClientTest, AWizardDrawsItsClientsAndLeavesNothing) {
  InstallOutlookExpress("5,50,4522,1200");
  InstallCommunicator();
  ReleaseDC(nullptr, GetDC(GetDesktopWindow())); // makes what every context has, and keeps
  const size_t handles = LiveDrawingHandles();
  std::vector<std::string> words;
  const auto press = [](int button) {
    return [button](HWND sheet) { PostMessageA(sheet, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0); };
  };
  HWND list = nullptr;
  WithUser({press(PSBTN_NEXT),
            [&](HWND sheet) {
              const auto page = reinterpret_cast<HWND>(SendMessageA(sheet, PSM_GETCURRENTPAGEHWND, 0, 0));
              list = GetDlgItem(page, IDC_CHOICE);
              EXPECT_GE(SendMessageA(list, CB_GETITEMHEIGHT, 0, 0), 16) << "an entry that cuts its icon";
              drawn.clear();
              SendMessageA(list, CB_SHOWDROPDOWN, TRUE, 0);
            },
            [&](HWND sheet) {
              for (const Drawn &operation : drawn)
                if (operation.window == list)
                  words.push_back(operation.words);
              SendMessageA(list, CB_SHOWDROPDOWN, FALSE, 0);
              SendMessageA(list, WM_KEYDOWN, VK_DOWN, 0); // the other icon takes the place of the first
              PostMessageA(sheet, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
            }},
           [] { EXPECT_EQ(MailerWizard(0, "ABC01234", "ABC01234\0"), 1); });

  const std::vector<std::string> expected = {
      // what is always seen, then the entries, of which the first is selected
      "window", "image",          "window",    "OutlookExpress (Microsoft)",
      "window", "image selected", "highlight", "OutlookExpress (Microsoft) highlighted",
      "window", "image",          "window",    "NetscapeCommunicator (Netscape)",
  };
  EXPECT_EQ(words, expected);
  EXPECT_EQ(LiveDrawingHandles(), handles);
}

} // namespace
