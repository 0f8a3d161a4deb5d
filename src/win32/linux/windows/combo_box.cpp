// Combo boxes: a list with an edit control or, as a drop-down list, with a part that shows the selected entry. The
// owner draws the entries if it wants to. The parent is told of what the user does, not of what a program does.
#include "win32/linux/text/code_page.h"
#include "win32/linux/text/names.h"
#include "win32/linux/windows/painting.h"
#include "win32/linux/windows/system_controls.h"

#include <algorithm>
#include <string_view>

namespace {

using machine::WindowPtr;

constexpr int Nothing = -1; // as the selected item; in messages about heights and drawing: the part that is always seen
constexpr DWORD CBS_TYPEMASK = 0x3;

// What the owner is told to draw.
constexpr UINT ODA_DRAWENTIRE = 0x1;
constexpr UINT ODS_DISABLED = 0x0004;
constexpr UINT ODS_COMBOBOXEDIT = 0x1000;

// What the parent is told of.
constexpr WORD CBN_SETFOCUS = 3;
constexpr WORD CBN_KILLFOCUS = 4;
constexpr WORD CBN_EDITCHANGE = 5;
constexpr WORD CBN_EDITUPDATE = 6;
constexpr WORD CBN_DROPDOWN = 7;
constexpr WORD CBN_CLOSEUP = 8;
constexpr WORD CBN_SELENDOK = 9;
constexpr WORD CBN_SELENDCANCEL = 10;

constexpr UINT PlainItemHeight = 12;

struct Item {
  std::string text;
  ULONG_PTR data = 0;
};

struct ComboState : machine::WindowState {
  std::vector<Item> items;
  int selection = Nothing;
  bool dropped = false;
  HWND edit = nullptr;
  UINT closedHeight = PlainItemHeight;
  UINT itemHeight = PlainItemHeight;
};

struct ComboBox {
  WindowPtr window;
  std::shared_ptr<ComboState> state;

  bool IsDropDownList() const { return (window->style & CBS_TYPEMASK) == CBS_DROPDOWNLIST; }
  bool IsOwnerDrawn() const { return window->Has(CBS_OWNERDRAWFIXED); }
  UINT Id() const { return static_cast<UINT>(window->id); }
  void Notify(WORD code) const { machine::NotifyParent(*window, code); }

  Item *ItemAt(WPARAM index) const { return index < state->items.size() ? &state->items[index] : nullptr; }
  Item *Selected() const { return state->selection == Nothing ? nullptr : &state->items[size_t(state->selection)]; }
};

LRESULT SendToOwner(const ComboBox &box, UINT message, void *details) {
  return SendMessageA(box.window->parent, message, box.Id(), reinterpret_cast<LPARAM>(details));
}

// ---- Drawing ----

UINT Measure(const ComboBox &box, int item) {
  MEASUREITEMSTRUCT measure = {};
  measure.CtlType = ODT_COMBOBOX;
  measure.CtlID = box.Id();
  measure.itemID = static_cast<UINT>(item);
  measure.itemHeight = PlainItemHeight;
  SendToOwner(box, WM_MEASUREITEM, &measure);
  return measure.itemHeight;
}

void Draw(const ComboBox &box, HDC context, int item, UINT itemState, const RECT &rect) {
  const Item *const drawn = box.ItemAt(static_cast<WPARAM>(item));
  const bool disabled = box.window->Has(machine::WS_DISABLED);
  DRAWITEMSTRUCT draw = {};
  draw.CtlType = ODT_COMBOBOX;
  draw.CtlID = box.Id();
  draw.itemID = static_cast<UINT>(item);
  draw.itemAction = ODA_DRAWENTIRE;
  draw.itemState = itemState | (disabled ? ODS_DISABLED : 0);
  draw.hwndItem = box.window->handle;
  draw.hDC = context;
  draw.rcItem = rect;
  draw.itemData = drawn != nullptr ? drawn->data : static_cast<ULONG_PTR>(CB_ERR);
  SendToOwner(box, WM_DRAWITEM, &draw);
}

void DrawClosedPart(const ComboBox &box, HDC context) {
  const LONG width = box.window->bounds.right - box.window->bounds.left;
  const bool focused = GetFocus() == box.window->handle && !box.state->dropped;
  Draw(box, context, box.state->selection, ODS_COMBOBOXEDIT | (focused ? ODS_FOCUS | ODS_SELECTED : 0),
       {0, 0, width, static_cast<LONG>(box.state->closedHeight)});
}

void DrawList(const ComboBox &box, HDC context) {
  const LONG width = box.window->bounds.right - box.window->bounds.left;
  const auto height = static_cast<LONG>(box.state->itemHeight);
  for (int item = 0; item < static_cast<int>(box.state->items.size()); ++item)
    Draw(box, context, item, item == box.state->selection ? ODS_SELECTED : 0,
         {0, item * height, width, (item + 1) * height});
}

LRESULT AnswerPaint(const ComboBox &box, WPARAM, LPARAM) {
  PAINTSTRUCT paint;
  const HDC context = BeginPaint(box.window->handle, &paint);
  if (box.IsOwnerDrawn()) {
    DrawClosedPart(box, context);
    if (box.state->dropped)
      DrawList(box, context);
  }
  EndPaint(box.window->handle, &paint);
  return 0;
}

// ---- The selection ----

bool IsSameStart(const std::string &text, const std::string &start) {
  const auto upper = [](const std::string &cp932) { return text::ToUpper(text::ToWide(cp932)); };
  return upper(text).starts_with(upper(start));
}

// The first entry behind another that begins with a text, and round again from the first.
int FindItem(const ComboBox &box, int behind, const std::string &start) {
  const int count = static_cast<int>(box.state->items.size());
  for (int step = 1; step <= count; ++step)
    if (const int item = (behind + step) % count; IsSameStart(box.state->items[size_t(item)].text, start))
      return item;
  return Nothing;
}

std::string SelectedText(const ComboBox &box) {
  const Item *const selected = box.Selected();
  return selected != nullptr ? selected->text : "";
}

void SelectItem(const ComboBox &box, int item) {
  box.state->selection = item;
  machine::Invalidate(box.window);
  if (box.state->edit != nullptr)
    SetWindowTextA(box.state->edit, SelectedText(box).c_str());
}

// The user's choice.
void ChooseItem(const ComboBox &box, int item) {
  if (box.ItemAt(static_cast<WPARAM>(item)) == nullptr || item == box.state->selection)
    return;
  SelectItem(box, item);
  if (!box.state->dropped)
    box.Notify(CBN_SELENDOK);
  box.Notify(CBN_SELCHANGE);
}

LRESULT AnswerCharacter(const ComboBox &box, WPARAM character, LPARAM) {
  ChooseItem(box, FindItem(box, box.state->selection, {static_cast<char>(character)}));
  return 0;
}

void ShowList(const ComboBox &box, bool show) {
  if (box.state->dropped == show)
    return;
  box.state->dropped = show;
  if (show) {
    box.Notify(CBN_DROPDOWN);
    // The list opens at the entry that the typed text begins.
    if (box.state->edit != nullptr && box.state->selection == Nothing && GetWindowTextLengthA(box.state->edit) > 0)
      if (const int item = FindItem(box, Nothing, machine::WindowOf(box.state->edit)->text); item != Nothing)
        SelectItem(box, item);
  } else {
    box.Notify(CBN_SELENDCANCEL);
    box.Notify(CBN_CLOSEUP);
  }
  machine::Invalidate(box.window);
}

// Whether a key closes the list that is open.
bool ClosesList(const ComboBox &box, WPARAM key) {
  return box.state->dropped && (key == VK_RETURN || key == VK_ESCAPE);
}

LRESULT AnswerKey(const ComboBox &box, WPARAM key, LPARAM) {
  if (ClosesList(box, key))
    ShowList(box, false);
  const int last = static_cast<int>(box.state->items.size()) - 1;
  const struct {
    int key;
    int item;
  } steps[] = {{VK_UP, box.state->selection - 1}, {VK_DOWN, box.state->selection + 1}, {VK_HOME, 0}, {VK_END, last}};
  for (const auto &step : steps)
    if (static_cast<WPARAM>(step.key) == key)
      ChooseItem(box, step.item);
  return 0;
}

// ---- The entries ----

// The parent that draws the entries frees their data, so it is told before they are removed.
void DeleteItems(const ComboBox &box) {
  for (size_t index = box.state->items.size(); box.IsOwnerDrawn() && index-- > 0 && index < box.state->items.size();) {
    DELETEITEMSTRUCT deleted = {ODT_COMBOBOX, box.Id(), static_cast<UINT>(index), box.window->handle,
                                box.state->items[index].data};
    SendToOwner(box, WM_DELETEITEM, &deleted);
  }
  box.state->items.clear();
  box.state->selection = Nothing;
}

LRESULT CopyItemText(const Item &item, char *buffer) {
  std::ranges::copy(item.text, buffer);
  buffer[item.text.size()] = '\0';
  return static_cast<LRESULT>(item.text.size());
}

// ---- Messages of combo boxes ----

LRESULT AnswerAddString(const ComboBox &box, WPARAM, LPARAM text) {
  auto &items = box.state->items;
  items.push_back({reinterpret_cast<const char *>(text), 0});
  machine::Invalidate(box.window);
  return static_cast<LRESULT>(items.size()) - 1;
}

LRESULT AnswerCount(const ComboBox &box, WPARAM, LPARAM) { return static_cast<LRESULT>(box.state->items.size()); }

LRESULT AnswerReset(const ComboBox &box, WPARAM, LPARAM) {
  DeleteItems(box);
  SelectItem(box, Nothing);
  return TRUE;
}

LRESULT AnswerSelection(const ComboBox &box, WPARAM, LPARAM) { return box.state->selection; }

LRESULT AnswerSelect(const ComboBox &box, WPARAM index, LPARAM) {
  const int item = static_cast<int>(index);
  if (item != Nothing && box.ItemAt(index) == nullptr)
    return CB_ERR;
  SelectItem(box, item);
  return item;
}

LRESULT AnswerItemText(const ComboBox &box, WPARAM index, LPARAM buffer) {
  const Item *const item = box.ItemAt(index);
  return item != nullptr && buffer != 0 ? CopyItemText(*item, reinterpret_cast<char *>(buffer)) : CB_ERR;
}

LRESULT AnswerItemTextLength(const ComboBox &box, WPARAM index, LPARAM) {
  const Item *const item = box.ItemAt(index);
  return item != nullptr ? static_cast<LRESULT>(item->text.size()) : CB_ERR;
}

LRESULT AnswerItemData(const ComboBox &box, WPARAM index, LPARAM) {
  const Item *const item = box.ItemAt(index);
  return item != nullptr ? static_cast<LRESULT>(item->data) : CB_ERR;
}

LRESULT AnswerSetItemData(const ComboBox &box, WPARAM index, LPARAM data) {
  Item *const item = box.ItemAt(index);
  if (item == nullptr)
    return CB_ERR;
  item->data = static_cast<ULONG_PTR>(data);
  return TRUE;
}

LRESULT AnswerItemHeight(const ComboBox &box, WPARAM, LPARAM) { return box.state->itemHeight; }

LRESULT AnswerSetItemHeight(const ComboBox &box, WPARAM index, LPARAM height) {
  UINT &part = static_cast<int>(index) == Nothing ? box.state->closedHeight : box.state->itemHeight;
  part = static_cast<UINT>(height);
  machine::Invalidate(box.window);
  return 0;
}

LRESULT AnswerShowList(const ComboBox &box, WPARAM show, LPARAM) {
  ShowList(box, show != FALSE);
  return TRUE;
}

LRESULT AnswerDropped(const ComboBox &box, WPARAM, LPARAM) { return box.state->dropped; }

// ---- Messages of windows ----

LRESULT AnswerCreate(const ComboBox &box, WPARAM, LPARAM) {
  if (!box.IsDropDownList()) {
    const auto id = reinterpret_cast<HMENU>(static_cast<uintptr_t>(machine::ComboEditId));
    box.state->edit = CreateWindowExA(0, "Edit", "", WS_CHILD | WS_VISIBLE | machine::ES_COMBO, 0, 0, 0, 0,
                                      box.window->handle, id, nullptr, nullptr);
  }
  if (box.IsOwnerDrawn()) {
    box.state->closedHeight = Measure(box, Nothing);
    box.state->itemHeight = Measure(box, 0);
  }
  return 0;
}

LRESULT AnswerDestroy(const ComboBox &box, WPARAM, LPARAM) {
  DeleteItems(box);
  return 0;
}

LRESULT AnswerDialogCode(const ComboBox &box, WPARAM key, LPARAM) {
  return ClosesList(box, key) ? DLGC_WANTALLKEYS : 0;
}

// What the edit control tells becomes what the combo box tells.
LRESULT AnswerCommand(const ComboBox &box, WPARAM command, LPARAM) {
  const struct {
    WORD heard;
    WORD told;
  } codes[] = {{machine::EN_UPDATE, CBN_EDITUPDATE},
               {machine::EN_CHANGE, CBN_EDITCHANGE},
               {machine::EN_SETFOCUS, CBN_SETFOCUS},
               {machine::EN_KILLFOCUS, CBN_KILLFOCUS}};
  const WORD code = HIWORD(command);
  if (code == machine::EN_UPDATE)
    box.state->selection = Nothing; // a typed text is no entry of the list, even if it reads like one
  if (code == machine::EN_KILLFOCUS)
    ShowList(box, false);
  for (const auto &[heard, told] : codes)
    if (heard == code)
      box.Notify(told);
  return 0;
}

LRESULT AnswerSetFocus(const ComboBox &box, WPARAM, LPARAM) {
  if (box.state->edit != nullptr) {
    SetFocus(box.state->edit);
    return 0;
  }
  machine::Invalidate(box.window);
  box.Notify(CBN_SETFOCUS);
  return 0;
}

LRESULT AnswerKillFocus(const ComboBox &box, WPARAM, LPARAM) {
  if (box.state->edit != nullptr)
    return 0;
  ShowList(box, false);
  machine::Invalidate(box.window);
  box.Notify(CBN_KILLFOCUS);
  return 0;
}

// The text of a drop-down list is that of its selected entry, and can't be set.
LRESULT AnswerSetText(const ComboBox &box, WPARAM, LPARAM text) {
  return box.state->edit != nullptr ? SendMessageA(box.state->edit, machine::WM_SETTEXT, 0, text) : CB_ERR;
}

LRESULT AnswerText(const ComboBox &box, WPARAM size, LPARAM buffer) {
  return box.state->edit != nullptr ? SendMessageA(box.state->edit, machine::WM_GETTEXT, size, buffer)
                                    : machine::CopyText(SelectedText(box), reinterpret_cast<char *>(buffer), size);
}

LRESULT AnswerTextLength(const ComboBox &box, WPARAM, LPARAM) {
  return box.state->edit != nullptr ? SendMessageA(box.state->edit, machine::WM_GETTEXTLENGTH, 0, 0)
                                    : static_cast<LRESULT>(SelectedText(box).size());
}

struct Answer {
  UINT message;
  LRESULT (*answer)(const ComboBox &box, WPARAM wParam, LPARAM lParam);
};
constexpr Answer Answers[] = {
    {CB_ADDSTRING, AnswerAddString},
    {CB_GETCOUNT, AnswerCount},
    {CB_RESETCONTENT, AnswerReset},
    {CB_GETCURSEL, AnswerSelection},
    {CB_SETCURSEL, AnswerSelect},
    {CB_GETLBTEXT, AnswerItemText},
    {CB_GETLBTEXTLEN, AnswerItemTextLength},
    {CB_GETITEMDATA, AnswerItemData},
    {CB_SETITEMDATA, AnswerSetItemData},
    {CB_GETITEMHEIGHT, AnswerItemHeight},
    {CB_SETITEMHEIGHT, AnswerSetItemHeight},
    {CB_SHOWDROPDOWN, AnswerShowList},
    {CB_GETDROPPEDSTATE, AnswerDropped},
    {machine::WM_CREATE, AnswerCreate},
    {WM_NCDESTROY, AnswerDestroy},
    {WM_GETDLGCODE, AnswerDialogCode},
    {machine::WM_SETTEXT, AnswerSetText},
    {machine::WM_GETTEXT, AnswerText},
    {machine::WM_GETTEXTLENGTH, AnswerTextLength},
    {WM_SETFOCUS, AnswerSetFocus},
    {WM_KILLFOCUS, AnswerKillFocus},
    {WM_COMMAND, AnswerCommand},
    {WM_CHAR, AnswerCharacter},
    {WM_KEYDOWN, AnswerKey},
    {WM_PAINT, AnswerPaint},
};

} // namespace

LRESULT machine::ComboBoxProcedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr window = WindowOf(handle);
  const ComboBox box = {window, StateOf<ComboState>(window, message)};
  if (!box.state)
    return DefWindowProcA(handle, message, wParam, lParam);
  const auto answer = std::ranges::find(Answers, message, &Answer::message);
  return answer != std::end(Answers) ? answer->answer(box, wParam, lParam)
                                     : DefWindowProcA(handle, message, wParam, lParam);
}
