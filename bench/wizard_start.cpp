// From the call of a wizard to the moment when its first page waits for the user, beside plain property sheets of the
// same number of pages, empty ones and the wizard's own dialogs: `wizard_start`, on the machine it runs on, where a
// mail client has to be installed.
#include "acctkit/acctkit.h"

#include "resources/resource.h"
#include "support/user.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <time.h>
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
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

// Milliseconds until the user's turn.
double TimeStart(void (*run)()) {
  const double begin = Milliseconds();
  double shown = begin;
  WithUser({[&](HWND sheet) {
             shown = Milliseconds();
             PostMessageA(sheet, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
           }},
           [&] { run(); });
  return shown - begin;
}

double Median(std::vector<double> times) {
  std::ranges::nth_element(times, times.begin() + Rounds / 2);
  return times[Rounds / 2];
}

} // namespace

int main() {
  struct {
    const char *name;
    void (*run)();
    std::vector<double> times;
  } sheets[] = {{"empty sheet", RunEmptySheet, {}},
                {"the wizard's dialogs", RunPlainDialogs, {}},
                {"mailer wizard", RunMailerWizard, {}}};
  for (int round = 0; round < Rounds; ++round)
    for (auto &sheet : sheets)
      sheet.times.push_back(TimeStart(sheet.run));
  for (const auto &sheet : sheets)
    std::printf("%s: %.2f ms, median of %d starts\n", sheet.name, Median(sheet.times), Rounds);
}
