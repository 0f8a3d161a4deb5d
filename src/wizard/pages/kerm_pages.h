// The pages of the original-domain wizard, in their order. The user types everything, including the servers.
#pragma once

#include "mfc/afxwin.h"
#include "resources/resource.h"
#include "wizard/client_choice.h"
#include "wizard/client_finder.h"
#include "wizard/summary_text.h"
#include "wizard/wizard_data.h"

// Mail account.
class CSetKERMMailerTop : public CPropertyPage {
  DECLARE_DYNAMIC(CSetKERMMailerTop)

public:
  SpecWizardData *data = nullptr;

  CSetKERMMailerTop() : CPropertyPage(IDD_SET_KERM_MAILER_TOP, 0) {}

protected:
  BOOL OnSetActive() override;
  LRESULT OnWizardNext() override;
};

// The mail client.
class CSetKERMMailerSelect : public CPropertyPage {
  DECLARE_DYNAMIC(CSetKERMMailerSelect)

public:
  SpecWizardData *data = nullptr;

  CSetKERMMailerSelect() : CPropertyPage(IDD_SET_KERM_MAILER_SELECT, 0) {}

protected:
  void DoDataExchange(CDataExchange *exchange) override;
  BOOL OnInitDialog() override;
  BOOL OnSetActive() override;
  void OnSelectClient();
  void OnPaint();

  DECLARE_MESSAGE_MAP()

private:
  ClientChoice choice;
  ClientFinder finder;
};

// Address and sender.
class CSetKERMMailerID : public CPropertyPage {
  DECLARE_DYNAMIC(CSetKERMMailerID)

public:
  SpecWizardData *data = nullptr;

  CSetKERMMailerID() : CPropertyPage(IDD_SET_KERM_MAILER_ID, 0) {}

protected:
  BOOL OnSetActive() override;
  LRESULT OnWizardNext() override;
};

// POP and SMTP host.
class CSetKERMServer : public CPropertyPage {
  DECLARE_DYNAMIC(CSetKERMServer)

public:
  SpecWizardData *data = nullptr;

  CSetKERMServer() : CPropertyPage(IDD_SET_KERM_SERVER, 0) {}

protected:
  BOOL OnSetActive() override;
  LRESULT OnWizardNext() override;
};

// The summary; Finish writes the account.
class CSetKERMEnd : public CPropertyPage {
  DECLARE_DYNAMIC(CSetKERMEnd)

public:
  SpecWizardData *data = nullptr;

  CSetKERMEnd() : CPropertyPage(IDD_SET_KERM_END, 0) {}

protected:
  BOOL OnSetActive() override;
  BOOL OnWizardFinish() override;
  void OnPaint();

  DECLARE_MESSAGE_MAP()

private:
  SummaryText summary;
  ClientIcon icon;
};
