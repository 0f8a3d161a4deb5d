#include "mfc/property_sheet.h"

#include "mfc/app.h"

#include <algorithm>
#include <utility>

IMPLEMENT_DYNAMIC(CPropertySheet, CDialogWnd)

namespace {

// The sheet whose window is about to be made: the window's first message doesn't say which sheet it belongs to.
CPropertySheet *opening = nullptr;

} // namespace

CPropertySheet::CPropertySheet() {
  m_psh.dwSize = sizeof m_psh;
  m_psh.dwFlags = PSH_PROPSHEETPAGE;
}

INT_PTR CPropertySheet::DoModal() {
  std::vector<PROPSHEETPAGEA_V2> pages;
  for (CPropertyPage *page : m_pages) {
    page->m_psp.hInstance = AfxGetResourceHandle();
    pages.push_back(page->m_psp);
  }

  HWND topLevel = nullptr;
  PROPSHEETHEADERA header = m_psh;
  header.dwFlags |= PSH_USECALLBACK;
  header.hwndParent = GetSafeOwner_(&topLevel);
  header.hInstance = AfxGetResourceHandle();
  header.nPages = static_cast<UINT>(pages.size());
  header.ppsp = reinterpret_cast<const PROPSHEETPAGEA *>(pages.data()); // dwSize says which form they have
  header.pfnCallback = SheetProc;

  opening = this;
  const INT_PTR result = ::PropertySheetA(&header);
  // The result alone doesn't distinguish a cancelled sheet from one whose window couldn't be made or whose loop failed.
  const bool cameUp = std::exchange(opening, nullptr) == nullptr;
  if (topLevel)
    ::EnableWindow(topLevel, TRUE);
  return cameUp ? std::max<INT_PTR>(result, 0) : -1;
}

int CALLBACK CPropertySheet::SheetProc(HWND handle, UINT message, LPARAM) {
  if (message == PSCB_INITIALIZED)
    std::exchange(opening, nullptr)->Open(handle);
  return 0;
}
