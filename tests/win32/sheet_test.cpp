// Wizards and message boxes that a user runs: what the pages are asked, what their answers do, and how they end.
#include "support/dialog_template.h"
#include "support/user.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

using Events = std::vector<std::string>;

constexpr int FirstStop = 11;

// The notifications of the pages since the last look, and their answers: to a notification with a code, once.
Events events;
struct Answer {
  UINT code;
  LRESULT value;
};
Answer answer;

std::string NameOf(UINT code) {
  const struct {
    UINT code;
    const char *name;
  } names[] = {{PSN_SETACTIVE, "show"},   {PSN_KILLACTIVE, "leave"},    {PSN_WIZNEXT, "next"}, {PSN_WIZBACK, "back"},
               {PSN_WIZFINISH, "finish"}, {PSN_QUERYCANCEL, "cancel?"}, {PSN_RESET, "reset"},  {PSN_HELP, "help"}};
  return std::ranges::find_if(names, [&](const auto &each) { return each.code == code; })->name;
}

// The number of a page is also in its caption, and is the index of its buttons here.
constexpr DWORD ButtonsOfPages[] = {PSWIZB_NEXT, PSWIZB_BACK | PSWIZB_NEXT, PSWIZB_BACK | PSWIZB_FINISH};

std::string PageName(LPARAM number) { return std::string(1, static_cast<char>('A' + number)); }

INT_PTR CALLBACK PageProcedure(HWND page, UINT message, WPARAM, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(page, DWLP_USER, reinterpret_cast<const PROPSHEETPAGEA *>(lParam)->lParam);
    events.push_back(PageName(GetWindowLongPtrA(page, DWLP_USER)) + " made");
    return TRUE;
  }
  if (message != WM_NOTIFY)
    return FALSE;
  const auto &[header, parameter] = *reinterpret_cast<const PSHNOTIFY *>(lParam);
  const auto number = GetWindowLongPtrA(page, DWLP_USER);
  EXPECT_EQ(header.hwndFrom, GetParent(page));
  events.push_back(PageName(number) + " " + NameOf(header.code) + (parameter != 0 ? "!" : ""));
  if (header.code == PSN_SETACTIVE)
    PostMessageA(GetParent(page), PSM_SETWIZBUTTONS, 0, static_cast<LPARAM>(ButtonsOfPages[number]));
  SetWindowLongPtrA(page, DWLP_MSGRESULT, header.code == answer.code ? std::exchange(answer, {}).value : 0);
  return TRUE;
}

// Like the templates that dialog editors make: disabled, with a caption, and with a label before the control that gets
// the focus.
Template PageTemplate(LPARAM number) {
  const char16_t caption[] = {static_cast<char16_t>(u'A' + number), 0};
  const std::vector<Control> controls = {{0xFFFF, 0, StaticAtom, u"label"},
                                         {FirstStop, WS_TABSTOP, EditAtom, u""},
                                         {FirstStop + 1, WS_TABSTOP, EditAtom, u""}};
  return {WS_CHILD | WS_CAPTION | WS_DISABLED, controls, caption};
}

// Runs a wizard of three pages.
INT_PTR RunWizard(const UserSteps &steps, HWND owner = nullptr) {
  const Template templates[] = {PageTemplate(0), PageTemplate(1), PageTemplate(2)};
  PROPSHEETPAGEA pages[3] = {};
  for (LPARAM number = 0; number < 3; ++number) {
    PROPSHEETPAGEA &page = pages[number];
    page.dwSize = sizeof page;
    page.dwFlags = PSP_DLGINDIRECT | (number != 1 ? PSP_HASHELP : 0);
    page.pResource = templates[number].Bytes();
    page.pfnDlgProc = PageProcedure;
    page.lParam = number;
  }
  PROPSHEETHEADERA header = {};
  header.dwSize = sizeof header;
  header.dwFlags = PSH_PROPSHEETPAGE | PSH_WIZARD | PSH_HASHELP;
  header.hwndParent = owner;
  header.nPages = 3;
  header.ppsp = pages;
  events.clear();
  INT_PTR result = -2;
  WithUser(steps, [&] { result = PropertySheetA(&header); });
  return result;
}

// The enabled buttons of a sheet, the default one with a star.
std::string ButtonsOf(HWND sheet) {
  const struct {
    int id;
    const char *name;
  } names[] = {{ID_WIZBACK, "back"}, {ID_WIZNEXT, "next"}, {ID_WIZFINISH, "finish"}, {IDHELP, "help"}};
  std::string buttons;
  for (const auto &[id, name] : names)
    if (const HWND button = GetDlgItem(sheet, id); IsWindowVisible(button) && IsWindowEnabled(button)) {
      const bool isDefault = LOWORD(SendMessageA(sheet, DM_GETDEFID, 0, 0)) == id;
      buttons += std::string(buttons.empty() ? "" : " ") + name + (isDefault ? "*" : "");
    }
  return buttons;
}

TEST(WizardTest, AsksItsPages) {
  const struct {
    int button;
    Answer answer;
    Events events;
    LRESULT page; // the page after the press
  } presses[] = {
      {PSBTN_BACK, {0, 0}, {"A back"}, 0}, // there is no previous page
      {PSBTN_NEXT, {PSN_WIZNEXT, -1}, {"A next"}, 0},
      {PSBTN_NEXT, {PSN_KILLACTIVE, TRUE}, {"A next", "A leave"}, 0},
      {PSBTN_NEXT, {0, 0}, {"A next", "A leave", "B made", "B show"}, 1},
      {PSBTN_HELP, {0, 0}, {"B help"}, 1},
      {PSBTN_NEXT, {0, 0}, {"B next", "B leave", "C made", "C show"}, 2},
      {PSBTN_NEXT, {0, 0}, {"C next"}, 2}, // there is no next page
      {PSBTN_BACK, {PSN_WIZBACK, -1}, {"C back"}, 2},
      {PSBTN_BACK, {PSN_SETACTIVE, -1}, {"C back", "C leave", "B show", "A show"}, 0}, // the page between is skipped
      {PSBTN_NEXT, {PSN_SETACTIVE, -1}, {"A next", "A leave", "B show", "C show"}, 2},
      {PSBTN_FINISH, {PSN_WIZFINISH, TRUE}, {"C finish"}, 2},
      {PSBTN_CANCEL, {PSN_QUERYCANCEL, TRUE}, {"C cancel?"}, 2},
      {PSBTN_FINISH, {0, 0}, {"C finish"}, 2},
  };
  const char *const buttonsOfPages[] = {"next* help", "back next*", "back finish* help"};
  LRESULT page = 0;
  UserSteps steps;
  for (const auto &press : presses)
    steps.emplace_back([&](HWND sheet) {
      // The page after the previous press.
      const LRESULT shown = SendMessageA(sheet, PSM_GETCURRENTPAGEHWND, 0, 0);
      EXPECT_TRUE(IsWindowVisible(reinterpret_cast<HWND>(shown)));
      EXPECT_EQ(SendMessageA(sheet, PSM_HWNDTOINDEX, static_cast<WPARAM>(shown), 0), page);
      EXPECT_EQ(ButtonsOf(sheet), buttonsOfPages[page]);
      EXPECT_EQ(GetDlgCtrlID(GetFocus()), FirstStop);
      char caption[8] = "";
      GetWindowTextA(sheet, caption, sizeof caption);
      EXPECT_EQ(caption, PageName(page));

      events.clear();
      answer = press.answer;
      SendMessageA(sheet, PSM_PRESSBUTTON, static_cast<WPARAM>(press.button), 0);
      EXPECT_EQ(events, press.events);
      page = press.page;
      events.clear();
    });
  EXPECT_GT(RunWizard(steps), 0);
}

TEST(WizardTest, IsCancelled) {
  const HWND owner =
      CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
  const struct {
    UINT message;
    WPARAM wParam;
    const char *reset;
  } ways[] = {{WM_COMMAND, IDCANCEL, "A reset"}, {PSM_PRESSBUTTON, PSBTN_CANCEL, "A reset"}, {WM_CLOSE, 0, "A reset!"}};
  for (const auto &way : ways) {
    const auto cancel = [&](HWND sheet) {
      EXPECT_EQ(GetParent(sheet), owner);
      EXPECT_FALSE(IsWindowEnabled(owner));
      EXPECT_EQ(events, (Events{"A made", "A show"}));
      events.clear();
      PostMessageA(sheet, way.message, way.wParam, 0);
    };
    EXPECT_EQ(RunWizard({cancel}, owner), 0);
    EXPECT_EQ(events, (Events{"A cancel?", way.reset})); // pages that were never shown get no notification
    EXPECT_TRUE(IsWindowEnabled(owner));
  }
  DestroyWindow(owner);
}

// ---- Message boxes ----

TEST(MessageBoxTest, HasTheButtonsOfItsType) {
  const struct {
    UINT type;
    std::vector<int> buttons;
    const char *icon;
  } boxes[] = {
      {MB_OK, {IDOK}, nullptr},
      {MB_OKCANCEL | MB_ICONINFORMATION, {IDOK, IDCANCEL}, IDI_ASTERISK},
      {MB_YESNOCANCEL | 0x20, {IDYES, IDNO, IDCANCEL}, IDI_QUESTION},
      {MB_YESNO | MB_ICONEXCLAMATION, {IDYES, IDNO}, IDI_EXCLAMATION},
  };
  for (const auto &box : boxes)
    for (const int pressed : box.buttons) {
      const auto look = [&](HWND top) {
        std::vector<int> buttons;
        for (int id = IDOK; id <= IDNO; ++id)
          if (GetDlgItem(top, id) != nullptr)
            buttons.push_back(id);
        EXPECT_TRUE(std::ranges::is_permutation(buttons, box.buttons));
        LRESULT icon = 0;
        for (HWND control = GetWindow(top, GW_CHILD); control != nullptr; control = GetWindow(control, GW_HWNDNEXT))
          icon |= SendMessageA(control, STM_GETICON, 0, 0);
        EXPECT_EQ(reinterpret_cast<HICON>(icon), box.icon != nullptr ? LoadIconA(nullptr, box.icon) : nullptr);
        EXPECT_EQ(GetDlgCtrlID(GetFocus()), box.buttons[0]);
        char title[8] = "";
        char text[16] = "";
        GetWindowTextA(top, title, sizeof title);
        GetDlgItemTextA(top, 0xFFFF, text, sizeof text);
        EXPECT_STREQ(title, "\x83\x5c");
        EXPECT_STREQ(text, "a & b\nline");
        SendMessageA(GetDlgItem(top, pressed), BM_CLICK, 0, 0);
      };
      SCOPED_TRACE(box.type);
      WithUser({look}, [&] { EXPECT_EQ(MessageBoxA(nullptr, "a & b\nline", "\x83\x5c", box.type), pressed); });
    }
}

TEST(MessageBoxTest, CanOpenAboveAnother) {
  int inner = 0;
  const auto ask = [&](HWND outer) {
    inner = MessageBoxA(outer, "inner", "", MB_YESNO);
    EXPECT_TRUE(IsWindowEnabled(outer));
    EXPECT_EQ(GetActiveWindow(), outer);
    SendMessageA(outer, WM_CLOSE, 0, 0);
  };
  const auto refuse = [](HWND top) {
    EXPECT_FALSE(IsWindowEnabled(GetParent(top)));
    SendMessageA(top, WM_COMMAND, IDNO, 0);
  };
  WithUser({ask, refuse}, [] { EXPECT_EQ(MessageBoxA(nullptr, "outer", "", MB_OKCANCEL), IDCANCEL); });
  EXPECT_EQ(inner, IDNO);
}

} // namespace
