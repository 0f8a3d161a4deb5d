#include "terminal/keyboard.h"

#include "terminal/columns.h"
#include "utf8.h"
#include "window_controls.h"

#include <algorithm>
#include <curses.h>
#include <cwctype>

namespace terminal {

namespace {

// The window as it is when a key is pressed.
struct Scene {
  HWND top;
  std::vector<Control> controls;
  const Control *focused = nullptr; // null if the focus is nowhere in it
  const Control *open = nullptr;    // the combo box whose list is open

  explicit Scene(HWND window) : top(window), controls(ControlsIn(window)) {
    for (const Control &control : controls) {
      if (control.focused)
        focused = &control;
      if (control.listIsOpen)
        open = &control;
    }
  }
  Scene(const Scene &) = delete;
  Scene &operator=(const Scene &) = delete;

  bool IsFocused(ControlKind kind) const { return focused != nullptr && focused->kind == kind; }
  bool IsListFocused() const { return focused != nullptr && focused->IsList(); }
  // Where typed characters go, null for nowhere.
  HWND Edit() const { return focused != nullptr ? focused->edit : nullptr; }
};

void ShowList(const Control &list, bool open) { SendMessageA(list.window, CB_SHOWDROPDOWN, open ? TRUE : FALSE, 0); }

void CloseList(const Scene &scene) {
  if (scene.open != nullptr)
    ShowList(*scene.open, false);
}

void Click(HWND button) { SendMessageA(button, BM_CLICK, 0, 0); }

void MoveFocus(HWND top, bool back) { SendMessageA(top, WM_NEXTDLGCTL, back ? TRUE : FALSE, FALSE); }

void FocusOn(HWND top, HWND control) { SendMessageA(top, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE); }

void SendKey(HWND window, int key) { SendMessageA(window, WM_KEYDOWN, static_cast<WPARAM>(key), 0); }

// ---- Typing ----

void Select(HWND edit, size_t begin, size_t end) {
  SendMessageA(edit, EM_SETSEL, static_cast<WPARAM>(begin), static_cast<LPARAM>(end));
}

void Erase(HWND edit) { SendMessageA(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>("")); }

bool IsFull(HWND edit, size_t more) {
  const Selection selection = SelectionIn(edit);
  const size_t kept = static_cast<size_t>(GetWindowTextLengthA(edit)) - (selection.end - selection.begin);
  return kept + more > static_cast<size_t>(SendMessageA(edit, EM_GETLIMITTEXT, 0, 0));
}

std::wstring TypeInto(HWND edit, wchar_t character) {
  const std::optional<std::string> bytes = FromUtf8(Narrow(character));
  if (!bytes)
    return std::wstring(L"この文字は使えません: ") + character;
  if (IsFull(edit, bytes->size()))
    return L"これ以上は入力できません。";
  for (const char byte : *bytes)
    SendMessageA(edit, WM_CHAR, static_cast<unsigned char>(byte), 0);
  return {};
}

// From the beginning of the character before an offset to the end of the one behind it, in a text of the code page.
Selection Around(const std::string &text, size_t offset) {
  Selection around;
  for (size_t at = 0; at < text.size();) {
    const size_t next = std::min(at + (IsDBCSLeadByte(static_cast<BYTE>(text[at])) != FALSE ? 2 : 1), text.size());
    if (next <= offset)
      around.begin = at;
    around.end = next;
    if (next > offset)
      return around;
    at = next;
  }
  around.end = text.size();
  return around;
}

// The caret goes to the end of the selection or, without one, a character on.
void MoveCaret(HWND edit, bool back) {
  const Selection selection = SelectionIn(edit);
  const Selection around = Around(ReadRawText(edit), back ? selection.begin : selection.end);
  const bool selected = selection.begin != selection.end;
  const size_t caret = back ? (selected ? selection.begin : around.begin) : (selected ? selection.end : around.end);
  Select(edit, caret, caret);
}

void EraseAhead(HWND edit) {
  const Selection selection = SelectionIn(edit);
  if (selection.begin == selection.end)
    Select(edit, selection.end, Around(ReadRawText(edit), selection.end).end);
  Erase(edit);
}

// ---- Mnemonics ----

bool TakesFocus(const Control &control) {
  return control.IsUsable() && (control.IsButton() || control.IsList() || control.IsEdit());
}

// A button or check box of that letter is clicked; behind a text of that letter the next control gets the focus.
void PressMnemonic(const Scene &scene, wchar_t letter) {
  const wint_t key = std::towlower(static_cast<wint_t>(letter));
  const auto found = std::ranges::find_if(scene.controls, [&](const Control &control) {
    return control.mnemonic != '\0' && static_cast<wint_t>(control.mnemonic) == key && control.IsUsable();
  });
  if (found == scene.controls.end())
    return;
  if (found->kind != ControlKind::Label)
    return Click(found->window);
  const auto next = std::find_if(found, scene.controls.end(), TakesFocus);
  if (next != scene.controls.end())
    FocusOn(scene.top, next->window);
}

// ---- Keys ----

void ToggleList(const Scene &scene) {
  if (scene.IsListFocused())
    ShowList(*scene.focused, scene.open != scene.focused);
}

std::wstring PressCharacter(const Scene &scene, wchar_t character) {
  if (scene.open != scene.focused)
    CloseList(scene);
  if (const HWND edit = scene.Edit())
    return TypeInto(edit, character);
  if (scene.IsFocused(ControlKind::List)) {
    if (character == L' ')
      ToggleList(scene);
    else if (character < 0x80)
      SendMessageA(scene.focused->window, WM_CHAR, static_cast<WPARAM>(character), 0);
  } else if (character == L' ' && (scene.focused != nullptr && scene.focused->IsButton())) {
    Click(scene.focused->window);
  } else {
    PressMnemonic(scene, character);
  }
  return {};
}

// Enter or Esc.
void CloseListOrPost(const Scene &scene, int key) {
  if (scene.open != nullptr)
    CloseList(scene);
  else
    PostKey(scene.top, key);
}

void PressTab(const Scene &scene, bool back) {
  CloseList(scene);
  MoveFocus(scene.top, back);
}

void PressHelp(const Scene &scene) {
  CloseList(scene);
  if (const HWND help = GetDlgItem(scene.top, IDHELP); IsUsable(help))
    Click(help);
}

void Scroll(Scrolling &scrolling, int lines) {
  scrolling.first = std::clamp(scrolling.first + lines, 0, std::max(scrolling.lines - scrolling.shown, 0));
}

// What a key means in a list, in a text that scrolls, in a field and elsewhere.
void PressUpOrDown(const Scene &scene, bool up, Scrolling &scrolling) {
  if (scene.open != nullptr || scene.IsListFocused())
    SendKey((scene.open != nullptr ? scene.open : scene.focused)->window, up ? VK_UP : VK_DOWN);
  else if (scene.IsFocused(ControlKind::Document))
    Scroll(scrolling, up ? -1 : 1);
  else
    MoveFocus(scene.top, up);
}

void PressLeftOrRight(const Scene &scene, bool left) {
  if (const HWND edit = scene.Edit())
    MoveCaret(edit, left);
  else if (!scene.IsListFocused())
    MoveFocus(scene.top, left);
}

void PressHomeOrEnd(const Scene &scene, bool home, Scrolling &scrolling) {
  if (scene.open != nullptr || scene.IsFocused(ControlKind::List))
    SendKey((scene.open != nullptr ? scene.open : scene.focused)->window, home ? VK_HOME : VK_END);
  else if (const HWND edit = scene.Edit())
    Select(edit, home ? 0 : ReadRawText(edit).size(), home ? 0 : ReadRawText(edit).size());
  else
    Scroll(scrolling, home ? -scrolling.lines : scrolling.lines);
}

void EraseIn(const Scene &scene, int key) {
  const HWND edit = scene.Edit();
  if (edit == nullptr)
    return;
  if (key == KEY_BACKSPACE) {
    SendMessageA(edit, WM_CHAR, VK_BACK, 0);
  } else if (key == KEY_DC) {
    EraseAhead(edit);
  } else {
    Select(edit, 0, ReadRawText(edit).size());
    Erase(edit);
  }
}

constexpr struct {
  int key;
  void (*press)(const Scene &scene, Scrolling &scrolling);
} Actions[] = {
    {KEY_ENTER, [](const Scene &scene, Scrolling &) { CloseListOrPost(scene, VK_RETURN); }},
    {KEY_CANCEL, [](const Scene &scene, Scrolling &) { CloseListOrPost(scene, VK_ESCAPE); }},
    {KEY_NEXT, [](const Scene &scene, Scrolling &) { PressTab(scene, false); }},
    {KEY_BTAB, [](const Scene &scene, Scrolling &) { PressTab(scene, true); }},
    {KEY_BACKSPACE, [](const Scene &scene, Scrolling &) { EraseIn(scene, KEY_BACKSPACE); }},
    {KEY_DC, [](const Scene &scene, Scrolling &) { EraseIn(scene, KEY_DC); }},
    {KEY_DL, [](const Scene &scene, Scrolling &) { EraseIn(scene, KEY_DL); }},
    {KEY_LEFT, [](const Scene &scene, Scrolling &) { PressLeftOrRight(scene, true); }},
    {KEY_RIGHT, [](const Scene &scene, Scrolling &) { PressLeftOrRight(scene, false); }},
    {KEY_UP, [](const Scene &scene, Scrolling &scrolling) { PressUpOrDown(scene, true, scrolling); }},
    {KEY_DOWN, [](const Scene &scene, Scrolling &scrolling) { PressUpOrDown(scene, false, scrolling); }},
    {KEY_HOME, [](const Scene &scene, Scrolling &scrolling) { PressHomeOrEnd(scene, true, scrolling); }},
    {KEY_END, [](const Scene &scene, Scrolling &scrolling) { PressHomeOrEnd(scene, false, scrolling); }},
    {KEY_PPAGE, [](const Scene &, Scrolling &scrolling) { Scroll(scrolling, -scrolling.shown); }},
    {KEY_NPAGE, [](const Scene &, Scrolling &scrolling) { Scroll(scrolling, scrolling.shown); }},
    {KEY_F(1), [](const Scene &scene, Scrolling &) { PressHelp(scene); }},
    {KEY_F(4), [](const Scene &scene, Scrolling &) { ToggleList(scene); }},
};

} // namespace

std::wstring Press(HWND top, const Key &key, Scrolling &scrolling) {
  const Scene scene(top);
  if (key.alt) {
    CloseList(scene);
    PressMnemonic(scene, key.character);
  } else if (key.character != L'\0') {
    return PressCharacter(scene, key.character);
  }
  for (const auto &[code, press] : Actions)
    if (code == key.code)
      press(scene, scrolling);
  return {};
}

} // namespace terminal
