// The pages of the mailer wizard, in their order. The second-mailer wizard has its own first page and ID page, and
// shares the others.
#pragma once

#include "mfc/afxwin.h"
#include "resources/resource.h"
#include "wizard/client_choice.h"
#include "wizard/summary_text.h"
#include "wizard/wizard_data.h"

// The ID, chosen from the list or typed.
class CSetMailerTop1 : public CPropertyPage {
  DECLARE_DYNAMIC(CSetMailerTop1)

public:
  WizardData *data = nullptr;

  CSetMailerTop1() : CPropertyPage(IDD_SET_MAILER_TOP1, 0) {}

protected:
  BOOL OnSetActive() override;
  LRESULT OnWizardNext() override;
  void OnSelectId();
  void OnLButtonDblClk(UINT keys, CPoint point);

  DECLARE_MESSAGE_MAP()
};

// The first page of the second-mailer wizard, on which there is nothing to type.
class CSetMailerTop2 : public CPropertyPage {
  DECLARE_DYNAMIC(CSetMailerTop2)

public:
  WizardData *data = nullptr;

  CSetMailerTop2() : CPropertyPage(IDD_SET_MAILER_TOP2, 0) {}

protected:
  BOOL OnSetActive() override;
  void OnLButtonDblClk(UINT keys, CPoint point);

  DECLARE_MESSAGE_MAP()
};

// The mail client.
class CSetMailerSelect : public CPropertyPage {
  DECLARE_DYNAMIC(CSetMailerSelect)

public:
  WizardData *data = nullptr;

  CSetMailerSelect() : CPropertyPage(IDD_SET_MAILER_SELECT, 0) {}

protected:
  void DoDataExchange(CDataExchange *exchange) override;
  BOOL OnInitDialog() override;
  BOOL OnSetActive() override;
  void OnSelectClient();
  void OnPaint();

  DECLARE_MESSAGE_MAP()

private:
  ClientChoice choice;
};

// Address and sender.
class CSetMailerID : public CPropertyPage {
  DECLARE_DYNAMIC(CSetMailerID)

public:
  WizardData *data = nullptr;

  CSetMailerID() : CPropertyPage(IDD_SET_MAILER_ID, 0) {}

protected:
  BOOL OnInitDialog() override;
  BOOL OnSetActive() override;
  LRESULT OnWizardBack() override;
  LRESULT OnWizardNext() override;
};

// The summary; Finish writes the account.
class CSetMailerEnd : public CPropertyPage {
  DECLARE_DYNAMIC(CSetMailerEnd)

public:
  WizardData *data = nullptr;

  CSetMailerEnd() : CPropertyPage(IDD_SET_MAILER_END, 0) {}

protected:
  BOOL OnSetActive() override;
  BOOL OnWizardFinish() override;
  void OnPaint();

  DECLARE_MESSAGE_MAP()

private:
  SummaryText summary;
  ClientIcon icon;
};
