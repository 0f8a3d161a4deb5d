// Windows and controls: the messages that they send and in which order, and what becomes of odd calls.
#include "win32/win32_ui.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using Events = std::vector<std::string>;

Events events;
// What a test does from within a window's procedure.
std::function<void(HWND window, UINT message)> reaction;

Events TakeEvents() { return std::exchange(events, {}); }

void Record(const std::string &what, LRESULT number) { events.push_back(what + " " + std::to_string(number)); }

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const std::pair<UINT, const char *> recorded[] = {{WM_DESTROY, "destroy"},
                                                    {WM_NCDESTROY, "ncdestroy"},
                                                    {WM_SETFOCUS, "focus"},
                                                    {WM_KILLFOCUS, "unfocus"},
                                                    {WM_ENABLE, "enable"}};
  for (const auto &[code, name] : recorded)
    if (code == message)
      Record(name, GetDlgCtrlID(window));
  if (message == WM_COMMAND)
    Record("command " + std::to_string(LOWORD(wParam)), HIWORD(wParam));
  if (message == WM_MEASUREITEM) {
    auto &item = *reinterpret_cast<MEASUREITEMSTRUCT *>(lParam);
    Record("measure", static_cast<int>(item.itemID));
    item.itemHeight = 20;
  }
  if (message == WM_DELETEITEM) {
    const auto &item = *reinterpret_cast<const DELETEITEMSTRUCT *>(lParam);
    EXPECT_EQ(SendMessageA(item.hwndItem, CB_GETITEMDATA, item.itemID, 0), static_cast<LRESULT>(item.itemData));
    Record("delete", static_cast<LRESULT>(item.itemData));
  }
  if (reaction)
    reaction(window, message);
  return DefWindowProcA(window, message, wParam, lParam);
}

HWND Create(const char *className, DWORD style, HWND parent, int id, const char *text = "") {
  return CreateWindowExA(0, className, text, style, 5, 6, 100, 100, parent,
                         reinterpret_cast<HMENU>(static_cast<intptr_t>(id)), nullptr, nullptr);
}

// A window whose messages are recorded.
HWND CreateRecorder(DWORD style, HWND parent, int id) {
  const HWND window = Create("STATIC", style, parent, id);
  SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure));
  return window;
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
    top = CreateRecorder(WS_POPUP | WS_VISIBLE, nullptr, 0);
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
  HWND RecorderChild(int id) const { return CreateRecorder(WS_CHILD | WS_VISIBLE, top, id); }
};

TEST_F(WindowsTest, GoInOrder) {
  const HWND outer = RecorderChild(1);
  const HWND first = CreateRecorder(WS_CHILD, outer, 2);
  const HWND second = CreateRecorder(WS_CHILD, outer, 3);
  EXPECT_EQ(GetWindow(outer, GW_CHILD), first);
  EXPECT_EQ(GetWindow(first, GW_HWNDNEXT), second);
  EXPECT_EQ(GetWindow(second, GW_HWNDNEXT), nullptr);
  EXPECT_FALSE(IsWindowVisible(second));
  RECT rect = {};
  GetWindowRect(second, &rect);
  EXPECT_EQ(std::vector<LONG>({rect.left, rect.top, rect.right, rect.bottom}), std::vector<LONG>({15, 18, 115, 118}));

  const HWND popup = CreateRecorder(WS_POPUP, second, 0);
  EXPECT_EQ(GetParent(popup), top); // which owns it
  TakeEvents();
  DestroyWindow(outer);
  EXPECT_EQ(TakeEvents(), (Events{"destroy 1", "destroy 2", "destroy 3", "ncdestroy 2", "ncdestroy 3", "ncdestroy 1"}));
  DestroyWindow(top);
  EXPECT_FALSE(IsWindow(popup));
}

TEST_F(WindowsTest, CanBeDestroyedDuringTheirDestruction) {
  for (const UINT moment : {WM_DESTROY, WM_NCDESTROY}) {
    const HWND outer = RecorderChild(1);
    const HWND inner = CreateRecorder(WS_CHILD, outer, 2);
    reaction = [=](HWND window, UINT message) {
      if (window == inner && message == moment) {
        DestroyWindow(outer);
        CreateRecorder(WS_CHILD, outer, 3);
      }
    };
    DestroyWindow(inner);
    EXPECT_FALSE(IsWindow(inner));
    EXPECT_FALSE(IsWindow(outer));
  }
}

TEST_F(WindowsTest, NothingIsDoneToOnesThatAreGone) {
  const HWND child = RecorderChild(1);
  reaction = [](HWND window, UINT message) {
    if (message == WM_USER)
      DestroyWindow(window);
  };
  SendMessageA(child, WM_USER, 0, 0);
  EXPECT_FALSE(IsWindow(child));
  EXPECT_FALSE(PostMessageA(child, WM_NULL, 0, 0));
  EXPECT_EQ(SendMessageA(child, WM_GETFONT, 0, 0), 0);
  EXPECT_FALSE(SetWindowTextA(child, "text"));
  EXPECT_EQ(GetDlgItem(top, 1), nullptr);
}

TEST_F(WindowsTest, FocusFollowsWhatCanHaveIt) {
  const HWND first = RecorderChild(1);
  const HWND second = RecorderChild(2);
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
  const HWND popup = CreateRecorder(WS_POPUP | WS_VISIBLE, top, 0);
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
  SendMessageA(check, BM_SETCHECK, FALSE, 0);
  EXPECT_EQ(SendMessageA(check, BM_GETCHECK, 0, 0), FALSE);
  EXPECT_EQ(TakeEvents(), (Events{"unfocus 0", "command 1 0", "command 2 0"})); // a program's check mark is no click
}

constexpr const char *Changed[] = {"command 1 1024", "command 1 768"}; // EN_UPDATE and EN_CHANGE

TEST_F(WindowsTest, EditsHandleTyping) {
  // The last number is that of the characters in notifications.
  const std::tuple<DWORD, const char *, const char *, const char *, int> cases[] = {
      {0, "", "ab\bc", "ac", 4},
      {0, "", "a\r\t\x1b", "a", 1},
      {0, "", "\b", "", 0},
      {ES_MULTILINE | ES_READONLY, "text", "x\b", "text", 0},
  };
  for (const auto &[style, before, typed, after, characters] : cases) {
    SCOPED_TRACE(testing::PrintToString(typed));
    const HWND edit = Create("EDIT", WS_CHILD | WS_VISIBLE | style, top, 1, before);
    SendMessageA(edit, EM_SETSEL, 10, 10);
    TakeEvents();
    Type(edit, typed);
    EXPECT_EQ(TextOf(edit), after);
    Events told;
    for (int each = 0; each < characters; ++each)
      told.insert(told.end(), std::begin(Changed), std::end(Changed));
    EXPECT_EQ(TakeEvents(), told);
    DestroyWindow(edit);
  }
}

TEST_F(WindowsTest, EditsLimitWhatIsTypedOnly) {
  const HWND edit = Child("EDIT", 0, 1);
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
    box = Child("COMBOBOX", style, 1);
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
  SetWindowTextA(box, "XYZ00001"); // which shows entries alone
  EXPECT_EQ(TextOf(box), "ABD05678");
  EXPECT_EQ(GetWindowTextLengthA(box), 8);
  EXPECT_EQ(Send(CB_SETCURSEL, 9), CB_ERR);
  EXPECT_EQ(Send(CB_GETCURSEL), 1);
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
  Make(CBS_DROPDOWN);
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

} // namespace
