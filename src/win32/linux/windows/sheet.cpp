// Property sheets as wizards: a dialog with the wizard's buttons, which shows one of its pages at a time.
#include "win32/linux/public/machine.h"
#include "win32/linux/windows/dialogs.h"
#include "win32/linux/windows/modal_loop.h"
#include "win32/linux/windows/resources.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <utility>

namespace {

using machine::DialogTemplate;

constexpr size_t NoPage = SIZE_MAX; // behind the last one, and before the first

// In dialog units.
constexpr int Margin = 7;
constexpr int ButtonWidth = 50;
constexpr int ButtonHeight = 14;

struct Page {
  PROPSHEETPAGEA record;
  DialogTemplate dialog;
  HWND window = nullptr; // from when it is first shown

  bool HasHelp() const { return (record.dwFlags & PSP_HASHELP) != 0; }
};

// ---- The wizard ----

class Sheet {
public:
  explicit Sheet(const PROPSHEETHEADERA &given);

  // Positive if the wizard was finished, 0 if it was cancelled, -1 if it never came up.
  INT_PTR Run();

private:
  struct Button {
    int number; // as PSM_PRESSBUTTON has it
    int id;
    const char *text;
    int column; // from the right
    void (Sheet::*press)();
  };
  static const std::array<Button, 5> Buttons;

  static INT_PTR Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
  void Begin(HWND dialog);
  // Nothing for a message that isn't the sheet's.
  std::optional<LRESULT> Answer(UINT message, WPARAM wParam, LPARAM lParam);

  void Back() { Turn(PSN_WIZBACK, -1); }
  void Next() { Turn(PSN_WIZNEXT, 1); }
  void Finish();
  void Cancel();
  void Help() { Notify(PSN_HELP); }
  bool Press(int Button::*name, int value);
  void SetButtons(DWORD flags);

  void Turn(UINT question, int step);
  void Show(size_t index, int step);
  void Activate(size_t index, int step);

  HWND CurrentWindow() const { return current < pages.size() ? pages[current].window : nullptr; }
  LRESULT Notify(UINT code) const;
  DialogTemplate Template() const;

  const PROPSHEETHEADERA &header;
  std::vector<Page> pages;
  HWND window = nullptr;
  size_t current = NoPage;
  std::optional<INT_PTR> result; // as soon as the wizard is over
};

const std::array<Sheet::Button, 5> Sheet::Buttons = {{
    {PSBTN_BACK, ID_WIZBACK, "< 戻る(&B)", 4, &Sheet::Back},
    {PSBTN_NEXT, ID_WIZNEXT, "次へ(&N) >", 3, &Sheet::Next},
    {PSBTN_FINISH, ID_WIZFINISH, "完了", 3, &Sheet::Finish},
    {PSBTN_CANCEL, IDCANCEL, "キャンセル", 2, &Sheet::Cancel},
    {PSBTN_HELP, IDHELP, "ヘルプ", 1, &Sheet::Help},
}};

INT_PTR Sheet::Run() {
  if (machine::CurrentFrontEnd() == nullptr)
    return -1;
  const HWND made = machine::CreateDialogFrom(Template(), header.hwndParent, Procedure, reinterpret_cast<LPARAM>(this));
  if (current == NoPage) {
    DestroyWindow(made);
    return -1;
  }
  const bool over = machine::RunModalDialog(made, [&] { return result.has_value(); });
  return over ? result.value_or(0) : -1;
}

// ---- Messages ----

INT_PTR Sheet::Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(dialog, DWLP_USER, lParam);
    reinterpret_cast<Sheet *>(lParam)->Begin(dialog);
    return FALSE; // the page has the focus
  }
  auto *const sheet = reinterpret_cast<Sheet *>(GetWindowLongPtrA(dialog, DWLP_USER));
  if (sheet == nullptr)
    return FALSE;
  const std::optional<LRESULT> answer = sheet->Answer(message, wParam, lParam);
  if (answer)
    SetWindowLongPtrA(dialog, DWLP_MSGRESULT, *answer);
  return answer.has_value();
}

std::optional<LRESULT> Sheet::Answer(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
  case WM_COMMAND: // what isn't the sheet's is for its page
    return Press(&Button::id, LOWORD(wParam)) ? 0 : SendMessageA(CurrentWindow(), message, wParam, lParam);
  case WM_CLOSE:
    Cancel();
    return 0;
  case PSM_PRESSBUTTON:
    Press(&Button::number, static_cast<int>(wParam));
    return 0;
  case PSM_SETWIZBUTTONS:
    SetButtons(static_cast<DWORD>(lParam));
    return 0;
  case PSM_GETCURRENTPAGEHWND:
    return reinterpret_cast<LRESULT>(CurrentWindow());
  case PSM_HWNDTOINDEX: {
    const auto page = std::ranges::find(pages, reinterpret_cast<HWND>(wParam), &Page::window);
    return page != pages.end() ? page - pages.begin() : -1;
  }
  case PSM_INDEXTOID:
    return wParam < pages.size() ? reinterpret_cast<LRESULT>(pages[wParam].record.pszTemplate) : 0;
  default:
    return std::nullopt;
  }
}

LRESULT Sheet::Notify(UINT code) const {
  const NMHDR notification = {window, 0, code};
  return SendMessageA(CurrentWindow(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&notification));
}

// ---- Buttons ----

bool Sheet::Press(int Button::*name, int value) {
  const auto *const button = std::ranges::find(Buttons, value, name);
  if (button == Buttons.end())
    return false;
  (this->*button->press)();
  return true;
}

void Sheet::Finish() {
  if (Notify(PSN_WIZFINISH) == 0)
    result = 1;
}

void Sheet::Cancel() {
  if (Notify(PSN_QUERYCANCEL) == 0)
    result = 0;
}

// Of Next and Finish one is shown. The default button is the one that leads on, or else back or out.
void Sheet::SetButtons(DWORD flags) {
  const bool finishes = (flags & PSWIZB_FINISH) != 0;
  const struct {
    int id;
    bool shown;
    bool enabled;
  } states[] = {{ID_WIZFINISH, finishes, finishes},
                {ID_WIZNEXT, !finishes, (flags & PSWIZB_NEXT) != 0},
                {ID_WIZBACK, true, (flags & PSWIZB_BACK) != 0},
                {IDCANCEL, true, true}};
  for (const auto &state : states) {
    ShowWindow(GetDlgItem(window, state.id), state.shown ? SW_SHOW : SW_HIDE);
    EnableWindow(GetDlgItem(window, state.id), state.enabled);
  }
  const auto *const first = std::ranges::find_if(states, [](const auto &each) { return each.shown && each.enabled; });
  SendMessageA(window, machine::DM_SETDEFID, static_cast<WPARAM>(first->id), 0);
  if (GetFocus() == nullptr) // it was on a button that can't be pressed any more
    SetFocus(GetDlgItem(window, first->id));
}

// ---- Pages ----

void Sheet::Begin(HWND dialog) {
  window = dialog;
  SetButtons(PSWIZB_BACK | PSWIZB_NEXT);
  const bool hasHelp = (header.dwFlags & PSH_HASHELP) != 0 || std::ranges::any_of(pages, &Page::HasHelp);
  ShowWindow(GetDlgItem(window, IDHELP), hasHelp ? SW_SHOW : SW_HIDE);
  if ((header.dwFlags & PSH_USECALLBACK) != 0)
    header.pfnCallback(window, PSCB_INITIALIZED, 0);
  Show(0, 1);
}

void Sheet::Turn(UINT question, int step) {
  if (Notify(question) != 0)
    return;
  if (const size_t index = current + static_cast<size_t>(step); index < pages.size())
    Show(index, step);
}

void Sheet::Show(size_t index, int step) {
  ShowWindow(CurrentWindow(), SW_HIDE);
  Activate(index, step);
  const HWND page = CurrentWindow();
  if (page == nullptr)
    return;
  SetWindowTextA(window, pages[current].dialog.window.text.c_str());
  EnableWindow(GetDlgItem(window, IDHELP), pages[current].HasHelp());
  machine::Raise(*machine::WindowOf(page)); // its controls come before the buttons
  HWND focus = machine::NextTabStop(page, nullptr, false);
  if (focus == nullptr)
    focus = GetDlgItem(window, LOWORD(static_cast<uintptr_t>(SendMessageA(window, DM_GETDEFID, 0, 0))));
  SendMessageA(window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(focus), TRUE);
  ShowWindow(page, SW_SHOW);
}

// Asks one page after the other whether it may be shown, up to the first that agrees or the last that there is.
void Sheet::Activate(size_t index, int step) {
  for (; index < pages.size(); index += static_cast<size_t>(step)) {
    auto &[record, dialog, page] = pages[index];
    if (page == nullptr)
      page = machine::CreateDialogFrom(dialog, window, record.pfnDlgProc, reinterpret_cast<LPARAM>(&record));
    current = index;
    if (Notify(PSN_SETACTIVE) == 0)
      return;
  }
}

// ---- The window ----

// The pages whose templates can't be had are left out.
Sheet::Sheet(const PROPSHEETHEADERA &given) : header(given) {
  for (const PROPSHEETPAGEA &page : std::span(header.ppsp, header.nPages))
    if (auto dialog = machine::ReadTemplate(machine::DialogResource(page.hInstance, page.pszTemplate))) {
      dialog->window.style = WS_CHILD; // whatever the template says: the sheet shows it
      pages.push_back({page, *std::move(dialog)});
    }
}

DialogTemplate Sheet::Template() const {
  int width = 2 * Margin + 4 * ButtonWidth;
  int height = 0;
  for (const Page &page : pages) {
    width = std::max(width, page.dialog.window.width);
    height = std::max(height, page.dialog.window.height);
  }
  DialogTemplate dialog;
  dialog.window.style = WS_POPUP;
  dialog.window.width = width;
  dialog.window.height = height + Margin + ButtonHeight + Margin;
  for (const Button &button : Buttons)
    dialog.controls.push_back({WS_VISIBLE | machine::WS_TABSTOP, width - Margin - button.column * ButtonWidth,
                               height + Margin, ButtonWidth, ButtonHeight, button.id, "Button", button.text});
  return dialog;
}

} // namespace

INT_PTR PropertySheetA(const PROPSHEETHEADERA *header) { return Sheet(*header).Run(); }
