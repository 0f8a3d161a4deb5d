// Dialogs: made from templates, run by a dialog procedure before the class's own.
#include "win32/linux/windows/dialogs.h"

#include "win32/linux/last_error.h"
#include "win32/linux/text/code_page.h"
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

struct DialogState : machine::WindowState {
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

RECT InPixels(int x, int y, int width, int height) {
  const auto across = [](int64_t units) { return static_cast<LONG>(units * BaseWidth / 4); };
  const auto down = [](int64_t units) { return static_cast<LONG>(units * BaseHeight / 8); };
  return {across(x), down(y), across(width), down(height)};
}

// ---- The order of the controls ----

bool IsStop(const Window &control) { return control.Has(WS_VISIBLE | WS_TABSTOP) && !control.Has(WS_DISABLED); }

// All controls of a dialog, those of dialogs within it that are open to the keyboard in their place.
void CollectControls(const Window &dialog, std::vector<WindowPtr> &controls) {
  for (const HWND child : dialog.children) {
    const WindowPtr control = WindowOf(child);
    const bool open = control->Has(WS_VISIBLE) && !control->Has(WS_DISABLED);
    if (open && (control->exStyle & WS_EX_CONTROLPARENT) != 0)
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
  if (const HWND first = GetNextDlgTabItem(dialog, nullptr, FALSE))
    FocusControl(first);
}

// ---- What dialogs do by themselves ----

void SetButtonType(HWND button, DWORD type) {
  const WindowPtr window = WindowOf(button);
  if (!window || window->className != "Button" || (window->style & BS_TYPEMASK) > BS_DEFPUSHBUTTON)
    return;
  window->style = (window->style & ~BS_TYPEMASK) | type;
  machine::Invalidate(window);
}

LRESULT SetDefaultId(HWND dialog, DialogState &state, int id) {
  SetButtonType(GetDlgItem(dialog, state.defaultId), BS_PUSHBUTTON);
  SetButtonType(GetDlgItem(dialog, id), BS_DEFPUSHBUTTON);
  state.defaultId = id;
  return TRUE;
}

void MoveFocus(HWND dialog, WPARAM where, bool isControl) {
  const HWND target = isControl ? reinterpret_cast<HWND>(where) : GetNextDlgTabItem(dialog, GetFocus(), where != 0);
  if (target != nullptr)
    FocusControl(target);
}

// Closing a dialog is what its Cancel button does, if that can be pressed.
void Close(HWND dialog) {
  const HWND cancel = GetDlgItem(dialog, IDCANCEL);
  if (cancel == nullptr || IsWindowEnabled(cancel) != FALSE)
    PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), reinterpret_cast<LPARAM>(cancel));
}

LRESULT DialogDefault(const WindowPtr &dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND handle = dialog->handle;
  const auto state = StateOf<DialogState>(handle);
  switch (message) {
  case DM_GETDEFID:
    return state && state->defaultId != 0 ? MAKELPARAM(static_cast<unsigned>(state->defaultId), DC_HASDEFID) : 0;
  case DM_SETDEFID:
    return state ? SetDefaultId(handle, *state, static_cast<int>(wParam)) : FALSE;
  case WM_NEXTDLGCTL:
    MoveFocus(handle, wParam, LOWORD(static_cast<uintptr_t>(lParam)) != 0);
    return 0;
  case WM_SETFOCUS:
    FocusFirstStop(handle);
    return 0;
  case WM_GETFONT:
    return reinterpret_cast<LRESULT>(dialog->font);
  case WM_CLOSE:
    Close(handle);
    return 0;
  default:
    return DefWindowProcA(handle, message, wParam, lParam);
  }
}

// ---- Keys ----

// The button that a key presses: Cancel, or the focused one and without one the default one.
int ButtonOf(WPARAM key, HWND dialog) {
  constexpr LRESULT PushButton = machine::DLGC_DEFPUSHBUTTON | machine::DLGC_UNDEFPUSHBUTTON;
  if (key == VK_ESCAPE)
    return IDCANCEL;
  if ((SendMessageA(GetFocus(), WM_GETDLGCODE, 0, 0) & PushButton) != 0)
    return GetDlgCtrlID(GetFocus());
  const auto answer = static_cast<uintptr_t>(SendMessageA(dialog, DM_GETDEFID, 0, 0));
  return HIWORD(answer) == DC_HASDEFID ? LOWORD(answer) : IDOK;
}

// The messages whose answer is the dialog procedure's own, not what it put into DWLP_MSGRESULT.
bool AnswersItself(UINT message) { return message == WM_INITDIALOG || message == WM_COMPAREITEM; }

// ---- Creation ----

HFONT FontOf(const DialogTemplate &dialog) {
  if (dialog.pointSize == 0)
    return nullptr;
  const int height = (dialog.pointSize * DotsPerInch + PointsPerInch / 2) / PointsPerInch;
  return CreateFontA(-height, 0, 0, 0, dialog.weight, dialog.italic, FALSE, FALSE, dialog.charSet, 0, 0, 0, 0,
                     dialog.face.c_str());
}

HWND CreateFrom(const TemplateWindow &window, DWORD style, const std::string &className, HWND parent, HMENU id,
                HINSTANCE instance) {
  const RECT bounds = InPixels(window.x, window.y, window.width, window.height);
  return CreateWindowExA(window.exStyle, className.c_str(), window.text.c_str(), style, bounds.left, bounds.top,
                         bounds.right, bounds.bottom, parent, id, instance, nullptr);
}

bool CreateControl(const TemplateWindow &control, HWND dialog, DialogState &state, HINSTANCE instance) {
  const auto id = reinterpret_cast<HMENU>(static_cast<uintptr_t>(control.id));
  const DWORD style = (control.style & ~WS_POPUP) | WS_CHILD;
  const HWND made = CreateFrom(control, style, control.className, dialog, id, instance);
  if (made == nullptr)
    return false;
  if (state.font != nullptr)
    SendMessageA(made, WM_SETFONT, reinterpret_cast<WPARAM>(state.font), FALSE);
  if ((SendMessageA(made, WM_GETDLGCODE, 0, 0) & machine::DLGC_DEFPUSHBUTTON) != 0)
    state.defaultId = static_cast<int>(control.id);
  return true;
}

// The state of a dialog, also of one whose class has a procedure of its own.
std::shared_ptr<DialogState> EnsureState(const WindowPtr &dialog) {
  auto state = std::dynamic_pointer_cast<DialogState>(dialog->state);
  if (!state)
    dialog->state = state = std::make_shared<DialogState>();
  return state;
}

void Initialise(HWND dialog, const DialogTemplate &from, LPARAM parameter) {
  const HWND first = GetNextDlgTabItem(dialog, nullptr, FALSE);
  const bool takesFocus = (from.window.style & DS_CONTROL) == 0 || (from.window.style & WS_VISIBLE) != 0;
  if (SendMessageA(dialog, WM_INITDIALOG, reinterpret_cast<WPARAM>(first), parameter) != FALSE && takesFocus &&
      IsWindow(dialog) != FALSE)
    FocusFirstStop(dialog);
}

// Fills a dialog that was just made; false if one of the controls can't be had.
bool Populate(HWND dialog, const DialogTemplate &from, HINSTANCE instance) {
  const auto state = EnsureState(WindowOf(dialog));
  state->font = FontOf(from);
  if (state->font != nullptr)
    SendMessageA(dialog, WM_SETFONT, reinterpret_cast<WPARAM>(state->font), FALSE);
  return std::ranges::all_of(
      from.controls, [&](const TemplateWindow &control) { return CreateControl(control, dialog, *state, instance); });
}

} // namespace

HWND machine::CreateDialogFrom(const DialogTemplate &dialog, HINSTANCE instance, HWND parent, DLGPROC procedure,
                               LPARAM parameter) {
  TemplateWindow window = dialog.window;
  if ((window.style & DS_CONTROL) != 0)
    window.exStyle |= WS_EX_CONTROLPARENT;
  const HWND handle = CreateFrom(window, window.style & ~WS_VISIBLE,
                                 window.className.empty() ? "#32770" : window.className, parent, nullptr, instance);
  if (handle == nullptr)
    return nullptr;
  SetWindowLongPtrA(handle, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(procedure));
  if (!Populate(handle, dialog, instance)) {
    DestroyWindow(handle);
    return nullptr;
  }
  Initialise(handle, dialog, parameter);
  if (IsWindow(handle) != FALSE && (window.style & WS_VISIBLE) != 0)
    ShowWindow(handle, SW_SHOW);
  return IsWindow(handle) != FALSE ? handle : nullptr;
}

bool machine::PressDialogKey(HWND dialog, const MSG &message) {
  const bool isKey = message.message == WM_KEYDOWN && (message.wParam == VK_RETURN || message.wParam == VK_ESCAPE);
  if (!isKey || (message.hwnd != dialog && IsChild(dialog, message.hwnd) == FALSE))
    return false;
  const auto asked = reinterpret_cast<LPARAM>(&message);
  if ((SendMessageA(message.hwnd, WM_GETDLGCODE, message.wParam, asked) & DLGC_WANTALLKEYS) != 0)
    return false;
  const int id = ButtonOf(message.wParam, dialog);
  const HWND button = GetDlgItem(dialog, id);
  if (button == nullptr || IsWindowEnabled(button) != FALSE)
    SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(static_cast<unsigned>(id), BN_CLICKED),
                 reinterpret_cast<LPARAM>(button));
  return true;
}

HWND CreateDialogIndirectParamA(HINSTANCE instance, const DLGTEMPLATE *dialog, HWND parent, DLGPROC procedure,
                                LPARAM parameter) {
  const std::optional<DialogTemplate> read = machine::ReadTemplate(dialog);
  return read ? machine::CreateDialogFrom(*read, instance, parent, procedure, parameter) : nullptr;
}

LRESULT DefDlgProcA(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr dialog = WindowOf(handle);
  if (!dialog)
    return 0;
  if (message == WM_NCCREATE)
    EnsureState(dialog);
  else if (message == WM_SETFONT)
    dialog->font = reinterpret_cast<HFONT>(wParam);
  SetWindowLongPtrA(handle, DWLP_MSGRESULT, 0);
  const auto procedure = reinterpret_cast<DLGPROC>(GetWindowLongPtrA(handle, DWLP_DLGPROC));
  const INT_PTR handled = procedure != nullptr ? procedure(handle, message, wParam, lParam) : FALSE;
  if (AnswersItself(message))
    return handled;
  if (IsWindow(handle) == FALSE)
    return 0;
  return handled != FALSE ? GetWindowLongPtrA(handle, DWLP_MSGRESULT) : DialogDefault(dialog, message, wParam, lParam);
}

// ---- Controls by their ids ----

HWND GetDlgItem(HWND handle, int id) {
  const WindowPtr dialog = WindowOf(handle);
  if (!dialog)
    return nullptr;
  const auto found = std::ranges::find_if(dialog->children, [&](HWND child) { return GetDlgCtrlID(child) == id; });
  return found != dialog->children.end() ? *found : machine::Fail(ERROR_CONTROL_ID_NOT_FOUND, nullptr);
}

int GetDlgCtrlID(HWND control) {
  const WindowPtr window = WindowOf(control);
  return window ? static_cast<int>(window->id) : 0;
}

BOOL SetDlgItemTextA(HWND dialog, int id, const char *text) { return SetWindowTextA(GetDlgItem(dialog, id), text); }

UINT GetDlgItemTextA(HWND dialog, int id, char *buffer, int size) {
  return static_cast<UINT>(GetWindowTextA(GetDlgItem(dialog, id), buffer, size));
}

LRESULT SendDlgItemMessageA(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam) {
  return SendMessageA(GetDlgItem(dialog, id), message, wParam, lParam);
}

HWND GetNextDlgTabItem(HWND handle, HWND control, BOOL previous) {
  const WindowPtr dialog = WindowOf(handle);
  if (!dialog)
    return nullptr;
  std::vector<WindowPtr> controls;
  CollectControls(*dialog, controls);
  if (previous != FALSE)
    std::ranges::reverse(controls);
  const auto start = std::ranges::find_if(controls, [&](const WindowPtr &each) {
    return each->handle == control || IsChild(each->handle, control) != FALSE;
  });
  if (start != controls.end())
    std::rotate(controls.begin(), start + 1, controls.end()); // the one to start from comes last
  const auto next = std::ranges::find_if(controls, [](const WindowPtr &each) { return IsStop(*each); });
  return next != controls.end() ? (*next)->handle : nullptr;
}

BOOL MapDialogRect(HWND dialog, RECT *rect) {
  if (IsWindow(dialog) == FALSE)
    return FALSE;
  *rect = InPixels(rect->left, rect->top, rect->right, rect->bottom);
  return TRUE;
}
