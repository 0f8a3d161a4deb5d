// What the layer's windows do beyond Windows' own: drawing is recorded, what waits to be deleted is counted, and
// without a user no box comes up. And how boxes are closed, for which Wine has an answer that Windows hasn't.
#include "acctkit/acctkit.h"

#include "support/client_machine.h"
#include "support/user.h"
#include "win32/linux/drawing.h"
#include "win32/linux/icons.h"

#include <string>

namespace {

using machine::Drawn;

LRESULT PaintSomething(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_PAINT)
    return DefWindowProcA(window, message, wParam, lParam);
  PAINTSTRUCT paint;
  const HDC context = BeginPaint(window, &paint);
  const HBRUSH brush = CreateSolidBrush(0x112233);
  SelectObject(context, brush);
  DeleteObject(brush);
  PatBlt(context, 1, 2, 3, 4, PATCOPY); // a selected brush stays until it is replaced
  SetTextColor(context, 0x445566);
  SetBkMode(context, TRANSPARENT);
  DrawTextA(context, "text more", 4, &paint.rcPaint, DT_SINGLELINE);
  DrawFocusRect(context, &paint.rcPaint);
  EndPaint(window, &paint);
  return 0;
}

TEST(DrawingRecordTest, KeepsWhatAWindowDraws) {
  const size_t live = machine::LiveDrawingObjects();
  const HWND window =
      CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, 40, 30, nullptr, nullptr, nullptr, nullptr);
  SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(PaintSomething));
  {
    const machine::DrawingRecord record;
    InvalidateRect(window, nullptr, TRUE);
    UpdateWindow(window);
    UpdateWindow(window); // nothing is invalid any more
    ASSERT_EQ(record.operations.size(), 3U);
    const Drawn &fill = record.operations[0];
    EXPECT_EQ(fill.colour, 0x112233U);
    EXPECT_EQ(fill.place.right, 4);
    EXPECT_EQ(fill.place.bottom, 6);
    const Drawn &text = record.operations[1];
    EXPECT_EQ(text.window, window);
    EXPECT_EQ(text.text, "text");
    EXPECT_EQ(text.colour, 0x445566U);
    EXPECT_EQ(text.backMode, TRANSPARENT);
    EXPECT_EQ(text.place.right, 40);
    EXPECT_EQ(record.operations[2].kind, Drawn::Kind::FocusFrame);
  }
  DestroyWindow(window);
  EXPECT_EQ(machine::LiveDrawingObjects(), live);
}

using FileIconTest = MachineTest;

TEST_F(FileIconTest, IsKnownByItsFileUntilItIsDestroyed) {
  const char *const file = "C:\\acctkit-test\\\x95\x5c.exe";
  PutFile(file, "program");
  const size_t live = machine::LiveIcons();
  SHFILEINFOA info = {};
  SHGetFileInfoA(file, 0, &info, sizeof info, SHGFI_ICON);
  EXPECT_EQ(machine::LiveIcons(), live + 1);
  EXPECT_EQ(machine::IconFile(info.hIcon), file);
  EXPECT_TRUE(DestroyIcon(info.hIcon));
  EXPECT_FALSE(DestroyIcon(info.hIcon));
  EXPECT_EQ(machine::IconFile(info.hIcon), "");
  EXPECT_EQ(machine::LiveIcons(), live);
}

using NoUserTest = ClientTest;

TEST_F(NoUserTest, NothingComesUp) {
  InstallOutlookExpress("5,50,1");
  EXPECT_EQ(KERMWizard(), 0);
  EXPECT_EQ(MessageBoxA(nullptr, "text", "title", MB_OK), 0);
  EXPECT_FALSE(WinHelpA(nullptr, "C:\\help.hlp", HELP_CONTEXT, 5));
  PROPSHEETHEADERA header = {};
  header.dwSize = sizeof header;
  header.dwFlags = PSH_PROPSHEETPAGE | PSH_WIZARD;
  EXPECT_EQ(PropertySheetA(&header), -1);
}

TEST(ClosedBoxTest, IsAgreedToOrCancelledOrStays) {
  const struct {
    UINT type;
    int result;
  } boxes[] = {{MB_OK, IDOK}, {MB_OKCANCEL, IDCANCEL}, {MB_YESNOCANCEL, IDCANCEL}, {MB_YESNO, IDNO}};
  for (const auto &[type, result] : boxes) {
    UserSteps steps = {[](HWND top) { PostMessageA(top, WM_CLOSE, 0, 0); }};
    if (result == IDNO) // it has to be answered
      steps.emplace_back([](HWND top) { SendMessageA(top, WM_COMMAND, IDNO, 0); });
    WithUser(steps, [&] { EXPECT_EQ(MessageBoxA(nullptr, "text", "title", type), result) << type; });
  }
}

} // namespace
