// The sheet that all wizards run in.
#pragma once

#include "mfc/afxwin.h"

#include <cstdint>

class CPsWizard : public CPropertySheet {
  DECLARE_DYNAMIC(CPsWizard)

public:
  enum Kind : int32_t { Other, Mailer, SecondMailer, News };

  // A Kind: which help topic the wizard has.
  int32_t wizardKind = Other;

  ~CPsWizard() override = default;

  // Shows the help when the Help button's command is tested, unless the test comes from the help key.
  BOOL OnCmdMsg(UINT nID, int nCode, void *pExtra, AFX_CMDHANDLERINFO *pHandlerInfo) override;

protected:
  // Puts the sheet in the middle of the screen, and does so again when it is first shown.
  BOOL OnInitDialog() override;
  void OnShowWindow(BOOL show, UINT status);
  BOOL OnHelpInfo(HELPINFO *info);

  DECLARE_MESSAGE_MAP()

private:
  void ShowHelp();

  int32_t helpKeySeen = 0; // 1 from the help key until the next test
  bool shown = false;
};

// ---- What pages say to the sheet ----

// Sets the wizard's buttons (PSWIZB_*). Posted, so they change just after the page has come up.
void PostButtons(const CWnd &page, DWORD buttons);

// What a Next button answers to keep the page.
constexpr LRESULT Stay = -1;
