// Windows, dialogs and controls: the messages that they send, in their order, and the results of unusual calls.
#include "support/dialog_template.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using Events = std::vector<std::string>;

Events events;
// Lets a test decide what a window does with a message.
std::function<std::optional<LRESULT>(HWND window, UINT message)> reaction;

Events TakeEvents() { return std::exchange(events, {}); }

void Record(const std::string &what, LRESULT number) { events.push_back(what + " " + std::to_string(number)); }

template <typename Details> Details &As(LPARAM details) { return *reinterpret_cast<Details *>(details); }

void RecordMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const struct {
    UINT message;
    const char *name;
  } recorded[] = {{WM_NCCREATE, "nccreate"},   {WM_CREATE, "create"},  {WM_DESTROY, "destroy"},
                  {WM_NCDESTROY, "ncdestroy"}, {WM_SETFOCUS, "focus"}, {WM_KILLFOCUS, "unfocus"},
                  {WM_ENABLE, "enable"},       {WM_SETFONT, "font"},   {WM_INITDIALOG, "dialog"}};
  for (const auto &each : recorded)
    if (each.message == message)
      Record(each.name, GetDlgCtrlID(window));
  if (message == WM_COMMAND)
    Record("command " + std::to_string(LOWORD(wParam)), HIWORD(wParam));
  if (message == WM_MEASUREITEM) {
    Record("measure", static_cast<int>(As<MEASUREITEMSTRUCT>(lParam).itemID));
    As<MEASUREITEMSTRUCT>(lParam).itemHeight = 20;
  }
  if (message == WM_DELETEITEM) {
    const auto &item = As<DELETEITEMSTRUCT>(lParam);
    EXPECT_EQ(SendMessageA(item.hwndItem, CB_GETITEMDATA, item.itemID, 0), static_cast<LRESULT>(item.itemData));
    Record("delete", static_cast<LRESULT>(item.itemData));
  }
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  RecordMessage(window, message, wParam, lParam);
  const std::optional<LRESULT> reacted = reaction ? reaction(window, message) : std::nullopt;
  return reacted ? *reacted : DefWindowProcA(window, message, wParam, lParam);
}

HWND Create(const char *className, DWORD style, HWND parent, int id, const char *text = "") {
  return CreateWindowExA(0, className, text, style, 5, 6, 100, 100, parent,
                         reinterpret_cast<HMENU>(static_cast<intptr_t>(id)), nullptr, nullptr);
}

std::string TextOf(HWND window) {
  char text[100] = "";
  GetWindowTextA(window, text, sizeof text);
  return text;
}

void Type(HWND window, const std::string &text) {
  for (const char character : text)
    SendMessageA(window, WM_CHAR, static_cast<unsigned char>(character), 0);
}

class WindowsTest : public testing::Test {
protected:
  HWND top = nullptr;

  void SetUp() override {
    reaction = nullptr;
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = Procedure;
    windowClass.lpszClassName = "Recorder";
    RegisterClassA(&windowClass); // fails after the first test
    top = Create("recorder", WS_POPUP | WS_VISIBLE, nullptr, 0);
    ASSERT_NE(top, nullptr);
    TakeEvents();
  }
  void TearDown() override {
    reaction = nullptr;
    if (IsWindow(top))
      DestroyWindow(top);
  }

  HWND Child(const char *className, DWORD style, int id) const {
    return Create(className, WS_CHILD | WS_VISIBLE | style, top, id);
  }
};

TEST_F(WindowsTest, AreMadeAndDestroyedInOrder) {
  const HWND outer = Child("Recorder", 0, 1);
  const HWND first = Create("Recorder", WS_CHILD, outer, 2);
  const HWND second = Create("Recorder", WS_CHILD, outer, 3);
  EXPECT_EQ(TakeEvents(), (Events{"nccreate 1", "create 1", "nccreate 2", "create 2", "nccreate 3", "create 3"}));
  EXPECT_EQ(GetWindow(outer, GW_CHILD), first);
  EXPECT_EQ(GetWindow(first, GW_HWNDNEXT), second);
  EXPECT_EQ(GetWindow(second, GW_HWNDNEXT), nullptr);
  EXPECT_TRUE(IsChild(top, second));
  EXPECT_FALSE(IsWindowVisible(second));
  RECT rect = {};
  GetWindowRect(second, &rect);
  EXPECT_EQ(std::vector<LONG>({rect.left, rect.top, rect.right, rect.bottom}), std::vector<LONG>({15, 18, 115, 118}));

  const HWND popup = Create("Recorder", WS_POPUP, second, 0);
  EXPECT_EQ(GetParent(popup), top); // its owner
  TakeEvents();
  DestroyWindow(outer);
  EXPECT_EQ(TakeEvents(), (Events{"destroy 1", "destroy 2", "destroy 3", "ncdestroy 2", "ncdestroy 3", "ncdestroy 1"}));
  DestroyWindow(top);
  EXPECT_FALSE(IsWindow(popup));
}

TEST_F(WindowsTest, CanBeDestroyedDuringTheirDestruction) {
  for (const UINT moment : {WM_DESTROY, WM_NCDESTROY}) {
    const HWND outer = Child("Recorder", 0, 1);
    const HWND inner = Create("Recorder", WS_CHILD, outer, 2);
    reaction = [=](HWND window, UINT message) -> std::optional<LRESULT> {
      if (window == inner && message == moment) {
        DestroyWindow(outer);
        Create("Recorder", WS_CHILD, outer, 3);
      }
      return std::nullopt;
    };
    DestroyWindow(inner);
    EXPECT_FALSE(IsWindow(inner));
    EXPECT_FALSE(IsWindow(outer));
  }
}

TEST_F(WindowsTest, CallsOnDestroyedWindowsFail) {
  const HWND child = Child("Recorder", 0, 1);
  reaction = [](HWND window, UINT message) -> std::optional<LRESULT> {
    if (message == WM_USER)
      DestroyWindow(window);
    return std::nullopt;
  };
  SendMessageA(child, WM_USER, 0, 0);
  EXPECT_FALSE(IsWindow(child));
  char text[8] = "before";
  SetLastError(0);
  EXPECT_FALSE(PostMessageA(child, WM_NULL, 0, 0));
  EXPECT_EQ(static_cast<LONG>(GetLastError()), ERROR_INVALID_WINDOW_HANDLE);
  EXPECT_EQ(SendMessageA(child, WM_GETTEXT, 8, reinterpret_cast<LPARAM>(text)), 0);
  EXPECT_FALSE(SetWindowTextA(child, "text"));
  EXPECT_EQ(GetDlgItem(top, 1), nullptr);
}

TEST_F(WindowsTest, KeepTextsOfAnyLength) {
  const std::string big(1000000, 'x');
  EXPECT_TRUE(SetWindowTextA(top, big.c_str()));
  EXPECT_EQ(GetWindowTextLengthA(top), static_cast<int>(big.size()));
  char text[4];
  SetWindowTextA(top, "\x95\x5c\x95\x5c");
  EXPECT_EQ(GetWindowTextA(top, text, sizeof text), 2); // no half of a character is copied
  EXPECT_STREQ(text, "\x95\x5c");
}

TEST_F(WindowsTest, FocusLeavesWindowsThatCannotHaveIt) {
  const HWND first = Child("Recorder", 0, 1);
  const HWND second = Child("Recorder", 0, 2);
  TakeEvents();
  SetFocus(first);
  EXPECT_EQ(SetFocus(second), first);
  EXPECT_EQ(TakeEvents(), (Events{"unfocus 0", "focus 1", "unfocus 1", "focus 2"}));
  EXPECT_FALSE(EnableWindow(second, FALSE));
  EXPECT_EQ(TakeEvents(), (Events{"unfocus 2", "enable 2"}));
  EXPECT_EQ(GetFocus(), nullptr);
  EXPECT_EQ(SetFocus(second), nullptr);
  EXPECT_TRUE(EnableWindow(second, TRUE));
  for (const auto &lose : std::initializer_list<std::function<void()>>{[=] { ShowWindow(second, SW_HIDE); },
                                                                       [=] { DestroyWindow(second); }}) {
    ShowWindow(second, SW_SHOW);
    SetFocus(second);
    lose();
    EXPECT_EQ(GetFocus(), top);
  }
  const HWND popup = Create("Recorder", WS_POPUP | WS_VISIBLE, top, 0);
  EXPECT_EQ(GetActiveWindow(), popup);
  EXPECT_EQ(GetLastActivePopup(top), popup);
  DestroyWindow(popup);
  EXPECT_EQ(GetActiveWindow(), top);
  EXPECT_EQ(GetLastActivePopup(top), top);
}

// ---- Controls ----

TEST_F(WindowsTest, ButtonsAreClicked) {
  const HWND push = Child("BUTTON", BS_PUSHBUTTON, 1);
  const HWND check = Child("BUTTON", BS_AUTOCHECKBOX, 2);
  SendMessageA(push, BM_CLICK, 0, 0);
  EXPECT_EQ(GetFocus(), push);
  SendMessageA(check, BM_CLICK, 0, 0);
  EXPECT_EQ(SendMessageA(check, BM_GETCHECK, 0, 0), static_cast<LRESULT>(BST_CHECKED));
  SendMessageA(check, BM_SETCHECK, BST_UNCHECKED, 0);
  EXPECT_EQ(SendMessageA(check, BM_GETCHECK, 0, 0), static_cast<LRESULT>(BST_UNCHECKED));
  EXPECT_EQ(TakeEvents(), (Events{"unfocus 0", "command 1 0", "command 2 0"})); // checking by a program isn't a click
}

constexpr const char *Changed[] = {"command 1 1024", "command 1 768"}; // EN_UPDATE and EN_CHANGE

TEST_F(WindowsTest, EditsHandleTyping) {
  const struct {
    DWORD style;
    const char *before, *typed, *after;
    int told; // the number of characters in notifications
  } cases[] = {
      {ES_AUTOHSCROLL, "", "ab\bc", "ac", 4}, {ES_AUTOHSCROLL, "", "a\r\t\x1b", "a", 1},
      {ES_AUTOHSCROLL, "", "\b", "", 0},      {ES_MULTILINE, "", "a\rb", "a\r\nb", 3},
      {ES_MULTILINE, "a\r\n", "\b", "a", 1},  {ES_MULTILINE | ES_READONLY, "text", "x\b", "text", 0},
  };
  for (const auto &test : cases) {
    SCOPED_TRACE(testing::PrintToString(test.typed));
    const HWND edit = Create("EDIT", WS_CHILD | WS_VISIBLE | test.style, top, 1, test.before);
    SendMessageA(edit, EM_SETSEL, 10, 10);
    TakeEvents();
    Type(edit, test.typed);
    EXPECT_EQ(TextOf(edit), test.after);
    Events told;
    for (int each = 0; each < test.told; ++each)
      told.insert(told.end(), std::begin(Changed), std::end(Changed));
    EXPECT_EQ(TakeEvents(), told);
    DestroyWindow(edit);
  }
}

TEST_F(WindowsTest, EditsLimitOnlyTyping) {
  const HWND edit = Child("EDIT", ES_AUTOHSCROLL, 1);
  SendMessageA(edit, EM_LIMITTEXT, 4, 0);
  EXPECT_EQ(SendMessageA(edit, EM_GETLIMITTEXT, 0, 0), 4);
  SetWindowTextA(edit, "abcdef");
  EXPECT_EQ(TextOf(edit), "abcdef");
  EXPECT_EQ(TakeEvents(), Events(std::begin(Changed), std::end(Changed)));
  SetWindowTextA(edit, "abcd");
  TakeEvents();
  SendMessageA(edit, EM_SETSEL, 1, 2);
  SendMessageA(edit, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>("XYZ"));
  EXPECT_EQ(TextOf(edit), "aXcd");
  EXPECT_EQ(TakeEvents(), (Events{"command 1 1281", Changed[0], Changed[1]})); // EN_MAXTEXT comes first
  DWORD begin = 0;
  DWORD end = 0;
  SendMessageA(edit, EM_SETSEL, 0, -1);
  SendMessageA(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&begin), reinterpret_cast<LPARAM>(&end));
  EXPECT_EQ(std::pair(begin, end), std::pair(DWORD{0}, DWORD{4}));
}

class ComboBoxTest : public WindowsTest {
protected:
  HWND box = nullptr;

  void Make(DWORD style) {
    box = Child("COMBOBOX", style | WS_VSCROLL, 1);
    for (const char *const text : {"ABC01234", "ABD05678", "XYZ00001"})
      SendMessageA(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
  }
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageA(box, message, wParam, lParam);
  }
};

TEST_F(ComboBoxTest, NotifiesOnlyOfTheUsersChoices) {
  Make(CBS_DROPDOWNLIST);
  SetFocus(box);
  TakeEvents();
  EXPECT_EQ(Send(CB_SETCURSEL, 1), 1);
  EXPECT_EQ(TextOf(box), "ABD05678");
  EXPECT_EQ(GetWindowTextLengthA(box), 8);
  EXPECT_EQ(Send(CB_SETCURSEL, 9), CB_ERR);
  EXPECT_EQ(Send(CB_GETCURSEL), 1);
  EXPECT_LT(Send(WM_SETTEXT, 0, reinterpret_cast<LPARAM>("XYZ00001")), 0); // only entries can be shown
  EXPECT_EQ(TakeEvents(), Events());
  const Events chosen = {"command 1 9", "command 1 1"}; // CBN_SELENDOK, CBN_SELCHANGE
  Send(WM_KEYDOWN, VK_DOWN);
  EXPECT_EQ(TakeEvents(), chosen);
  EXPECT_EQ(Send(CB_GETCURSEL), 2);
  Send(WM_CHAR, 'a');
  EXPECT_EQ(TakeEvents(), chosen);
  EXPECT_EQ(Send(CB_GETCURSEL), 0);
  Send(CB_SHOWDROPDOWN, TRUE);
  EXPECT_TRUE(Send(CB_GETDROPPEDSTATE));
  Send(WM_KEYDOWN, VK_DOWN);
  Send(CB_SHOWDROPDOWN, FALSE);
  Send(CB_SHOWDROPDOWN, FALSE);
  EXPECT_EQ(TakeEvents(), (Events{"command 1 7", "command 1 1", "command 1 10", "command 1 8"}));
}

TEST_F(ComboBoxTest, HasAnEditControl) {
  Make(CBS_DROPDOWN | CBS_AUTOHSCROLL);
  const HWND edit = GetWindow(box, GW_CHILD);
  Send(CB_SETCURSEL, 1);
  EXPECT_EQ(TextOf(box), "ABD05678");
  SetWindowTextA(box, "program's");
  EXPECT_EQ(TextOf(edit), "program's");
  EXPECT_EQ(Send(CB_GETCURSEL), 1);
  EXPECT_EQ(TakeEvents(), Events());
  SendMessageA(edit, EM_SETSEL, 0, -1);
  Type(edit, "X");
  EXPECT_EQ(TextOf(box), "X");
  EXPECT_EQ(Send(CB_GETCURSEL), CB_ERR);                           // the typed text isn't an entry of the list
  EXPECT_EQ(TakeEvents(), (Events{"command 1 6", "command 1 5"})); // CBN_EDITUPDATE, CBN_EDITCHANGE
  Send(CB_SHOWDROPDOWN, TRUE);
  EXPECT_EQ(TextOf(box), "XYZ00001"); // selected when the list opens
  Send(CB_SHOWDROPDOWN, FALSE);
  SetFocus(box);
  EXPECT_EQ(GetFocus(), edit);
  Send(CB_RESETCONTENT);
  EXPECT_EQ(TextOf(box), "");
}

TEST_F(ComboBoxTest, IsDrawnByItsOwner) {
  Make(CBS_DROPDOWNLIST | CBS_OWNERDRAWFIXED | CBS_HASSTRINGS);
  EXPECT_EQ(TakeEvents(), (Events{"measure -1", "measure 0"}));
  EXPECT_EQ(Send(CB_GETITEMHEIGHT), 20);
  for (WPARAM item = 0; item < 3; ++item)
    Send(CB_SETITEMDATA, item, static_cast<LPARAM>(item + 10));
  char text[20] = "";
  EXPECT_EQ(Send(CB_GETLBTEXTLEN, 2), 8);
  EXPECT_EQ(Send(CB_GETLBTEXT, 2, reinterpret_cast<LPARAM>(text)), 8);
  EXPECT_STREQ(text, "XYZ00001");
  for (const UINT message : {CB_GETLBTEXT, CB_GETLBTEXTLEN, CB_GETITEMDATA, CB_SETITEMDATA})
    EXPECT_EQ(Send(message, 3, reinterpret_cast<LPARAM>(text)), CB_ERR) << message;
  Send(CB_RESETCONTENT);
  EXPECT_EQ(Send(CB_GETCOUNT), 0);
  EXPECT_EQ(TakeEvents(), (Events{"delete 12", "delete 11", "delete 10"}));
  Send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>("again"));
  Send(CB_SETITEMDATA, 0, 7);
  DestroyWindow(box);
  EXPECT_EQ(TakeEvents(), (Events{"delete 7"}));
}

// ---- Dialogs ----

INT_PTR CALLBACK DialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  RecordMessage(dialog, message, wParam, lParam);
  if (message == WM_INITDIALOG) {
    Record("parameter", lParam);
    Record("first", GetDlgCtrlID(reinterpret_cast<HWND>(wParam)));
    return TRUE;
  }
  return FALSE;
}

HWND CreateFrom(const Template &dialog, HWND parent, LPARAM parameter) {
  return CreateDialogIndirectParamA(nullptr, dialog.Bytes(), parent, DialogProcedure, parameter);
}

const std::vector<Control> Controls = {
    {100, 0, StaticAtom, u"\x8868"},
    {101, WS_TABSTOP | ES_AUTOHSCROLL, EditAtom, u"edit"},
    {102, WS_TABSTOP | CBS_DROPDOWNLIST | CBS_OWNERDRAWFIXED | CBS_HASSTRINGS, ComboBoxAtom, u""},
    {103, WS_TABSTOP | BS_DEFPUSHBUTTON, ButtonAtom, u"&Go"},
    {IDCANCEL, WS_TABSTOP | WS_DISABLED, ButtonAtom, u"Cancel"},
};

TEST_F(WindowsTest, DialogsComeFromTemplates) {
  const HWND dialog = CreateFrom(Template(WS_POPUP | WS_VISIBLE, Controls), top, 5);
  ASSERT_NE(dialog, nullptr);
  Events made = TakeEvents();
  made.resize(6);
  EXPECT_EQ(made, (Events{"font 0", "measure -1", "measure 0", "dialog 0", "parameter 5", "first 101"}));
  EXPECT_EQ(TextOf(dialog), "Caption");
  EXPECT_EQ(TextOf(GetDlgItem(dialog, 100)), "\x95\x5c");
  EXPECT_EQ(GetFocus(), GetDlgItem(dialog, 101));
  EXPECT_NE(SendMessageA(dialog, WM_GETFONT, 0, 0), 0);
  EXPECT_EQ(SendDlgItemMessageA(dialog, 101, WM_GETFONT, 0, 0), SendMessageA(dialog, WM_GETFONT, 0, 0));
  EXPECT_EQ(SendMessageA(dialog, DM_GETDEFID, 0, 0), MAKELPARAM(103, DC_HASDEFID));
  EXPECT_EQ(CreateFrom(Template(WS_POPUP, {{1, 0, 0x8F, u"of no class"}}), top, 0), nullptr);
}

TEST_F(WindowsTest, DialogsMoveTheFocus) {
  const HWND dialog = CreateFrom(Template(WS_POPUP | WS_VISIBLE, Controls), top, 0);
  const HWND page = CreateFrom(Template(WS_CHILD | DS_CONTROL, Controls), dialog, 0);
  EXPECT_EQ(GetFocus(), GetDlgItem(dialog, 101)); // a hidden page doesn't get the focus
  const auto stops = [&] {
    std::vector<int> ids;
    HWND control = nullptr;
    do {
      control = GetNextDlgTabItem(dialog, control, FALSE);
      ids.push_back(GetDlgCtrlID(control) + (GetParent(control) == page ? 1000 : 0));
    } while (ids.size() == 1 || ids.back() != ids.front());
    return ids;
  };
  EXPECT_EQ(stops(), (std::vector{101, 102, 103, 101}));
  ShowWindow(page, SW_SHOW);
  EXPECT_EQ(stops(), (std::vector{101, 102, 103, 1101, 1102, 1103, 101}));
  SetFocus(page);
  EXPECT_EQ(GetFocus(), GetDlgItem(page, 101));
  SendDlgItemMessageA(page, 101, EM_SETSEL, 0, 0);
  for (const auto &[where, isControl, id] : {std::tuple{WPARAM{0}, 0, 102},
                                             {WPARAM{1}, 0, 101},
                                             {reinterpret_cast<WPARAM>(GetDlgItem(page, 103)), 1, 103}}) {
    SendMessageA(page, WM_NEXTDLGCTL, where, isControl);
    EXPECT_EQ(GetFocus(), GetDlgItem(page, id)) << id;
  }
  EXPECT_EQ(SendDlgItemMessageA(page, 101, EM_GETSEL, 0, 0), MAKELPARAM(0, 4)); // as with the keyboard

  EnableWindow(dialog, FALSE);
  const HWND box = CreateFrom(Template(WS_POPUP | WS_VISIBLE, Controls), dialog, 0);
  EXPECT_EQ(GetFocus(), GetDlgItem(box, 101));
  EnableWindow(dialog, TRUE);
  DestroyWindow(box);
  EXPECT_EQ(GetFocus(), GetDlgItem(page, 103));
}

// ---- Text ----

TEST(WindowTextTest, ComparesAsADictionary) {
  const struct {
    const char *left, *right;
    int order;
  } cases[] = {{"a", "A", -1}, {"B", "a", 1}, {"ab", "AA", 1}, {"1", "a", -1},
               {"_", "1", -1}, {"", "", 0},   {"", "a", -1},   {"C:\\a", "C:\\a\\b", -1}};
  for (const auto &test : cases) {
    EXPECT_EQ(lstrcmpA(test.left, test.right), test.order) << test.left << " " << test.right;
    EXPECT_EQ(lstrcmpA(test.right, test.left), -test.order) << test.left << " " << test.right;
  }
}

} // namespace
