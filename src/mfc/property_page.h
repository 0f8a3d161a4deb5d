// A page of a wizard. Its dialog is made when the page is first shown.
//
// The page's record has the form of Internet Explorer 5: a common controls library of that time refuses the larger form
// of Windows XP, which is what today's headers declare under the plain name.
#pragma once

#include "mfc/dialog.h"

static_assert(sizeof(void *) != 4 || (sizeof(PROPSHEETPAGEA_V2) == 48 && sizeof(PROPSHEETHEADERA) == 52));

class CPropertyPage : public CDialog {
  DECLARE_DYNAMIC(CPropertyPage)

public:
  PROPSHEETPAGEA_V2 m_psp{};

  // The number of the dialog's template among the library's resources. The page's title is its dialog's caption, and
  // idCaption has to be 0.
  explicit CPropertyPage(UINT idTemplate, UINT idCaption = 0);

protected:
  // Called when the page is about to be shown; FALSE skips it.
  virtual BOOL OnSetActive() { return TRUE; }
  // 0 goes to the previous or next page, -1 stays.
  virtual LRESULT OnWizardBack() { return 0; }
  virtual LRESULT OnWizardNext() { return 0; }
  // FALSE keeps the wizard open.
  virtual BOOL OnWizardFinish() { return TRUE; }
  // FALSE refuses to cancel the wizard.
  virtual BOOL OnQueryCancel() { return TRUE; }

  BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT *result) override;
  // If Next or Finish failed with an exception, the page stays.
  LRESULT OnFailure(UINT message, LPARAM lParam) override;

private:
  static INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
};
