// Property sheets as wizards: a dialog with the wizard's buttons, which shows one of its pages at a time.
#include "win32/linux/public/machine.h"
#include "win32/linux/windows/modal_loop.h"
#include "win32/linux/windows/sheet_page.h"

#include <algorithm>
#include <array>
#include <optional>

namespace {

using machine::DialogTemplate;
using machine::PropertyPage;

constexpr UINT MostPages = 100;
constexpr size_t NoPage = SIZE_MAX; // behind the last one, and before the first

// In dialog units.
constexpr int Margin = 7;
constexpr int ButtonWidth = 50;
constexpr int ButtonHeight = 14;
constexpr int LargestPage = 0x7000;

using Pages = std::vector<std::shared_ptr<PropertyPage>>;

// ---- The wizard ----

class Sheet {
public:
  Sheet(const PROPSHEETHEADERA &given, Pages its) : header(given), pages(std::move(its)) {}

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
  void Cancel() { Close(FALSE); }
  void Help() { Notify(PSN_HELP); }
  void Close(BOOL byClosing);
  bool Press(int Button::*name, int value);
  void SetButtons(DWORD flags);

  void Turn(UINT question, int step);
  bool TurnTo(size_t index, int step);
  void Show(size_t index, int step);
  void Activate(size_t index, int step);

  HWND CurrentWindow() const { return current < pages.size() ? pages[current]->Window() : nullptr; }
  LRESULT Notify(UINT code) const { return Notify(CurrentWindow(), code, 0); }
  LRESULT Notify(HWND page, UINT code, LPARAM parameter) const;
  template <typename Value> size_t IndexOf(Value (PropertyPage::*property)() const, Value value) const;

  bool HasHelp() const;
  void Call(UINT event, const void *parameter) const;
  DialogTemplate Template() const;

  const PROPSHEETHEADERA &header;
  const Pages pages;
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
  if (pages.empty() || machine::CurrentFrontEnd() == nullptr)
    return -1;
  alignas(DWORD) constexpr std::byte someTemplate[18] = {}; // nothing of it counts here
  Call(PSCB_PRECREATE, someTemplate);
  const HWND made = machine::CreateDialogFrom(Template(), header.hInstance, header.hwndParent, Procedure,
                                              reinterpret_cast<LPARAM>(this));
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
    Close(TRUE);
    return 0;
  case PSM_PRESSBUTTON:
    Press(&Button::number, static_cast<int>(wParam));
    return 0;
  case PSM_SETWIZBUTTONS:
    SetButtons(static_cast<DWORD>(lParam));
    return 0;
  case PSM_SETCURSEL:
    return TurnTo(wParam, 1);
  case PSM_GETCURRENTPAGEHWND:
    return reinterpret_cast<LRESULT>(CurrentWindow());
  case PSM_HWNDTOINDEX:
    return static_cast<LRESULT>(IndexOf(&PropertyPage::Window, reinterpret_cast<HWND>(wParam)));
  case PSM_INDEXTOID:
    return wParam < pages.size() ? pages[wParam]->Id() : 0;
  default:
    return std::nullopt;
  }
}

LRESULT Sheet::Notify(HWND page, UINT code, LPARAM parameter) const {
  const machine::Lock lock; // what a page reads, decides and writes is one piece to other processes
  const PSHNOTIFY notification = {{window, 0, code}, parameter};
  return SendMessageA(page, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&notification));
}

void Sheet::Call(UINT event, const void *parameter) const {
  if ((header.dwFlags & PSH_USECALLBACK) != 0)
    header.pfnCallback(window, event, reinterpret_cast<LPARAM>(parameter));
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

void Sheet::Close(BOOL byClosing) {
  if (Notify(PSN_QUERYCANCEL) != 0)
    return;
  for (const auto &page : pages)
    Notify(page->Window(), PSN_RESET, byClosing);
  result = 0;
}

// Next and Finish have one place. The default button is the one that leads on, or else back or out.
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
  SendMessageA(window, DM_SETDEFID, static_cast<WPARAM>(first->id), 0);
  if (GetFocus() == nullptr) // it was on a button that can't be pressed any more
    SetFocus(GetDlgItem(window, first->id));
}

// ---- Pages ----

void Sheet::Begin(HWND dialog) {
  window = dialog;
  SetButtons(PSWIZB_BACK | PSWIZB_NEXT);
  ShowWindow(GetDlgItem(window, IDHELP), HasHelp() ? SW_SHOW : SW_HIDE);
  Call(PSCB_INITIALIZED, nullptr);
  Show(header.nStartPage < pages.size() ? header.nStartPage : 0, 1);
}

void Sheet::Turn(UINT question, int step) {
  const LRESULT answer = Notify(question);
  if (answer != -1)
    TurnTo(answer == 0 ? current + static_cast<size_t>(step) : IndexOf(&PropertyPage::Id, answer), step);
}

bool Sheet::TurnTo(size_t index, int step) {
  if (index >= pages.size() || Notify(PSN_KILLACTIVE) != 0)
    return false;
  Show(index, step);
  return true;
}

void Sheet::Show(size_t index, int step) {
  ShowWindow(CurrentWindow(), SW_HIDE);
  Activate(index, step);
  const HWND page = CurrentWindow();
  if (page == nullptr)
    return;
  SetWindowTextA(window, pages[current]->Title().c_str());
  EnableWindow(GetDlgItem(window, IDHELP), pages[current]->HasHelp());
  SetWindowPos(page, HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE); // its controls come before the buttons
  HWND focus = GetNextDlgTabItem(page, nullptr, FALSE);
  if (focus == nullptr)
    focus = GetDlgItem(window, LOWORD(static_cast<uintptr_t>(SendMessageA(window, DM_GETDEFID, 0, 0))));
  SendMessageA(window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(focus), TRUE);
  ShowWindow(page, SW_SHOW);
}

// Asks one page after the other until one agrees to be shown; where there is no further one, the last one has to.
void Sheet::Activate(size_t index, int step) {
  while (index < pages.size()) {
    LRESULT answer = -1;
    if (pages[index]->MakeWindow(window)) {
      current = index;
      answer = Notify(PSN_SETACTIVE);
    }
    if (answer == 0)
      return;
    index = answer == -1 ? index + static_cast<size_t>(step) : IndexOf(&PropertyPage::Id, answer);
  }
}

template <typename Value> size_t Sheet::IndexOf(Value (PropertyPage::*property)() const, Value value) const {
  const auto found = std::ranges::find_if(pages, [&](const auto &page) { return ((*page).*property)() == value; });
  return found != pages.end() ? static_cast<size_t>(found - pages.begin()) : NoPage;
}

// ---- The window ----

bool Sheet::HasHelp() const {
  return (header.dwFlags & PSH_HASHELP) != 0 ||
         std::ranges::any_of(pages, [](const auto &page) { return page->HasHelp(); });
}

DialogTemplate Sheet::Template() const {
  int width = 2 * Margin + 4 * ButtonWidth;
  int height = 0;
  for (const auto &page : pages) {
    width = std::max<int>(width, page->Template().window.width);
    height = std::max<int>(height, page->Template().window.height);
  }
  width = std::min(width, LargestPage);
  height = std::min(height, LargestPage);
  const auto units = [](int value) { return static_cast<int16_t>(value); };
  DialogTemplate dialog;
  dialog.window.style = WS_POPUP | WS_CAPTION | WS_SYSMENU;
  dialog.window.exStyle = WS_EX_CONTROLPARENT;
  dialog.window.width = units(width);
  dialog.window.height = units(height + Margin + ButtonHeight + Margin);
  for (const Button &button : Buttons)
    dialog.controls.push_back({WS_VISIBLE | WS_TABSTOP, 0, units(width - Margin - button.column * ButtonWidth),
                               units(height + Margin), ButtonWidth, ButtonHeight, static_cast<DWORD>(button.id),
                               "Button", button.text});
  return dialog;
}

// The pages of the caller's records, which lie one behind the other; those that can't be made are left out.
Pages MakePages(const PROPSHEETHEADERA &header) {
  Pages pages;
  const auto *place = reinterpret_cast<const std::byte *>(header.ppsp);
  for (UINT index = 0; index < std::min(header.nPages, MostPages); ++index) {
    const auto *const record = reinterpret_cast<const PROPSHEETPAGEA *>(place);
    if (std::shared_ptr<PropertyPage> page = PropertyPage::Make(record))
      pages.push_back(std::move(page));
    place += record->dwSize;
  }
  return pages;
}

} // namespace

INT_PTR PropertySheetA(const PROPSHEETHEADERA *header) {
  constexpr DWORD Needed = PSH_WIZARD | PSH_PROPSHEETPAGE;
  if (header == nullptr || header->dwSize < sizeof *header || (header->dwFlags & Needed) != Needed)
    return -1;
  return Sheet(*header, MakePages(*header)).Run();
}
