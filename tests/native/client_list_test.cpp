// The list of clients on a wizard's page, as it is drawn, and what is left of a wizard's icons, fonts and brushes.
#include "acctkit/acctkit.h"

#include "resources/resource.h"
#include "support/client_machine.h"
#include "support/user.h"
#include "win32/linux/drawing.h"
#include "win32/linux/icons.h"

#include <gtest/gtest.h>

namespace {

using Kind = machine::Drawn::Kind;

// One line an operation, of what is drawn from the left edge and the top of an entry.
std::string Line(const machine::Drawn &drawn, const RECT &entry) {
  const std::string left = std::to_string(drawn.place.left - entry.left);
  switch (drawn.kind) {
  case Kind::Fill:
    return "fill " + left + (drawn.colour == GetSysColor(COLOR_HIGHLIGHT) ? " highlight" : " window");
  case Kind::Text:
    return "text " + left + " " + drawn.text +
           (drawn.colour == GetSysColor(COLOR_HIGHLIGHTTEXT) ? " highlighted" : "") +
           (drawn.backMode == TRANSPARENT && drawn.style == (DT_VCENTER | DT_SINGLELINE) ? "" : " wrongly");
  case Kind::FocusFrame:
    return "frame " + left;
  case Kind::Image:
    return "image " + left + ((drawn.style & ILD_SELECTED) != 0 ? " selected" : "");
  }
  return "?";
}

TEST_F(ClientTest, AWizardDrawsItsClientsAndLeavesNothing) {
  InstallOutlookExpress("5,50,4522,1200");
  InstallCommunicator();
  const size_t icons = machine::LiveIcons();
  const size_t objects = machine::LiveDrawingObjects();
  std::vector<std::string> lines;
  const auto press = [](int button) {
    return [button](HWND sheet) { PostMessageA(sheet, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0); };
  };
  WithUser({press(PSBTN_NEXT),
            [&](HWND sheet) {
              const auto page = reinterpret_cast<HWND>(SendMessageA(sheet, PSM_GETCURRENTPAGEHWND, 0, 0));
              const HWND list = GetDlgItem(page, IDC_CHOICE);
              EXPECT_GE(SendMessageA(list, CB_GETITEMHEIGHT, 0, 0), 16) << "an entry that cuts its icon";
              SendMessageA(list, CB_SHOWDROPDOWN, TRUE, 0);
              const machine::DrawingRecord record;
              UpdateWindow(list);
              RECT entry = {};
              for (const machine::Drawn &drawn : record.operations) {
                if (drawn.window != list)
                  continue;
                if (drawn.kind == Kind::Fill && (lines.empty() || !lines.back().starts_with("image")))
                  entry = drawn.place; // the first thing of each entry
                lines.push_back(Line(drawn, entry));
              }
              SendMessageA(list, CB_SHOWDROPDOWN, FALSE, 0);
              PostMessageA(sheet, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
            }},
           [] { EXPECT_EQ(MailerWizard(0, "ABC01234", "ABC01234\0"), 1); });

  const std::vector<std::string> expected = {
      // what is always seen, then the entries, of which the first is selected
      "fill 0 window", "image 5",          "fill 26 window",    "text 31 OutlookExpress (Microsoft)",
      "fill 0 window", "image 5 selected", "fill 26 highlight", "text 31 OutlookExpress (Microsoft) highlighted",
      "fill 0 window", "image 5",          "fill 26 window",    "text 31 NetscapeCommunicator (Netscape)",
  };
  EXPECT_EQ(lines, expected);
  EXPECT_EQ(machine::LiveIcons(), icons);
  EXPECT_EQ(machine::LiveDrawingObjects(), objects);
}

} // namespace
