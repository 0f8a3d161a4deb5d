// The exported wizards: what they check before a sheet is shown, and how the first page uses the host's IDs. Scripts
// test the pages themselves, with the built program.
#include "acctkit/acctkit.h"

#include "clients/outlook_express/outlook_express_mail.h"
#include "mfc/afxwin.h"
#include "resources/resource.h"
#include "support/client_machine.h"
#include "support/user.h"
#include "wizard/account_writing.h"
#include "wizard/ps_wizard.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

constexpr const char *WrongCall = "プログラムが不正に呼び出されました。";
constexpr const char *NoClient = "設定可能なメーラーが一つも搭載されていません。\nメーラーの設定を終了します。";
constexpr int BoxText = 0xFFFF;

std::string TextOf(HWND dialog, int id) {
  char text[1024] = "";
  GetWindowTextA(GetDlgItem(dialog, id), text, sizeof text);
  return text;
}

HWND PageOf(HWND sheet) { return reinterpret_cast<HWND>(SendMessageA(sheet, PSM_GETCURRENTPAGEHWND, 0, 0)); }

bool IsListOpen(HWND sheet) { return SendDlgItemMessageA(PageOf(sheet), IDC_CHOICE, CB_GETDROPPEDSTATE, 0, 0) != 0; }

void Press(HWND sheet, int button) { PostMessageA(sheet, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0); }

HICON IconOf(HWND box) {
  LRESULT icon = 0;
  for (HWND child = GetWindow(box, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
    icon |= SendMessageA(child, STM_GETICON, 0, 0);
  return reinterpret_cast<HICON>(icon);
}

class WizardTest : public ClientTest {
protected:
  // Runs a wizard that should only show one message box.
  static void ExpectRefused(const std::string &message, const std::function<int32_t()> &wizard) {
    WithUser({[&](HWND box) {
               EXPECT_EQ(TextOf(box, BoxText), message);
               char title[64] = "";
               GetWindowTextA(box, title, sizeof title);
               EXPECT_STREQ(title, "@zuvioダイヤラ");
               PostMessageA(box, WM_COMMAND, IDOK, 0);
             }},
             [&] { EXPECT_EQ(wizard(), 0); });
  }
};

TEST_F(WizardTest, RefusesNullArgumentsBeforeItLooksForClients) {
  ExpectRefused(WrongCall, [] { return MailerWizard(0, nullptr, "\0"); });
  ExpectRefused(WrongCall, [] { return MailerWizard(0, "ABC01234", nullptr); });
  ExpectRefused(WrongCall, [] { return NewsWizard(0, "ABC01234", nullptr); });
  ExpectRefused(WrongCall, [] { return ShortMailWizard(0, nullptr); });
}

TEST_F(WizardTest, RefusesAMachineWithoutAClient) {
  const char ids[] = "ABC01234\0";
  ExpectRefused(NoClient, [&] { return MailerWizard(0, "ABC01234", ids); });
  ExpectRefused(NoClient, MailerWizard2);
  ExpectRefused(NoClient, KERMWizard);
  ExpectRefused(NoClient, [] { return ShortMailWizard(0, ""); });
  InstallPlugin("plugin_complete"); // a mail client without news
  ExpectRefused(NoClient, [&] { return NewsWizard(0, "ABC01234", ids); });
}

TEST_F(WizardTest, StartsWithTheHostsId) {
  InstallOutlookExpress("5,50,4522,1200");
  std::string many;
  for (int number = 0; number < 10000; ++number)
    many += "ABC" + std::to_string(10000 + number) + '\0';
  const std::tuple<const char *, std::string, LRESULT, std::string> cases[] = {
      {"DEF01234", std::string("ABC01234\0DEF01234\0", 18), 2, "DEF01234"},
      {"def01234", std::string("ABC01234\0DEF01234\0", 18), 2, "ABC01234"}, // case counts
      {"", std::string("ABC01234\0DEF01234\0", 18), 2, ""},                 // the spare entry
      {"DEF01234", std::string("\0ABC01234\0DEF01234\0", 19), 2, "DEF01234"},
      {"X", std::string("SAME0000\0SAME0000\0", 18), 2, "SAME0000"},
      {"ABC01234", std::string("\0", 1), 0, ""},
      {"ABC19999", many, 10000, "ABC19999"}};
  for (const auto &[id, list, count, shown] : cases) {
    SCOPED_TRACE(id);
    WithUser({[&](HWND sheet) {
               const HWND page = PageOf(sheet);
               EXPECT_EQ(TextOf(page, IDC_CHOICE), shown);
               EXPECT_EQ(SendDlgItemMessageA(page, IDC_CHOICE, CB_GETCOUNT, 0, 0), count);
               Press(sheet, PSBTN_CANCEL);
             }},
             [&] { EXPECT_EQ(MailerWizard(0, id, list.c_str()), 1); });
  }
}

TEST_F(WizardTest, ComesUpOnOneThreadAtATime) {
  InstallOutlookExpress("5,50,4522,1200");
  WithUser({[](HWND) {
              OnAnotherThread([] { EXPECT_EQ(MailerWizard2(), 0); });
              EXPECT_EQ(MailerWizard2(), 1); // within another wizard on the same thread
              OnAnotherThread([] { EXPECT_EQ(MailerWizard2(), 0); });
            },
            [](HWND inner) { Press(inner, PSBTN_CANCEL); }, [](HWND outer) { Press(outer, PSBTN_CANCEL); }},
           [] { EXPECT_EQ(MailerWizard2(), 1); });
}

// The help key's command is tested twice: by the sheet, and again when it comes back to the page.
TEST_F(WizardTest, ShowsTheHelpOnceForTheHelpKey) {
  InstallOutlookExpress("5,50,4522,1200");
  WithUser({[](HWND sheet) {
              const HWND control = GetDlgItem(PageOf(sheet), IDC_CHOICE);
              HELPINFO info{};
              info.cbSize = sizeof info;
              SendMessageA(control, WM_HELP, 0, reinterpret_cast<LPARAM>(&info));
            },
            [](HWND box) {
              EXPECT_EQ(TextOf(box, BoxText), "ヘルプファイルの読み込みに失敗しました。");
              PostMessageA(box, WM_COMMAND, IDOK, 0);
            },
            [](HWND sheet) { Press(sheet, PSBTN_CANCEL); }},
           [] { EXPECT_EQ(MailerWizard(0, "ABC01234", "ABC01234\0"), 1); });
}

TEST_F(WizardTest, ShowsTheIconOfAnotherChoice) {
  InstallOutlookExpress("5,50,4522,1200");
  InstallCommunicator();
  WithUser({[](HWND sheet) {
              const HWND page = PageOf(sheet);
              const HWND list = GetDlgItem(page, IDC_CHOICE);
              const auto icon = [page] { return SendDlgItemMessageA(page, IDC_CLIENT_ICON, STM_GETICON, 0, 0); };
              const LRESULT before = icon();
              SendMessageA(list, CB_SETCURSEL, 1, 0);
              SendMessageA(page, WM_COMMAND, MAKEWPARAM(IDC_CHOICE, CBN_SELCHANGE), reinterpret_cast<LPARAM>(list));
              EXPECT_NE(icon(), before);
              Press(sheet, PSBTN_NEXT);
            },
            [](HWND sheet) {
              EXPECT_TRUE(IsListOpen(sheet));
              Press(sheet, PSBTN_CANCEL);
            },
            [](HWND box) { PostMessageA(box, WM_COMMAND, IDYES, 0); }},
           [] { EXPECT_EQ(ShortMailWizard(0, "ABC01234"), 1); });
}

TEST_F(WizardTest, OpensTheListOfDomainsTheFirstTime) {
  InstallOutlookExpress("5,50,4522,1200");
  const auto next = [](HWND sheet) { Press(sheet, PSBTN_NEXT); };
  WithUser({next, next,
            [](HWND sheet) {
              EXPECT_TRUE(IsListOpen(sheet));
              Press(sheet, PSBTN_BACK);
            },
            next,
            [](HWND sheet) {
              EXPECT_FALSE(IsListOpen(sheet));
              Press(sheet, PSBTN_CANCEL);
            }},
           [] { EXPECT_EQ(MailerWizard(0, "ABC01234", "ABC01234\0"), 1); });
}

// The system sets the size of a sheet after the first message; this sheet does the same.
class LateSizedSheet : public CPsWizard {
  BOOL OnInitDialog() override {
    const BOOL result = CPsWizard::OnInitDialog();
    SetWindowPos(m_hWnd, nullptr, 0, 0, 300, 200, SWP_NOZORDER | SWP_NOACTIVATE);
    return result;
  }
};

TEST(SheetTest, IsCentredAtItsFinalSizeUntilItIsMoved) {
  const AFX_MAINTAIN_STATE2 state(AfxGetStaticModuleState());
  CPropertyPage page(IDD_SET_MAILER_TOP2);
  LateSizedSheet wizard;
  wizard.m_psh.dwFlags |= PSH_WIZARD;
  wizard.AddPage(&page);
  WithUser({[](HWND sheet) {
             RECT screen;
             RECT own;
             GetWindowRect(GetDesktopWindow(), &screen);
             GetWindowRect(sheet, &own);
             EXPECT_EQ(own.right - own.left, 300);
             EXPECT_NEAR(own.left - screen.left, screen.right - own.right, 1);
             EXPECT_NEAR(own.top - screen.top, screen.bottom - own.bottom, 1);
             SetWindowPos(sheet, nullptr, 5, 6, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
             ShowWindow(sheet, SW_HIDE);
             ShowWindow(sheet, SW_SHOW);
             GetWindowRect(sheet, &own);
             EXPECT_EQ(own.left, 5);
             Press(sheet, PSBTN_CANCEL);
           }},
           [&] { EXPECT_EQ(wizard.DoModal(), 0); });
}

// A client that finds the user in another account, which isn't the one to overwrite.
class KnowingClient : public OutlookExpressMail {
  int32_t IsExistSecondUser(const MailAccountSpec &, std::string &key, std::string &message) override {
    key = "other";
    message = "the second question";
    return 1;
  }
};

TEST_F(WizardTest, AsksBeforeItWritesAnAccount) {
  KnowingClient client;
  MailAccountSpec spec = SampleMailSpec();
  WriteAccount(client, spec);
  // What is asked of whom for which title, and how the boxes begin.
  const std::tuple<MailClient *, const UserQuestions &, const char *, std::vector<std::string>> flows[] = {
      {&client, AnyUser, "@zuvio(ABC01234)", {"同名のアカウント", "設定が完了"}},
      {&client, SecondUser, "@zuvio(ABC01234)", {"同名のアカウント", "設定が完了"}},
      {&client, OriginalDomainUser, "@zuvio(ABC01234)", {"同名のアカウント", "the second", "設定が完了"}},
      {&client, OriginalDomainUser, "new 1", {"the second", "設定が完了"}},
      {&client, AnyUser, "new 2", {"メールアカウント「ABC01234」", "設定が完了"}},
      {nullptr, AnyUser, "new 3", {"設定に失敗"}}, // the client has been removed
  };
  for (const auto &[asked, user, title, boxes] : flows) {
    spec.accountName = title;
    UserSteps steps;
    for (const std::string &begin : boxes)
      steps.emplace_back([&](HWND box) {
        EXPECT_EQ(TextOf(box, BoxText).substr(0, begin.size()), begin);
        PostMessageA(box, WM_COMMAND, IDOK, 0);
      });
    WithUser(steps, [&] {
      const AFX_MAINTAIN_STATE2 state(AfxGetStaticModuleState());
      EXPECT_TRUE(WriteMailAccount(asked, spec, user));
    });
  }
  EXPECT_FALSE(KeyThere(HKEY_CURRENT_USER, std::string(AccountsKey) + "\\other"));
}

TEST_F(WizardTest, BoxesWithoutAnIconGetTheExclamationMark) {
  // Each with its icon, if it has one, and with the answer to it.
  const std::tuple<UINT, const char *, int> boxes[] = {
      {MB_OK, IDI_EXCLAMATION, IDOK},           {MB_OKCANCEL, IDI_EXCLAMATION, IDCANCEL},
      {MB_YESNO, IDI_EXCLAMATION, IDYES},       {MB_YESNOCANCEL, IDI_EXCLAMATION, IDNO},
      {MB_ICONINFORMATION, IDI_ASTERISK, IDOK}, {5, nullptr, IDCANCEL}};
  for (const auto &[type, icon, answer] : boxes) {
    SCOPED_TRACE(type);
    WithUser({[&](HWND top) {
               EXPECT_EQ(IconOf(top), icon == nullptr ? nullptr : LoadIconA(nullptr, icon));
               PostMessageA(top, WM_COMMAND, static_cast<WPARAM>(answer), 0);
             }},
             [&] {
               const AFX_MAINTAIN_STATE2 state(AfxGetStaticModuleState());
               EXPECT_EQ(AfxMessageBox("text", type), answer);
             });
  }

  // A box above a window of the host leaves that window's owner enabled.
  const auto make = [](HWND owner) {
    return CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, owner, nullptr, nullptr, nullptr);
  };
  const HWND main = make(nullptr);
  SetFocus(make(main));
  ExpectRefused(WrongCall, [] { return ShortMailWizard(0, nullptr); });
  EXPECT_TRUE(IsWindowEnabled(main));
  DestroyWindow(main);
}

} // namespace
