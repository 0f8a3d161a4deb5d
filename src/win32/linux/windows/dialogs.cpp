#include "win32/linux/windows/dialogs.h"

#include "win32/linux/windows/painting.h"
#include "win32/linux/windows/system_controls.h"

#include <algorithm>

using machine::DialogTemplate;
using machine::StateOf;
using machine::TemplateWindow;
using machine::Window;
using machine::WindowOf;
using machine::WindowPtr;

namespace {

// The upper half of an answer to DM_GETDEFID that has an id.
constexpr WORD DC_HASDEFID = 0x534B;

struct DialogState : machine::WindowState {
  DLGPROC procedure = nullptr;
  int defaultId = 0;
  HFONT font = nullptr; // the one that the template asks for

  DialogState() = default;
  DialogState(const DialogState &) = delete;
  DialogState &operator=(const DialogState &) = delete;
  ~DialogState() override {
    if (font != nullptr)
      DeleteObject(font);
  }
};

// A dialog unit is a quarter of this wide and an eighth of it high.
constexpr int BaseWidth = 6;
constexpr int BaseHeight = 12;
constexpr int DotsPerInch = 96;
constexpr int PointsPerInch = 72;

constexpr LONG PixelsAcross(LONG units) { return units * BaseWidth / 4; }
constexpr LONG PixelsDown(LONG units) { return units * BaseHeight / 8; }

// ---- The order of the controls ----

bool IsOpen(const Window &window) { return window.Has(WS_VISIBLE) && !window.Has(machine::WS_DISABLED); }

// All controls of a dialog, with those of an open page where the page stands.
void CollectControls(const Window &dialog, std::vector<WindowPtr> &controls) {
  for (const HWND child : dialog.children) {
    const WindowPtr control = WindowOf(child);
    if (IsOpen(*control) && StateOf<DialogState>(control))
      CollectControls(*control, controls);
    else
      controls.push_back(control);
  }
}

// Moves the focus as the keyboard does, which selects all of an edit control's text.
void FocusControl(HWND control) {
  if ((SendMessageA(control, WM_GETDLGCODE, 0, 0) & machine::DLGC_HASSETSEL) != 0)
    SendMessageA(control, EM_SETSEL, 0, -1);
  SetFocus(control);
}

void FocusFirstStop(HWND dialog) {
  if (const HWND first = machine::NextTabStop(dialog, nullptr, false))
    FocusControl(first);
}

// ---- What a dialog does if its procedure doesn't ----

void SetButtonType(HWND button, DWORD type) {
  if (const WindowPtr window = WindowOf(button))
    window->style = (window->style & ~BS_TYPEMASK) | type;
}

LRESULT SetDefaultId(HWND dialog, DialogState &state, int id) {
  SetButtonType(GetDlgItem(dialog, state.defaultId), BS_PUSHBUTTON);
  SetButtonType(GetDlgItem(dialog, id), BS_DEFPUSHBUTTON);
  state.defaultId = id;
  return TRUE;
}

void MoveFocus(HWND dialog, WPARAM where, bool isControl) {
  const HWND target = isControl ? reinterpret_cast<HWND>(where) : machine::NextTabStop(dialog, GetFocus(), where != 0);
  if (target != nullptr)
    FocusControl(target);
}

// Closing a dialog is what its Cancel button does, if that can be pressed.
void Close(HWND dialog) {
  const HWND cancel = GetDlgItem(dialog, IDCANCEL);
  if (cancel == nullptr || IsWindowEnabled(cancel) != FALSE)
    PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), reinterpret_cast<LPARAM>(cancel));
}

LRESULT DialogDefault(HWND handle, DialogState &state, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
  case DM_GETDEFID:
    return state.defaultId != 0 ? MAKELPARAM(static_cast<unsigned>(state.defaultId), DC_HASDEFID) : 0;
  case machine::DM_SETDEFID:
    return SetDefaultId(handle, state, static_cast<int>(wParam));
  case WM_NEXTDLGCTL:
    MoveFocus(handle, wParam, LOWORD(static_cast<uintptr_t>(lParam)) != 0);
    return 0;
  case WM_SETFOCUS:
    FocusFirstStop(handle);
    return 0;
  case WM_GETFONT:
    return reinterpret_cast<LRESULT>(state.font);
  case WM_CLOSE:
    Close(handle);
    return 0;
  default:
    return DefWindowProcA(handle, message, wParam, lParam);
  }
}

// ---- Keys ----

// The button that a key presses: Esc Cancel, Enter the focused one or, if no button has the focus, the default one.
int ButtonOf(WPARAM key, HWND dialog) {
  constexpr LRESULT PushButton = machine::DLGC_DEFPUSHBUTTON | machine::DLGC_UNDEFPUSHBUTTON;
  if (key == VK_ESCAPE)
    return IDCANCEL;
  if ((SendMessageA(GetFocus(), WM_GETDLGCODE, 0, 0) & PushButton) != 0)
    return GetDlgCtrlID(GetFocus());
  const auto answer = static_cast<uintptr_t>(SendMessageA(dialog, DM_GETDEFID, 0, 0));
  return HIWORD(answer) == DC_HASDEFID ? LOWORD(answer) : IDOK;
}

// ---- Creation ----

HFONT FontOf(const DialogTemplate &dialog) {
  if (dialog.pointSize == 0)
    return nullptr;
  const int height = (dialog.pointSize * DotsPerInch + PointsPerInch / 2) / PointsPerInch;
  return CreateFontA(-height, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, nullptr);
}

HWND CreateFrom(const TemplateWindow &window, const char *className, DWORD style, HWND parent) {
  const auto id = reinterpret_cast<HMENU>(static_cast<intptr_t>(window.id));
  return CreateWindowExA(0, className, window.text.c_str(), style, PixelsAcross(window.x), PixelsDown(window.y),
                         PixelsAcross(window.width), PixelsDown(window.height), parent, id, nullptr, nullptr);
}

// Fills a dialog that was just made.
void Populate(HWND dialog, DialogState &state, const DialogTemplate &from) {
  state.font = FontOf(from);
  for (const TemplateWindow &control : from.controls) {
    const HWND made = CreateFrom(control, control.className.c_str(), control.style | WS_CHILD, dialog);
    if ((SendMessageA(made, WM_GETDLGCODE, 0, 0) & machine::DLGC_DEFPUSHBUTTON) != 0)
      state.defaultId = control.id;
  }
}

} // namespace

namespace machine {

HWND CreateDialogFrom(const DialogTemplate &dialog, HWND parent, DLGPROC procedure, LPARAM parameter) {
  const HWND handle = CreateFrom(dialog.window, "#32770", dialog.window.style, parent);
  const auto state = StateOf<DialogState>(WindowOf(handle));
  if (!state)
    return nullptr;
  state->procedure = procedure;
  Populate(handle, *state, dialog);
  const auto first = reinterpret_cast<WPARAM>(NextTabStop(handle, nullptr, false));
  if (SendMessageA(handle, WM_INITDIALOG, first, parameter) != FALSE && (dialog.window.style & WS_CHILD) == 0)
    FocusFirstStop(handle);
  return IsWindow(handle) != FALSE ? handle : nullptr;
}

bool PressDialogKey(HWND dialog, const PostedMessage &message) {
  const bool isKey = message.message == WM_KEYDOWN && (message.wParam == VK_RETURN || message.wParam == VK_ESCAPE);
  if (!isKey || (message.window != dialog && !IsWithin(message.window, dialog)))
    return false;
  if ((SendMessageA(message.window, WM_GETDLGCODE, message.wParam, 0) & DLGC_WANTALLKEYS) != 0)
    return false;
  const int id = ButtonOf(message.wParam, dialog);
  const HWND button = GetDlgItem(dialog, id);
  if (button == nullptr || IsWindowEnabled(button) != FALSE)
    SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(static_cast<unsigned>(id), BN_CLICKED),
                 reinterpret_cast<LPARAM>(button));
  return true;
}

HWND NextTabStop(HWND dialog, HWND control, bool previous) {
  std::vector<WindowPtr> controls;
  if (const WindowPtr window = WindowOf(dialog))
    CollectControls(*window, controls);
  if (previous)
    std::ranges::reverse(controls);
  const auto start = std::ranges::find_if(
      controls, [&](const WindowPtr &each) { return each->handle == control || IsWithin(control, each->handle); });
  if (start != controls.end())
    std::rotate(controls.begin(), start + 1, controls.end()); // the one to start from comes last
  const auto next = std::ranges::find_if(
      controls, [](const WindowPtr &each) { return IsOpen(*each) && each->Has(machine::WS_TABSTOP); });
  return next != controls.end() ? (*next)->handle : nullptr;
}

LRESULT DialogProcedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr dialog = WindowOf(handle);
  const auto state = StateOf<DialogState>(dialog, message);
  if (!state)
    return 0;
  dialog->messageResult = 0;
  const INT_PTR handled = state->procedure != nullptr ? state->procedure(handle, message, wParam, lParam) : FALSE;
  if (message == WM_INITDIALOG) // whose answer isn't in DWLP_MSGRESULT
    return handled;
  if (IsWindow(handle) == FALSE)
    return 0;
  return handled != FALSE ? dialog->messageResult : DialogDefault(handle, *state, message, wParam, lParam);
}

} // namespace machine

// ---- Controls by their ids ----

HWND GetDlgItem(HWND handle, int id) {
  const WindowPtr dialog = WindowOf(handle);
  if (!dialog)
    return nullptr;
  const auto found = std::ranges::find_if(dialog->children, [&](HWND child) { return GetDlgCtrlID(child) == id; });
  return found != dialog->children.end() ? *found : nullptr;
}

int GetDlgCtrlID(HWND control) {
  const WindowPtr window = WindowOf(control);
  return window ? window->id : 0;
}

BOOL SetDlgItemTextA(HWND dialog, int id, const char *text) { return SetWindowTextA(GetDlgItem(dialog, id), text); }

LRESULT SendDlgItemMessageA(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam) {
  return SendMessageA(GetDlgItem(dialog, id), message, wParam, lParam);
}

BOOL MapDialogRect(HWND dialog, RECT *rect) {
  if (IsWindow(dialog) == FALSE)
    return FALSE;
  *rect = {PixelsAcross(rect->left), PixelsDown(rect->top), PixelsAcross(rect->right), PixelsDown(rect->bottom)};
  return TRUE;
}
