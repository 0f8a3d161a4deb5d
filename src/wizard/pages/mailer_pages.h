// The pages of the mailer wizard, in their order. The second-mailer wizard has a first page and an ID page of its own
// and shares the others.
#pragma once

#include "wizard/pages/page_parts.h"
#include "wizard/wizard_data.h"

// Which ID: chosen from the list or typed.
class CSetMailerTop1 : public CPropertyPage {
  DECLARE_DYNAMIC(CSetMailerTop1)

public:
  WizardData *data = nullptr;

  CSetMailerTop1();

protected:
  BOOL OnSetActive() override;
  LRESULT OnWizardNext() override;
  void OnSelectId();
  void OnLButtonDblClk(UINT keys, CPoint point);

  DECLARE_MESSAGE_MAP()
};

// The first page of the second-mailer wizard, which takes no ID.
class CSetMailerTop2 : public CPropertyPage {
  DECLARE_DYNAMIC(CSetMailerTop2)

public:
  WizardData *data = nullptr;

  CSetMailerTop2();

protected:
  BOOL OnSetActive() override;
  void OnLButtonDblClk(UINT keys, CPoint point);

  DECLARE_MESSAGE_MAP()
};

// Which mail client.
class CSetMailerSelect : public CPropertyPage {
  DECLARE_DYNAMIC(CSetMailerSelect)

public:
  WizardData *data = nullptr;

  CSetMailerSelect();

protected:
  void DoDataExchange(CDataExchange *exchange) override;
  BOOL OnInitDialog() override;
  BOOL OnSetActive() override;
  void OnSelectClient();
  void OnPaint();

  DECLARE_MESSAGE_MAP()

private:
  page_parts::ClientChoice choice;
};

// Address and sender.
class CSetMailerID : public CPropertyPage {
  DECLARE_DYNAMIC(CSetMailerID)

public:
  WizardData *data = nullptr;

  CSetMailerID();

protected:
  BOOL OnInitDialog() override;
  BOOL OnSetActive() override;
  LRESULT OnWizardBack() override;
  LRESULT OnWizardNext() override;
};

// The summary, and the write.
class CSetMailerEnd : public CPropertyPage {
  DECLARE_DYNAMIC(CSetMailerEnd)

public:
  WizardData *data = nullptr;

  CSetMailerEnd();

protected:
  BOOL OnSetActive() override;
  BOOL OnWizardFinish() override;
  void OnPaint();

  DECLARE_MESSAGE_MAP()

private:
  page_parts::SummaryText summary;
  page_parts::ClientIcon icon;
};
