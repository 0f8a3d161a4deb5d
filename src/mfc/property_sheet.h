// The window of a wizard, around its pages.
#pragma once

#include "mfc/property_page.h"

#include <vector>

// A sheet without a caption of its own shows the caption of the current page.
class CPropertySheet : public CDialogWnd {
  DECLARE_DYNAMIC(CPropertySheet)

public:
  PROPSHEETHEADERA m_psh{};

  CPropertySheet();

  // The sheet doesn't own the page, which must outlive DoModal.
  void AddPage(CPropertyPage *page) { m_pages.push_back(page); }
  // Runs the sheet until it is closed. Positive if it was finished, 0 if it was cancelled, -1 if it was never shown.
  virtual INT_PTR DoModal();

private:
  static int CALLBACK SheetProc(HWND sheet, UINT message, LPARAM lParam);

  std::vector<CPropertyPage *> m_pages;
};
