#include "terminal/keyboard.h"

#include "utf8.h"
#include "window_controls.h"

#include <algorithm>
#include <cctype>

namespace terminal {

namespace {

// The window as it is when the key comes.
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

std::string TypeInto(HWND edit, const std::string &character) {
  const std::optional<std::string> bytes = FromUtf8(character);
  if (!bytes)
    return ToUtf8("この文字は使えません: ") + character;
  if (IsFull(edit, bytes->size()))
    return ToUtf8("これ以上は入力できません。");
  for (const char byte : *bytes)
    SendMessageA(edit, WM_CHAR, static_cast<unsigned char>(byte), 0);
  return {};
}

// Where the character before a place in a text of the code page begins, and where the one behind it ends.
Selection Around(const std::string &text, size_t place) {
  Selection around;
  for (size_t at = 0; at < text.size();) {
    const size_t next = std::min(at + (IsDBCSLeadByte(static_cast<BYTE>(text[at])) != FALSE ? 2 : 1), text.size());
    if (next <= place)
      around.begin = at;
    around.end = next;
    if (next > place)
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
  const size_t place = back ? (selected ? selection.begin : around.begin) : (selected ? selection.end : around.end);
  Select(edit, place, place);
}

void EraseAhead(HWND edit) {
  const Selection selection = SelectionIn(edit);
  if (selection.begin == selection.end)
    Select(edit, selection.end, Around(ReadRawText(edit), selection.end).end);
  Erase(edit);
}

// ---- Mnemonics ----

bool TakesFocus(const Control &control) {
  return control.IsUsable() && (control.IsButton() || control.IsList() || control.className == "edit");
}

// A button or check box of that letter is clicked; behind a text of that letter the next control gets the focus.
void PressMnemonic(const Scene &scene, const std::string &letter) {
  if (letter.size() != 1)
    return;
  const auto key = static_cast<char>(std::tolower(static_cast<unsigned char>(letter.front())));
  const auto found = std::ranges::find_if(
      scene.controls, [&](const Control &control) { return control.mnemonic == key && control.IsUsable(); });
  if (found == scene.controls.end())
    return;
  if (found->kind != ControlKind::Label)
    return Click(found->window);
  const auto next = std::find_if(found, scene.controls.end(), TakesFocus);
  if (next != scene.controls.end())
    FocusOn(scene.top, next->window);
}

// ---- Keys ----

std::string PressCharacter(const Scene &scene, const std::string &character) {
  if (scene.open != scene.focused)
    CloseList(scene);
  if (const HWND edit = scene.Edit())
    return TypeInto(edit, character);
  if (scene.IsFocused(ControlKind::List)) {
    if (character == " ")
      ShowList(*scene.focused, scene.open != scene.focused);
    else if (character.size() == 1)
      SendMessageA(scene.focused->window, WM_CHAR, static_cast<unsigned char>(character.front()), 0);
  } else if (character == " " && (scene.focused != nullptr && scene.focused->IsButton())) {
    Click(scene.focused->window);
  } else {
    PressMnemonic(scene, character);
  }
  return {};
}

void ToggleList(const Scene &scene) {
  if (scene.IsListFocused())
    ShowList(*scene.focused, scene.open != scene.focused);
}

void PressEnter(const Scene &scene) {
  if (scene.open != nullptr)
    CloseList(scene);
  else
    PostKey(scene.top, VK_RETURN);
}

void PressEscape(const Scene &scene) {
  if (scene.open != nullptr)
    CloseList(scene);
  else
    PostKey(scene.top, VK_ESCAPE);
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

void EraseIn(const Scene &scene, KeyCode code) {
  const HWND edit = scene.Edit();
  if (edit == nullptr)
    return;
  if (code == KeyCode::Backspace)
    SendMessageA(edit, WM_CHAR, VK_BACK, 0);
  else if (code == KeyCode::Delete)
    EraseAhead(edit);
  else {
    Select(edit, 0, ReadRawText(edit).size());
    Erase(edit);
  }
}

// What the keys do that bring no character with them.
constexpr struct {
  KeyCode code;
  void (*press)(const Scene &scene, Scrolling &scrolling);
} Actions[] = {
    {KeyCode::Enter, [](const Scene &scene, Scrolling &) { PressEnter(scene); }},
    {KeyCode::Escape, [](const Scene &scene, Scrolling &) { PressEscape(scene); }},
    {KeyCode::Tab, [](const Scene &scene, Scrolling &) { PressTab(scene, false); }},
    {KeyCode::BackTab, [](const Scene &scene, Scrolling &) { PressTab(scene, true); }},
    {KeyCode::Backspace, [](const Scene &scene, Scrolling &) { EraseIn(scene, KeyCode::Backspace); }},
    {KeyCode::Delete, [](const Scene &scene, Scrolling &) { EraseIn(scene, KeyCode::Delete); }},
    {KeyCode::EraseAll, [](const Scene &scene, Scrolling &) { EraseIn(scene, KeyCode::EraseAll); }},
    {KeyCode::Left, [](const Scene &scene, Scrolling &) { PressLeftOrRight(scene, true); }},
    {KeyCode::Right, [](const Scene &scene, Scrolling &) { PressLeftOrRight(scene, false); }},
    {KeyCode::Up, [](const Scene &scene, Scrolling &scrolling) { PressUpOrDown(scene, true, scrolling); }},
    {KeyCode::Down, [](const Scene &scene, Scrolling &scrolling) { PressUpOrDown(scene, false, scrolling); }},
    {KeyCode::Home, [](const Scene &scene, Scrolling &scrolling) { PressHomeOrEnd(scene, true, scrolling); }},
    {KeyCode::End, [](const Scene &scene, Scrolling &scrolling) { PressHomeOrEnd(scene, false, scrolling); }},
    {KeyCode::PageUp, [](const Scene &, Scrolling &scrolling) { Scroll(scrolling, -scrolling.shown); }},
    {KeyCode::PageDown, [](const Scene &, Scrolling &scrolling) { Scroll(scrolling, scrolling.shown); }},
    {KeyCode::Help, [](const Scene &scene, Scrolling &) { PressHelp(scene); }},
    {KeyCode::ToggleList, [](const Scene &scene, Scrolling &) { ToggleList(scene); }},
};

} // namespace

std::string Press(HWND top, const Key &key, Scrolling &scrolling) {
  const Scene scene(top);
  if (key.code == KeyCode::Character)
    return PressCharacter(scene, key.text);
  if (key.code == KeyCode::Mnemonic) {
    CloseList(scene);
    PressMnemonic(scene, key.text);
  }
  for (const auto &[code, press] : Actions)
    if (code == key.code)
      press(scene, scrolling);
  return {};
}

} // namespace terminal
