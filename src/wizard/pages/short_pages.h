// The pages of the short wizard, in their order. Both ask before the wizard is cancelled.
#pragma once

#include "mfc/afxwin.h"
#include "resources/resource.h"
#include "wizard/client_choice.h"
#include "wizard/client_finder.h"
#include "wizard/wizard_data.h"

// The mail client.
class CSetShortMailerSelect : public CPropertyPage {
  DECLARE_DYNAMIC(CSetShortMailerSelect)

public:
  SpecWizardData *data = nullptr;

  CSetShortMailerSelect() : CPropertyPage(IDD_SET_SHORT_MAILER_SELECT, 0) {}

protected:
  void DoDataExchange(CDataExchange *exchange) override;
  BOOL OnInitDialog() override;
  BOOL OnSetActive() override;
  BOOL OnQueryCancel() override;
  virtual void OnSelectClient();
  void OnPaint();

  DECLARE_MESSAGE_MAP()

private:
  ClientChoice choice;
  ClientFinder finder;
};

// Address and sender; Finish writes the account.
class CSetShortMailerID : public CPropertyPage {
  DECLARE_DYNAMIC(CSetShortMailerID)

public:
  SpecWizardData *data = nullptr;

  CSetShortMailerID() : CPropertyPage(IDD_SET_SHORT_MAILER_ID, 0) {}

protected:
  BOOL OnInitDialog() override;
  BOOL OnSetActive() override;
  BOOL OnQueryCancel() override;
  LRESULT OnWizardBack() override;
  BOOL OnWizardFinish() override;
  virtual LRESULT OnFocusControl(WPARAM control, LPARAM);

  DECLARE_MESSAGE_MAP()

private:
  // Stores what was typed in the record; false if a test refuses it.
  bool TakeInput();
};
