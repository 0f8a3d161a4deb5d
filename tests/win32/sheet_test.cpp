// Wizards and message boxes that a user runs: what the pages are asked, what becomes of their answers, and how it ends.
#include "resources/resource.h"
#include "support/user.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using Events = std::vector<std::string>;

// What the pages were told since the last look, and how they answer: a notification of a code, once.
Events events;
struct Answer {
  UINT code;
  LRESULT value;
};
Answer answer;

std::string NameOf(UINT code) {
  const std::pair<UINT, const char *> names[] = {{PSN_SETACTIVE, "show"},      {PSN_WIZNEXT, "next"},
                                                 {PSN_WIZBACK, "back"},        {PSN_WIZFINISH, "finish"},
                                                 {PSN_QUERYCANCEL, "cancel?"}, {PSN_HELP, "help"}};
  const auto *const found = std::ranges::find_if(names, [&](const auto &each) { return each.first == code; });
  return found != std::end(names) ? found->second : "";
}

// The pages, in their order, and the buttons that they set.
constexpr struct {
  unsigned id;
  LPARAM buttons;
} Pages[] = {{IDD_SET_MAILER_SELECT, PSWIZB_NEXT},
             {IDD_SET_MAILER_ID, PSWIZB_BACK | PSWIZB_NEXT},
             {IDD_SET_MAILER_END, PSWIZB_BACK | PSWIZB_FINISH}};

std::string PageName(LPARAM number) { return std::string(1, static_cast<char>('A' + number)); }

INT_PTR CALLBACK PageProcedure(HWND page, UINT message, WPARAM, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(page, DWLP_USER, reinterpret_cast<const PROPSHEETPAGEA *>(lParam)->lParam);
    events.push_back(PageName(GetWindowLongPtrA(page, DWLP_USER)) + " made");
    return TRUE;
  }
  if (message != WM_NOTIFY)
    return FALSE;
  const auto &header = *reinterpret_cast<const NMHDR *>(lParam);
  const auto number = GetWindowLongPtrA(page, DWLP_USER);
  EXPECT_EQ(header.hwndFrom, GetParent(page));
  if (const std::string name = NameOf(header.code); !name.empty())
    events.push_back(PageName(number) + " " + name);
  if (header.code == PSN_SETACTIVE)
    PostMessageA(GetParent(page), PSM_SETWIZBUTTONS, 0, Pages[number].buttons);
  SetWindowLongPtrA(page, DWLP_MSGRESULT, header.code == answer.code ? std::exchange(answer, {}).value : 0);
  return TRUE;
}

// Runs a wizard of three pages.
INT_PTR RunWizard(const UserSteps &steps, HWND owner = nullptr) {
  PROPSHEETPAGEA pages[3] = {};
  for (LPARAM number = 0; number < 3; ++number) {
    PROPSHEETPAGEA &page = pages[number];
    page.dwSize = sizeof page;
    page.dwFlags = PSP_HASHELP;
    page.pszTemplate = MAKEINTRESOURCEA(Pages[number].id);
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

HWND PageOf(HWND sheet) { return reinterpret_cast<HWND>(SendMessageA(sheet, PSM_GETCURRENTPAGEHWND, 0, 0)); }

TEST(WizardTest, AsksItsPages) {
  const std::tuple<int, Answer, Events> presses[] = {
      {PSBTN_BACK, {0, 0}, {"A back"}}, // there is no page before it
      {PSBTN_NEXT, {PSN_WIZNEXT, -1}, {"A next"}},
      {PSBTN_NEXT, {0, 0}, {"A next", "B made", "B show"}},
      {PSBTN_HELP, {0, 0}, {"B help"}},
      {PSBTN_NEXT, {0, 0}, {"B next", "C made", "C show"}},
      {PSBTN_NEXT, {0, 0}, {"C next"}}, // nor one behind it
      {PSBTN_BACK, {PSN_WIZBACK, -1}, {"C back"}},
      {PSBTN_BACK, {PSN_SETACTIVE, -1}, {"C back", "B show", "A show"}}, // the one between is skipped
      {PSBTN_NEXT, {PSN_SETACTIVE, -1}, {"A next", "B show", "C show"}},
      {PSBTN_FINISH, {PSN_WIZFINISH, TRUE}, {"C finish"}},
      {PSBTN_CANCEL, {PSN_QUERYCANCEL, TRUE}, {"C cancel?"}},
      {PSBTN_FINISH, {0, 0}, {"C finish"}},
  };
  UserSteps steps;
  for (const auto &[button, given, expected] : presses)
    steps.emplace_back([&](HWND sheet) {
      events.clear();
      answer = given;
      SendMessageA(sheet, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0);
      EXPECT_EQ(events, expected);
      EXPECT_TRUE(IsWindowVisible(PageOf(sheet)));
    });
  EXPECT_GT(RunWizard(steps), 0);
}

TEST(WizardTest, MovesTheFocus) {
  const auto next = [](HWND sheet) { PostMessageA(sheet, PSM_PRESSBUTTON, PSBTN_NEXT, 0); };
  const auto walk = [](HWND sheet) {
    const HWND first = GetDlgItem(PageOf(sheet), IDC_FIELD_1);
    SetWindowTextA(first, "text");
    SendMessageA(first, EM_SETSEL, 0, 0);
    // Through the page, and then through the buttons that can be pressed.
    for (const int id : {IDC_CHOICE, IDC_FIELD_2, ID_WIZBACK, ID_WIZNEXT, IDCANCEL, IDHELP, IDC_FIELD_1}) {
      SendMessageA(sheet, WM_NEXTDLGCTL, FALSE, FALSE);
      EXPECT_EQ(GetDlgCtrlID(GetFocus()), id);
    }
    DWORD begin = 9;
    DWORD end = 9;
    SendMessageA(first, EM_GETSEL, reinterpret_cast<WPARAM>(&begin), reinterpret_cast<LPARAM>(&end));
    EXPECT_EQ(std::pair(begin, end), std::pair(DWORD{0}, DWORD{4})); // all of it, as by the keyboard
    const HWND last = GetDlgItem(PageOf(sheet), IDC_FIELD_2);
    SendMessageA(sheet, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(last), TRUE);
    EXPECT_EQ(MessageBoxA(sheet, "", "", MB_OK), IDOK);
    EXPECT_EQ(GetFocus(), last);
    SendMessageA(sheet, WM_NEXTDLGCTL, TRUE, FALSE);
    EXPECT_EQ(GetDlgCtrlID(GetFocus()), IDC_CHOICE);
    PostMessageA(sheet, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
  };
  EXPECT_EQ(RunWizard({next, walk, [](HWND box) { PostMessageA(box, WM_COMMAND, IDOK, 0); }}), 0);
}

TEST(WizardTest, IsCancelled) {
  const HWND owner =
      CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
  const std::pair<UINT, WPARAM> ways[] = {{WM_COMMAND, IDCANCEL}, {PSM_PRESSBUTTON, PSBTN_CANCEL}, {WM_CLOSE, 0}};
  for (const auto &[message, wParam] : ways) {
    const auto cancel = [&](HWND sheet) {
      EXPECT_EQ(GetParent(sheet), owner);
      EXPECT_FALSE(IsWindowEnabled(owner));
      EXPECT_EQ(events, (Events{"A made", "A show"}));
      events.clear();
      PostMessageA(sheet, message, wParam, 0);
    };
    EXPECT_EQ(RunWizard({cancel}, owner), 0);
    EXPECT_EQ(events, (Events{"A cancel?"})); // pages that were never shown hear nothing
    EXPECT_TRUE(IsWindowEnabled(owner));
  }
  DestroyWindow(owner);
}

// ---- Message boxes ----

TEST(MessageBoxTest, ComesUpBeforeAnother) {
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
