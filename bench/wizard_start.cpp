// The time from the call of a wizard until its first page waits for the user, compared with plain property sheets of
// the same number of pages: empty ones, and ones with the wizard's own dialogs. `wizard_start` runs on this machine,
// where a mail client has to be installed.
#include "acctkit/acctkit.h"

#include "resources/resource.h"

#include <windows.h>

#include <prsht.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

constexpr int Rounds = 41;
constexpr size_t PageCount = 4;

INT_PTR CALLBACK EmptyPage(HWND, UINT, WPARAM, LPARAM) { return FALSE; }

void RunSheet(std::array<PROPSHEETPAGEA, PageCount> pages) {
  for (PROPSHEETPAGEA &page : pages) {
    page.dwSize = sizeof page;
    page.dwFlags |= PSP_HASHELP;
    page.pfnDlgProc = EmptyPage;
  }
  PROPSHEETHEADERA sheet{};
  sheet.dwSize = sizeof sheet;
  sheet.dwFlags = PSH_PROPSHEETPAGE | PSH_WIZARD | PSH_HASHELP;
  sheet.nPages = PageCount;
  sheet.ppsp = pages.data();
  PropertySheetA(&sheet);
}

void RunEmptySheet() {
  // A page without controls, of the wizard pages' size.
  struct Template {
    alignas(4) std::array<WORD, 12> words = {0, 0x4000 /* WS_CHILD */, 0, 0, 0, 0, 0, 291, 151, 0, 0, 0};
  };
  static const Template empty;
  std::array<PROPSHEETPAGEA, PageCount> pages{};
  for (PROPSHEETPAGEA &page : pages) {
    page.dwFlags = PSP_DLGINDIRECT;
    page.pResource = reinterpret_cast<const DLGTEMPLATE *>(&empty);
  }
  RunSheet(pages);
}

void RunPlainDialogs() {
  std::array<PROPSHEETPAGEA, PageCount> pages{};
  const int dialogs[] = {IDD_SET_MAILER_TOP1, IDD_SET_MAILER_SELECT, IDD_SET_MAILER_ID, IDD_SET_MAILER_END};
  for (size_t index = 0; index < PageCount; ++index)
    pages[index].pszTemplate = MAKEINTRESOURCEA(dialogs[index]);
  RunSheet(pages);
}

void RunMailerWizard() { MailerWizard(0, "ABC01234", "ABC01234\0DEF01234\0"); }

double Milliseconds() {
  LARGE_INTEGER now;
  LARGE_INTEGER frequency;
  QueryPerformanceCounter(&now);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(now.QuadPart) * 1e3 / static_cast<double>(frequency.QuadPart);
}

double shown;

BOOL CALLBACK FindSheet(HWND window, LPARAM found) {
  char className[16] = "";
  GetClassNameA(window, className, sizeof className);
  if (std::strcmp(className, "#32770") != 0 || !IsWindowVisible(window))
    return TRUE;
  *reinterpret_cast<HWND *>(found) = window;
  return FALSE;
}

// Gets its message from the message loop of the sheet, which is then complete except for painting.
LRESULT CALLBACK Watch(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_APP)
    return DefWindowProcA(window, message, wParam, lParam);
  HWND sheet = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), FindSheet, reinterpret_cast<LPARAM>(&sheet));
  if (sheet == nullptr || SendMessageA(sheet, PSM_GETCURRENTPAGEHWND, 0, 0) == 0) {
    std::fputs("no sheet came up: is a mail client installed?\n", stderr);
    std::exit(1);
  }
  RedrawWindow(sheet, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  shown = Milliseconds();
  PostMessageA(sheet, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
  return 0;
}

// Milliseconds until the first page waits for the user.
double TimeStart(HWND watch, void (*run)()) {
  PostMessageA(watch, WM_APP, 0, 0);
  const double begin = Milliseconds();
  run();
  return shown - begin;
}

double Median(std::vector<double> times) {
  std::ranges::nth_element(times, times.begin() + Rounds / 2);
  return times[Rounds / 2];
}

} // namespace

int main() {
  WNDCLASSA watchClass{};
  watchClass.lpfnWndProc = Watch;
  watchClass.lpszClassName = "watch";
  RegisterClassA(&watchClass);
  const HWND watch =
      CreateWindowExA(0, watchClass.lpszClassName, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  struct {
    const char *name;
    void (*run)();
    std::vector<double> times;
  } sheets[] = {{"empty sheet", RunEmptySheet, {}},
                {"the wizard's dialogs", RunPlainDialogs, {}},
                {"mailer wizard", RunMailerWizard, {}}};
  for (int round = 0; round < Rounds; ++round)
    for (auto &sheet : sheets)
      sheet.times.push_back(TimeStart(watch, sheet.run));
  for (const auto &sheet : sheets)
    std::printf("%s: %.2f ms, median of %d starts\n", sheet.name, Median(sheet.times), Rounds);
}
