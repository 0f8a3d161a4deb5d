// Wizards and message boxes that a user runs: what the pages are asked, what becomes of their answers, and how it ends.
#include "support/user.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

using Events = std::vector<std::string>;

constexpr int FirstStop = 11;

// What the pages were told since the last look, and what the next notification of a code is answered.
Events events;
UINT answeredCode;
LRESULT answer;

void Answer(UINT code, LRESULT with) {
  answeredCode = code;
  answer = with;
}

std::string NameOf(UINT code) {
  const struct {
    UINT code;
    const char *name;
  } names[] = {{PSN_SETACTIVE, "show"},   {PSN_KILLACTIVE, "leave"},    {PSN_WIZNEXT, "next"}, {PSN_WIZBACK, "back"},
               {PSN_WIZFINISH, "finish"}, {PSN_QUERYCANCEL, "cancel?"}, {PSN_RESET, "reset"},  {PSN_HELP, "help"}};
  const auto *const found = std::ranges::find(names, code, [](const auto &each) { return each.code; });
  return found != std::end(names) ? found->name : std::to_string(code);
}

// A page is known by its number, which the caption also tells, and sets the buttons that its row has.
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
  const auto &notification = *reinterpret_cast<const PSHNOTIFY *>(lParam);
  const auto number = GetWindowLongPtrA(page, DWLP_USER);
  EXPECT_EQ(notification.hdr.hwndFrom, GetParent(page));
  events.push_back(PageName(number) + " " + NameOf(notification.hdr.code) + (notification.lParam != 0 ? "!" : ""));
  if (notification.hdr.code == PSN_SETACTIVE)
    PostMessageA(GetParent(page), PSM_SETWIZBUTTONS, 0, static_cast<LPARAM>(ButtonsOfPages[number]));
  const bool answered =
      notification.hdr.code == std::exchange(answeredCode, notification.hdr.code == answeredCode ? 0 : answeredCode);
  SetWindowLongPtrA(page, DWLP_MSGRESULT, answered ? answer : 0);
  return TRUE;
}

UINT CALLBACK PageCallback(HWND, UINT event, PROPSHEETPAGEA *page) {
  if (event == PSPCB_RELEASE)
    events.push_back(PageName(page->lParam) + " released");
  return TRUE;
}

int CALLBACK SheetCallback(HWND sheet, UINT event, LPARAM) {
  if (event == PSCB_INITIALIZED)
    events.emplace_back(sheet != nullptr ? "sheet made" : "no sheet");
  return 0;
}

// A dialog with a label and two edit controls, disabled and with a caption as dialog editors leave pages.
std::vector<WORD> PageTemplate(LPARAM number) {
  std::vector<WORD> words;
  const auto append = [&](std::initializer_list<unsigned> values) {
    for (const unsigned value : values)
      words.push_back(static_cast<WORD>(value));
  };
  append({0, HIWORD(WS_CHILD | WS_CAPTION | WS_DISABLED), 0, 0, 3, 0, 0, 200, 100, 0, 0,
          static_cast<unsigned>('A' + number), 0});
  for (const unsigned id : {0xFFFFU, unsigned{FirstStop}, 12U}) {
    if (words.size() % 2 != 0)
      append({0});
    const bool label = id == 0xFFFF;
    append({0, HIWORD(WS_CHILD | WS_VISIBLE | (label ? 0 : WS_TABSTOP)), 0, 0, 10, 10, 50, 14, id, 0xFFFF,
            label ? 0x82U : 0x81U, 0, 0});
  }
  return words;
}

// Runs a wizard of three pages.
INT_PTR RunWizard(const UserSteps &steps, HWND owner = nullptr) {
  std::vector<WORD> templates[3];
  PROPSHEETPAGEA pages[3] = {};
  for (LPARAM number = 0; number < 3; ++number) {
    templates[number] = PageTemplate(number);
    PROPSHEETPAGEA &page = pages[number];
    page.dwSize = sizeof page;
    page.dwFlags = PSP_DLGINDIRECT | PSP_USECALLBACK | (number != 1 ? PSP_HASHELP : 0);
    page.pResource = reinterpret_cast<const DLGTEMPLATE *>(templates[number].data());
    page.pfnDlgProc = PageProcedure;
    page.pfnCallback = PageCallback;
    page.lParam = number;
  }
  PROPSHEETHEADERA header = {};
  header.dwSize = sizeof header;
  header.dwFlags = PSH_PROPSHEETPAGE | PSH_WIZARD | PSH_HASHELP | PSH_USECALLBACK;
  header.hwndParent = owner;
  header.nPages = 3;
  header.ppsp = pages;
  header.pfnCallback = SheetCallback;
  events.clear();
  INT_PTR result = -2;
  WithUser(steps, [&] { result = PropertySheetA(&header); });
  return result;
}

void Press(HWND sheet, int button) { SendMessageA(sheet, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0); }

// The buttons of a sheet that can be pressed, the default one with a star.
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

LRESULT CurrentIndex(HWND sheet) {
  const LRESULT page = SendMessageA(sheet, PSM_GETCURRENTPAGEHWND, 0, 0);
  EXPECT_TRUE(IsWindowVisible(reinterpret_cast<HWND>(page)));
  return SendMessageA(sheet, PSM_HWNDTOINDEX, static_cast<WPARAM>(page), 0);
}

TEST(WizardTest, AsksItsPages) {
  const struct {
    int button;
    UINT code; // that is answered
    LRESULT answer;
    Events events;
    LRESULT page; // after it
  } presses[] = {
      {PSBTN_BACK, 0, 0, {"A back"}, 0}, // there is no page before it
      {PSBTN_NEXT, PSN_WIZNEXT, -1, {"A next"}, 0},
      {PSBTN_NEXT, PSN_KILLACTIVE, TRUE, {"A next", "A leave"}, 0},
      {PSBTN_NEXT, 0, 0, {"A next", "A leave", "B made", "B show"}, 1},
      {PSBTN_HELP, 0, 0, {"B help"}, 1},
      {PSBTN_NEXT, 0, 0, {"B next", "B leave", "C made", "C show"}, 2},
      {PSBTN_NEXT, 0, 0, {"C next"}, 2}, // nor one behind it
      {PSBTN_BACK, PSN_WIZBACK, -1, {"C back"}, 2},
      {PSBTN_BACK, PSN_SETACTIVE, -1, {"C back", "C leave", "B show", "A show"}, 0}, // the one between is skipped
      {PSBTN_NEXT, PSN_SETACTIVE, -1, {"A next", "A leave", "B show", "C show"}, 2},
      {PSBTN_FINISH, PSN_WIZFINISH, TRUE, {"C finish"}, 2},
      {PSBTN_CANCEL, PSN_QUERYCANCEL, TRUE, {"C cancel?"}, 2},
      {PSBTN_FINISH, 0, 0, {"C finish"}, 2},
  };
  const char *const buttonsOfPages[] = {"next* help", "back next*", "back finish* help"};
  LRESULT page = 0;
  UserSteps steps;
  for (const auto &press : presses)
    steps.emplace_back([&](HWND sheet) {
      // The page that the press before has led to.
      EXPECT_EQ(CurrentIndex(sheet), page);
      EXPECT_EQ(ButtonsOf(sheet), buttonsOfPages[page]);
      EXPECT_EQ(GetDlgCtrlID(GetFocus()), FirstStop);
      char caption[8] = "";
      GetWindowTextA(sheet, caption, sizeof caption);
      EXPECT_EQ(caption, PageName(page));

      events.clear();
      Answer(press.code, press.answer);
      Press(sheet, press.button);
      EXPECT_EQ(events, press.events);
      page = press.page;
      events.clear();
    });
  EXPECT_GT(RunWizard(steps), 0);
  std::ranges::sort(events);
  EXPECT_EQ(events, (Events{"A released", "B released", "C released"}));
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
      EXPECT_EQ(events, (Events{"sheet made", "A made", "A show"}));
      events.clear();
      PostMessageA(sheet, way.message, way.wParam, 0);
    };
    EXPECT_EQ(RunWizard({cancel}, owner), 0);
    events.resize(2); // pages that were never shown hear nothing
    EXPECT_EQ(events, (Events{"A cancel?", way.reset}));
    EXPECT_TRUE(IsWindowEnabled(owner));
  }
  DestroyWindow(owner);
}

TEST(WizardTest, IsTurnedByItsProgram) {
  const auto turn = [](HWND sheet) {
    events.clear();
    EXPECT_TRUE(SendMessageA(sheet, PSM_SETCURSEL, 2, 0));
    EXPECT_EQ(events, (Events{"A leave", "C made", "C show"}));
    EXPECT_EQ(CurrentIndex(sheet), 2);
    EXPECT_FALSE(SendMessageA(sheet, PSM_SETCURSEL, 7, 0));
    EXPECT_EQ(CurrentIndex(sheet), 2);
    Press(sheet, PSBTN_CANCEL);
  };
  EXPECT_EQ(RunWizard({turn}), 0);
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
      {2, {IDABORT, IDRETRY, IDIGNORE}, nullptr},
      {MB_YESNOCANCEL | 0x20, {IDYES, IDNO, IDCANCEL}, IDI_QUESTION},
      {MB_YESNO | MB_ICONEXCLAMATION, {IDYES, IDNO}, IDI_EXCLAMATION},
      {5 | 0x10, {IDRETRY, IDCANCEL}, IDI_HAND},
  };
  for (const auto &box : boxes)
    for (const int pressed : box.buttons) {
      SCOPED_TRACE(box.type);
      const auto look = [&](HWND top) {
        struct Found {
          std::vector<int> buttons;
          HICON icon = nullptr;
        } found;
        const auto collect = [](HWND control, LPARAM to) -> BOOL {
          auto &kept = *reinterpret_cast<Found *>(to);
          char name[16] = "";
          GetClassNameA(control, name, sizeof name);
          if (std::string(name) == "Button")
            kept.buttons.push_back(GetDlgCtrlID(control));
          else if (const LRESULT icon = SendMessageA(control, STM_GETICON, 0, 0))
            kept.icon = reinterpret_cast<HICON>(icon);
          return TRUE;
        };
        EnumChildWindows(top, collect, reinterpret_cast<LPARAM>(&found));
        EXPECT_EQ(found.buttons, box.buttons);
        EXPECT_EQ(found.icon, box.icon != nullptr ? LoadIconA(nullptr, box.icon) : nullptr);
        EXPECT_EQ(GetDlgCtrlID(GetFocus()), box.buttons[0]);
        char title[8] = "";
        char text[16] = "";
        GetWindowTextA(top, title, sizeof title);
        GetDlgItemTextA(top, 0xFFFF, text, sizeof text);
        EXPECT_STREQ(title, "\x83\x5c");
        EXPECT_STREQ(text, "a & b\nline");
        SendMessageA(GetDlgItem(top, pressed), BM_CLICK, 0, 0);
      };
      WithUser({look}, [&] { EXPECT_EQ(MessageBoxA(nullptr, "a & b\nline", "\x83\x5c", box.type), pressed); });
    }
}

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
