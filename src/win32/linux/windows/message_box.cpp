// Message boxes and help.
#include "win32/linux/windows/dialogs.h"
#include "win32/linux/windows/modal_loop.h"

#include <algorithm>
#include <array>

namespace {

using machine::DialogTemplate;

constexpr int IDABORT = 3;
constexpr int IDRETRY = 4;
constexpr int IDIGNORE = 5;

constexpr struct {
  int id;
  const char *text;
} Buttons[] = {{IDOK, "OK"},           {IDCANCEL, "キャンセル"}, {IDABORT, "中止(&A)"}, {IDRETRY, "再試行(&R)"},
               {IDIGNORE, "無視(&I)"}, {IDYES, "はい(&Y)"},      {IDNO, "いいえ(&N)"}};

// The buttons of each type, from 0 on.
using ButtonRow = std::array<int, 3>;
constexpr ButtonRow ButtonRows[] = {
    {IDOK},        {IDOK, IDCANCEL},   {IDABORT, IDRETRY, IDIGNORE}, {IDYES, IDNO, IDCANCEL},
    {IDYES, IDNO}, {IDRETRY, IDCANCEL}};

constexpr int IconId = 20;
constexpr int TextId = 0xFFFF;

// In dialog units.
constexpr int Margin = 7;
constexpr int IconSize = 21;
constexpr int LineHeight = 8;
constexpr int ButtonWidth = 50;
constexpr int ButtonHeight = 14;
constexpr int ButtonStep = ButtonWidth + 4;
constexpr int LetterWidth = 4;
constexpr int LettersInLine = 80;

struct Box {
  ButtonRow buttons;
  int answer = 0;

  bool Has(int id) const { return id != 0 && std::ranges::count(buttons, id) != 0; }
  // Closing a box that has but one button presses that; one with a choice and no Cancel stays open.
  int AnswerTo(int command) const {
    if (Has(command))
      return command;
    return command == IDCANCEL && buttons[1] == 0 ? buttons[0] : 0;
  }
};

INT_PTR BoxProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(dialog, DWLP_USER, lParam);
    return TRUE;
  }
  auto *const box = reinterpret_cast<Box *>(GetWindowLongPtrA(dialog, DWLP_USER));
  if (message != WM_COMMAND || box == nullptr || box->answer != 0)
    return FALSE;
  box->answer = box->AnswerTo(LOWORD(wParam));
  return TRUE;
}

// ---- The template ----

struct TextSize {
  int width;
  int height;
};
TextSize SizeOf(const std::string &text) {
  int lines = 0;
  int longest = 0;
  for (size_t start = 0; start <= text.size();) {
    const size_t end = std::min({text.find('\n', start), text.size(), start + LettersInLine});
    longest = std::max(longest, static_cast<int>(end - start));
    start = end + 1;
    ++lines;
  }
  return {longest * LetterWidth, lines * LineHeight};
}

void AddButtons(DialogTemplate &dialog, const ButtonRow &row, int left, int top) {
  for (const int id : row)
    for (const auto &[known, text] : Buttons)
      if (known == id) {
        const DWORD kind = id == row[0] ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
        dialog.controls.push_back(
            {WS_VISIBLE | machine::WS_TABSTOP | kind, left, top, ButtonWidth, ButtonHeight, id, "Button", text});
        left += ButtonStep;
      }
}

DialogTemplate BoxTemplate(const std::string &text, const char *title, const ButtonRow &row, bool hasIcon) {
  DialogTemplate dialog;
  const TextSize size = SizeOf(text);
  const int textLeft = Margin + (hasIcon ? IconSize + Margin : 0);
  const int buttonTop = Margin + std::max(size.height, hasIcon ? IconSize : 0) + Margin;
  const int buttonsWidth = static_cast<int>(std::ranges::count_if(row, [](int id) { return id != 0; })) * ButtonStep;
  const int width = std::max(textLeft + size.width, Margin + buttonsWidth) + Margin;
  if (hasIcon)
    dialog.controls.push_back({WS_VISIBLE | SS_ICON, Margin, Margin, IconSize, IconSize, IconId, "Static", ""});
  AddButtons(dialog, row, (width - buttonsWidth) / 2, buttonTop);
  dialog.controls.push_back(
      {WS_VISIBLE | SS_NOPREFIX, textLeft, Margin, size.width, size.height, TextId, "Static", text});
  dialog.window = {WS_POPUP, 0, 0, width, buttonTop + ButtonHeight + Margin, 0, "", title};
  return dialog;
}

// The system icon that a type asks for, null for none.
HICON IconOf(UINT type) {
  constexpr UINT First = 32513;
  const UINT kind = (type & MB_ICONMASK) >> 4;
  return kind != 0 ? LoadIconA(nullptr, MAKEINTRESOURCEA(First + kind - 1)) : nullptr;
}

} // namespace

int MessageBoxA(HWND owner, const char *text, const char *title, UINT type) {
  const UINT kind = type & MB_TYPEMASK;
  if (kind >= std::size(ButtonRows) || machine::CurrentFrontEnd() == nullptr)
    return 0;
  Box box = {ButtonRows[kind]};
  const HICON icon = IconOf(type);
  const DialogTemplate dialog = BoxTemplate(text, title, box.buttons, icon != nullptr);
  const HWND window = machine::CreateDialogFrom(dialog, owner, BoxProcedure, reinterpret_cast<LPARAM>(&box));
  if (window == nullptr)
    return 0;
  if (icon != nullptr)
    SendDlgItemMessageA(window, IconId, STM_SETICON, reinterpret_cast<WPARAM>(icon), 0);
  return machine::RunModalDialog(window, [&] { return box.answer != 0; }) ? box.answer : 0;
}

BOOL WinHelpA(HWND, const char *file, UINT, ULONG_PTR data) {
  machine::FrontEnd *const frontEnd = machine::CurrentFrontEnd();
  return frontEnd != nullptr && frontEnd->ShowHelp(file, data);
}
