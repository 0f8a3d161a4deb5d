// The pages of the original-domain wizard, in their order: the user types everything, the servers too.
#pragma once

#include "wizard/pages/page_parts.h"
#include "wizard/wizard_data.h"

// Mail account.
class CSetKERMMailerTop : public CPropertyPage {
  DECLARE_DYNAMIC(CSetKERMMailerTop)

public:
  SpecWizardData *data = nullptr;

  CSetKERMMailerTop();

protected:
  BOOL OnSetActive() override;
  LRESULT OnWizardNext() override;
};

// Which mail client.
class CSetKERMMailerSelect : public CPropertyPage {
  DECLARE_DYNAMIC(CSetKERMMailerSelect)

public:
  SpecWizardData *data = nullptr;

  CSetKERMMailerSelect();

protected:
  void DoDataExchange(CDataExchange *exchange) override;
  BOOL OnInitDialog() override;
  BOOL OnSetActive() override;
  void OnSelectClient();
  void OnPaint();

  DECLARE_MESSAGE_MAP()

private:
  page_parts::ClientChoice choice;
  ClientFinder finder;
};

// Address and sender.
class CSetKERMMailerID : public CPropertyPage {
  DECLARE_DYNAMIC(CSetKERMMailerID)

public:
  SpecWizardData *data = nullptr;

  CSetKERMMailerID();

protected:
  BOOL OnSetActive() override;
  LRESULT OnWizardNext() override;
};

// POP and SMTP host.
class CSetKERMServer : public CPropertyPage {
  DECLARE_DYNAMIC(CSetKERMServer)

public:
  SpecWizardData *data = nullptr;

  CSetKERMServer();

protected:
  BOOL OnSetActive() override;
  LRESULT OnWizardNext() override;
};

// The summary, and the write.
class CSetKERMEnd : public CPropertyPage {
  DECLARE_DYNAMIC(CSetKERMEnd)

public:
  SpecWizardData *data = nullptr;

  CSetKERMEnd();

protected:
  BOOL OnSetActive() override;
  BOOL OnWizardFinish() override;
  void OnPaint();

  DECLARE_MESSAGE_MAP()

private:
  page_parts::SummaryText summary;
  page_parts::ClientIcon icon;
};
