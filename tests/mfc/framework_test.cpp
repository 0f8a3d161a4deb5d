// Wizards built with the framework's classes and run by a user: what the sheet asks its pages, where commands go, and
// which messages of a control its parent gets.
#include "mfc/afxwin.h"

#include "resources/resource.h"
#include "support/user.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr UINT HandledMessage = WM_USER + 101;

using Calls = std::vector<std::string>;

// The calls to the classes below, in order, and the results of the pages.
Calls calls;
bool refusing;

Calls TakeCalls() { return std::exchange(calls, {}); }

class List : public CComboBox {
public:
  int drawn = 0;
  std::vector<DWORD_PTR> deleted;

  void DrawItem(DRAWITEMSTRUCT *) override { ++drawn; }
  void MeasureItem(MEASUREITEMSTRUCT *item) override { item->itemHeight = 77; }
  int CompareItem(COMPAREITEMSTRUCT *) override { return -1; }
  void DeleteItem(DELETEITEMSTRUCT *item) override { deleted.push_back(GetItemData(static_cast<int>(item->itemID))); }
};

// A page with an owner-drawn drop-down list.
class Page : public CPropertyPage {
  DECLARE_DYNAMIC(Page)

public:
  List list;

  Page() : CPropertyPage(IDD_SET_MAILER_SELECT, 0) { m_psp.dwFlags |= PSP_HASHELP; }

protected:
  void DoDataExchange(CDataExchange *exchange) override { DDX_Control(exchange, IDC_CHOICE, list); }
  BOOL OnInitDialog() override {
    calls.emplace_back("init");
    CPropertyPage::OnInitDialog();
    for (const DWORD_PTR data : {5, 6})
      list.SetItemData(list.AddString("entry"), data);
    return TRUE;
  }
  BOOL OnSetActive() override {
    calls.emplace_back("active");
    GetParent()->PostMessage(PSM_SETWIZBUTTONS, 0, PSWIZB_BACK | PSWIZB_NEXT);
    return CPropertyPage::OnSetActive();
  }
  LRESULT OnWizardBack() override { return Agrees("back") ? CPropertyPage::OnWizardBack() : -1; }
  LRESULT OnWizardNext() override { return Agrees("next") ? CPropertyPage::OnWizardNext() : -1; }
  BOOL OnWizardFinish() override { return Agrees("finish") && CPropertyPage::OnWizardFinish(); }
  BOOL OnQueryCancel() override { return Agrees("cancel") && CPropertyPage::OnQueryCancel(); }

  void OnSelChange() { calls.emplace_back("selected"); }
  LRESULT OnHandled(WPARAM wParam, LPARAM lParam) {
    if (wParam == 0)
      throw std::runtime_error("a handler fails");
    return static_cast<LRESULT>(wParam) + lParam;
  }
  DECLARE_MESSAGE_MAP()

  static bool Agrees(const char *question) {
    calls.emplace_back(question);
    return !refusing;
  }
};

IMPLEMENT_DYNAMIC(Page, CPropertyPage)

BEGIN_MESSAGE_MAP(Page, CPropertyPage)
ON_MESSAGE(HandledMessage, OnHandled)
ON_CBN_SELCHANGE(IDC_CHOICE, OnSelChange)
END_MESSAGE_MAP()

class Sheet : public CPropertySheet {
  DECLARE_DYNAMIC(Sheet)

public:
  bool helpAllowed = true;
  int initialised = 0;

  explicit Sheet(std::initializer_list<CPropertyPage *> pages) {
    m_psh.dwFlags |= PSH_WIZARD | PSH_HASHELP;
    for (CPropertyPage *page : pages)
      AddPage(page);
  }

  BOOL OnCmdMsg(UINT nID, int nCode, void *pExtra, AFX_CMDHANDLERINFO *pHandlerInfo) override {
    if (nID == ID_HELP)
      calls.push_back(nCode == CN_UPDATE_COMMAND_UI ? "test help" : "help");
    if (nCode == CN_UPDATE_COMMAND_UI)
      static_cast<CCmdUI *>(pExtra)->Enable(helpAllowed);
    return CPropertySheet::OnCmdMsg(nID, nCode, pExtra, pHandlerInfo);
  }

protected:
  BOOL OnInitDialog() override {
    ++initialised;
    return CPropertySheet::OnInitDialog();
  }
  BOOL OnHelpInfo(HELPINFO *info) {
    calls.emplace_back("F1");
    return CPropertySheet::OnHelpInfo(info);
  }
  DECLARE_MESSAGE_MAP()
};

IMPLEMENT_DYNAMIC(Sheet, CPropertySheet)

BEGIN_MESSAGE_MAP(Sheet, CPropertySheet)
ON_WM_HELPINFO()
END_MESSAGE_MAP()

void Press(HWND sheet, int button) { SendMessageA(sheet, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0); }

class SheetTest : public ::testing::Test {
protected:
  void SetUp() override { calls.clear(); }

  // Inspects the wizard, then cancels it.
  void Look(const std::function<void()> &look) {
    const auto step = [&](HWND top) {
      refusing = false;
      TakeCalls();
      look();
      TakeCalls();
      Press(top, PSBTN_CANCEL);
    };
    WithUser({step}, [&] { EXPECT_EQ(sheet.DoModal(), 0); });
    EXPECT_EQ(TakeCalls(), Calls{"cancel"});
  }

  Page first;
  Page second;
  Sheet sheet{&first, &second};
};

TEST_F(SheetTest, AsksItsPages) {
  const struct {
    int button;
    bool refused;
    Calls calls;
  } presses[] = {
      {PSBTN_NEXT, true, {"init", "active", "next"}},
      {PSBTN_NEXT, false, {"next", "init", "active"}},
      {PSBTN_BACK, true, {"back"}},
      {PSBTN_BACK, false, {"back", "active"}},
      {PSBTN_NEXT, false, {"next", "active"}},
      {PSBTN_FINISH, true, {"finish"}},
      {PSBTN_CANCEL, true, {"cancel"}},
      {PSBTN_FINISH, false, {"finish"}},
  };
  UserSteps steps;
  for (const auto &press : presses)
    steps.emplace_back([&](HWND top) {
      EXPECT_EQ(top, sheet.m_hWnd);
      EXPECT_EQ(first.GetParent(), &sheet);
      refusing = press.refused;
      Press(top, press.button);
      EXPECT_EQ(TakeCalls(), press.calls);
    });
  WithUser(steps, [&] { EXPECT_GT(sheet.DoModal(), 0); });
  EXPECT_EQ(sheet.initialised, 1);
  EXPECT_EQ(sheet.m_hWnd, nullptr);
  EXPECT_EQ(first.m_hWnd, nullptr);
}

TEST_F(SheetTest, OwnsABoxThatComesUpBehindAnotherApplication) {
  Look([&] {
    ShowWindow(sheet.m_hWnd, SW_HIDE); // then the thread has no active window
    EXPECT_EQ(GetActiveWindow(), nullptr);
    HWND topLevel = nullptr;
    EXPECT_EQ(CWnd::GetSafeOwner_(&topLevel), sheet.m_hWnd);
    EXPECT_EQ(topLevel, nullptr);
    ShowWindow(sheet.m_hWnd, SW_SHOW);
  });
  HWND topLevel = nullptr;
  EXPECT_EQ(CWnd::GetSafeOwner_(&topLevel), GetActiveWindow()) << "once the sheet has gone";
}

TEST_F(SheetTest, GetsTheHelpCommandOfItsPages) {
  Look([&] {
    Press(sheet.m_hWnd, PSBTN_HELP);
    EXPECT_EQ(TakeCalls(), (Calls{"test help", "help"}));

    // What the sheet has no handler for it hands to its page, where the command starts once more.
    HELPINFO info{};
    info.cbSize = sizeof info;
    first.list.SendMessage(WM_HELP, 0, reinterpret_cast<LPARAM>(&info));
    EXPECT_EQ(TakeCalls(), (Calls{"F1", "test help", "help", "test help", "help"}));

    sheet.helpAllowed = false;
    Press(sheet.m_hWnd, PSBTN_HELP);
    EXPECT_EQ(TakeCalls(), Calls{"test help"});
  });
}

TEST_F(SheetTest, AsksTheControlInItsParentsPlace) {
  Look([&] {
    EXPECT_GT(first.list.drawn, 0);

    MEASUREITEMSTRUCT measured{};
    measured.CtlID = IDC_CHOICE;
    EXPECT_EQ(first.SendMessage(WM_MEASUREITEM, IDC_CHOICE, reinterpret_cast<LPARAM>(&measured)), TRUE);
    EXPECT_EQ(measured.itemHeight, 77U);
    COMPAREITEMSTRUCT compared{};
    compared.hwndItem = first.list.m_hWnd;
    EXPECT_EQ(first.SendMessage(WM_COMPAREITEM, IDC_CHOICE, reinterpret_cast<LPARAM>(&compared)), -1);
  });
  std::ranges::sort(first.list.deleted);
  EXPECT_EQ(first.list.deleted, (std::vector<DWORD_PTR>{5, 6})) << "entries that are lost, or without their data";
}

TEST_F(SheetTest, HandsMessagesToTheirHandlers) {
  Look([&] {
    EXPECT_EQ(first.SendMessage(HandledMessage, 40, 2), 42);
    EXPECT_EQ(first.SendMessage(HandledMessage, 0), 0) << "an exception that came out of a window";
    for (const int code : {int{CBN_SELCHANGE}, CBN_SELCHANGE + 1})
      first.SendMessage(WM_COMMAND, MAKEWPARAM(IDC_CHOICE, static_cast<unsigned>(code)),
                        reinterpret_cast<LPARAM>(first.list.m_hWnd));
    EXPECT_EQ(TakeCalls(), Calls{"selected"});

    // A window without an attached object has the same object for its whole life.
    CWnd *help = sheet.GetDlgItem(IDHELP);
    EXPECT_EQ(help, CWnd::FromHandle(GetDlgItem(sheet.m_hWnd, IDHELP)));
    CString text;
    help->SetWindowText("\x83\x5c?");
    help->GetWindowText(text);
    EXPECT_EQ(text, "\x83\x5c?");
    EXPECT_EQ(first.GetDlgItem(1), nullptr);
  });
}

// ---- The application ----

class App : public CWinApp {
public:
  int DoMessageBox(const char *prompt, UINT type, UINT) override {
    calls.push_back(prompt + std::to_string(type));
    return IDNO;
  }
};

class AskingPage : public Page {
  BOOL OnQueryCancel() override {
    EXPECT_NE(AfxGetResourceHandle(), nullptr);
    EXPECT_EQ(AfxMessageBox("sure? ", MB_YESNO), IDNO);
    return TRUE;
  }
};

TEST_F(SheetTest, WorksForTheLibraryWithinItsWindowsAlone) {
  const App app;
  refusing = false;
  AskingPage page;
  Sheet asking{&page};
  WithUser({[](HWND top) { Press(top, PSBTN_CANCEL); }}, [&] { asking.DoModal(); });
  EXPECT_EQ(TakeCalls(), (Calls{"init", "active", "sure? 4"}));
  EXPECT_EQ(AfxGetApp(), nullptr) << "the host's, which it has not";
  const AFX_MAINTAIN_STATE2 state(AfxGetStaticModuleState());
  EXPECT_EQ(AfxGetApp(), &app);
}

TEST(OwnerTest, IsTheActivePopup) {
  const auto make = [](HWND owner) {
    return CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, owner, nullptr, nullptr, nullptr);
  };
  HWND main = make(nullptr);
  HWND box = make(main);

  HWND topLevel = nullptr;
  SetFocus(box);
  EXPECT_EQ(CWnd::GetSafeOwner_(&topLevel), box);
  EXPECT_EQ(topLevel, main);
  EXPECT_FALSE(IsWindowEnabled(main));
  EXPECT_EQ(CWnd::GetSafeOwner_(&topLevel), box);
  EXPECT_EQ(topLevel, nullptr) << "one that was disabled before";
  EnableWindow(main, TRUE);
  SetFocus(main);
  EXPECT_EQ(CWnd::GetSafeOwner_(&topLevel), main);
  EXPECT_EQ(topLevel, nullptr);
  DestroyWindow(main);
}

} // namespace
