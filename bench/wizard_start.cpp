// From the call of a wizard to the moment when its first page waits for the user, beside an empty property sheet of the
// same number of pages: `wizard_start`, on the machine it runs on, where a mail client has to be installed.
#include "acctkit/acctkit.h"

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

void RunEmptySheet() {
  // A page without controls, of the wizard pages' size.
  struct Template {
    alignas(4) std::array<WORD, 12> words = {0, 0x4000 /* WS_CHILD */, 0, 0, 0, 0, 0, 291, 151, 0, 0, 0};
  };
  static const Template page;
  PROPSHEETPAGEA pages[PageCount] = {};
  for (PROPSHEETPAGEA &each : pages) {
    each.dwSize = sizeof each;
    each.dwFlags = PSP_DLGINDIRECT | PSP_HASHELP;
    each.pResource = reinterpret_cast<const DLGTEMPLATE *>(&page);
    each.pfnDlgProc = EmptyPage;
  }
  PROPSHEETHEADERA sheet{};
  sheet.dwSize = sizeof sheet;
  sheet.dwFlags = PSH_PROPSHEETPAGE | PSH_WIZARD | PSH_HASHELP;
  sheet.nPages = PageCount;
  sheet.ppsp = pages;
  PropertySheetA(&sheet);
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
  std::vector<double> empty;
  std::vector<double> wizard;
  for (int round = 0; round < Rounds; ++round) {
    empty.push_back(TimeStart(RunEmptySheet));
    wizard.push_back(TimeStart(RunMailerWizard));
  }
  std::printf("empty sheet of %zu pages: %.2f ms, mailer wizard: %.2f ms, medians of %d\n", PageCount, Median(empty),
              Median(wizard), Rounds);
}
