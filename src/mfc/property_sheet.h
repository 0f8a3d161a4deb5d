// The window of a wizard, around its pages.
#pragma once

#include "mfc/property_page.h"

#include <vector>

// A sheet made without a caption shows that of the page in front.
class CPropertySheet : public CDialogWnd {
  DECLARE_DYNAMIC(CPropertySheet)

public:
  PROPSHEETHEADERA m_psh{};

  CPropertySheet();

  // The page isn't owned and has to outlive DoModal.
  void AddPage(CPropertyPage *page) { m_pages.push_back(page); }
  // Runs the sheet until it is closed. Positive if it was finished, 0 if cancelled, -1 if it never came up.
  virtual INT_PTR DoModal();

private:
  static int CALLBACK SheetProc(HWND sheet, UINT message, LPARAM lParam);

  std::vector<CPropertyPage *> m_pages;
};
