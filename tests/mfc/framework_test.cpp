// Wizards built with the framework's classes and run by a user: which window owns a box, which messages of a control
// its parent gets, and whose handlers are called. Scripts test what the sheet asks its pages, with the built program.
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

// The calls to the classes below, in order.
Calls calls;

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

  Page() : CPropertyPage(IDD_SET_MAILER_SELECT, 0) {}

protected:
  void DoDataExchange(CDataExchange *exchange) override { DDX_Control(exchange, IDC_CHOICE, list); }
  BOOL OnInitDialog() override {
    CPropertyPage::OnInitDialog();
    for (const DWORD_PTR data : {5, 6})
      list.SetItemData(list.AddString("entry"), data);
    return TRUE;
  }

  void OnSelChange() { calls.emplace_back("selected"); }
  LRESULT OnHandled(WPARAM wParam, LPARAM lParam) {
    if (wParam == 0)
      throw std::runtime_error("a handler fails");
    return static_cast<LRESULT>(wParam) + lParam;
  }
  DECLARE_MESSAGE_MAP()
};

IMPLEMENT_DYNAMIC(Page, CPropertyPage)

BEGIN_MESSAGE_MAP(Page, CPropertyPage)
ON_MESSAGE(HandledMessage, OnHandled)
ON_CBN_SELCHANGE(IDC_CHOICE, OnSelChange)
END_MESSAGE_MAP()

class SheetTest : public ::testing::Test {
protected:
  void SetUp() override {
    calls.clear();
    sheet.m_psh.dwFlags |= PSH_WIZARD;
  }

  // Inspects a wizard of that page, then cancels it.
  void Look(Page &page, const std::function<void()> &look) {
    sheet.AddPage(&page);
    const auto step = [&](HWND top) {
      look();
      SendMessageA(top, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
    };
    WithUser({step}, [&] { EXPECT_EQ(sheet.DoModal(), 0); });
  }

  Page first;
  CPropertySheet sheet;
};

TEST_F(SheetTest, OwnsABoxThatComesUpBehindAnotherApplication) {
  Look(first, [&] {
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

TEST_F(SheetTest, AsksTheControlInItsParentsPlace) {
  Look(first, [&] {
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
  Look(first, [&] {
    EXPECT_EQ(first.SendMessage(HandledMessage, 40, 2), 42);
    EXPECT_EQ(first.SendMessage(HandledMessage, 0), 0) << "an exception that came out of a window";
    for (const int code : {int{CBN_SELCHANGE}, CBN_SELCHANGE + 1})
      first.SendMessage(WM_COMMAND, MAKEWPARAM(IDC_CHOICE, static_cast<unsigned>(code)),
                        reinterpret_cast<LPARAM>(first.list.m_hWnd));
    EXPECT_EQ(TakeCalls(), Calls{"selected"});

    // A window without an attached object has the same object for its whole life.
    CWnd *button = sheet.GetDlgItem(IDCANCEL);
    EXPECT_EQ(button, CWnd::FromHandle(GetDlgItem(sheet.m_hWnd, IDCANCEL)));
    CString text;
    button->SetWindowText("\x83\x5c?");
    button->GetWindowText(text);
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
  AskingPage page;
  Look(page, [] {});
  EXPECT_EQ(TakeCalls(), Calls{"sure? 4"});
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
