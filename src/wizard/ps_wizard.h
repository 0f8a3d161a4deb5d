// The property sheet of all wizards.
#pragma once

#include "mfc/afxwin.h"

#include <cstdint>

class CPsWizard : public CPropertySheet {
  DECLARE_DYNAMIC(CPsWizard)

public:
  enum Kind : int32_t { Other, Mailer, SecondMailer, News };

  // A Kind, which decides the help topic.
  int32_t wizardKind = Other;

  ~CPsWizard() override = default;

  // Shows the help when the Help button's command is tested, except when the help key caused the test.
  BOOL OnCmdMsg(UINT nID, int nCode, void *pExtra, AFX_CMDHANDLERINFO *pHandlerInfo) override;

protected:
  // Centres the sheet on the screen, and again when it is first shown.
  BOOL OnInitDialog() override;
  void OnShowWindow(BOOL show, UINT status);
  BOOL OnHelpInfo(HELPINFO *info);

  DECLARE_MESSAGE_MAP()

private:
  void ShowHelp();

  int32_t helpKeySeen = 0; // 1 after the help key, until the next test
  bool shown = false;
};

// ---- Calls of pages to the sheet ----

// Sets the wizard's buttons (PSWIZB_*) by a posted message, so they change right after the page is shown.
void PostButtons(const CWnd &page, DWORD buttons);

// The result of a Next button that keeps the page.
constexpr LRESULT Stay = -1;
