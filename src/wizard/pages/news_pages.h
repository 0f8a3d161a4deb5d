// The pages of the news wizard, in their order.
#pragma once

#include "mfc/afxwin.h"
#include "resources/resource.h"
#include "wizard/client_choice.h"
#include "wizard/summary_text.h"
#include "wizard/wizard_data.h"

// The ID.
class CSetNewsTop : public CPropertyPage {
  DECLARE_DYNAMIC(CSetNewsTop)

public:
  WizardData *data = nullptr;

  CSetNewsTop() : CPropertyPage(IDD_SET_NEWS_TOP, 0) {}

protected:
  BOOL OnSetActive() override;
  LRESULT OnWizardNext() override;
  void OnLButtonDblClk(UINT keys, CPoint point);

  DECLARE_MESSAGE_MAP()
};

// The news client.
class CSetNewsSelect : public CPropertyPage {
  DECLARE_DYNAMIC(CSetNewsSelect)

public:
  WizardData *data = nullptr;

  CSetNewsSelect() : CPropertyPage(IDD_SET_NEWS_SELECT, 0) {}

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

// Address and name.
class CSetNewsId : public CPropertyPage {
  DECLARE_DYNAMIC(CSetNewsId)

public:
  WizardData *data = nullptr;

  CSetNewsId() : CPropertyPage(IDD_SET_NEWS_ID, 0) {}

protected:
  BOOL OnInitDialog() override;
  BOOL OnSetActive() override;
  LRESULT OnWizardBack() override;
  LRESULT OnWizardNext() override;
};

// The choice of news servers.
class CSetNewsServer : public CPropertyPage {
  DECLARE_DYNAMIC(CSetNewsServer)

public:
  WizardData *data = nullptr;

  CSetNewsServer() : CPropertyPage(IDD_SET_NEWS_SERVER, 0) {}

protected:
  BOOL OnInitDialog() override;
  BOOL OnSetActive() override;
  LRESULT OnWizardNext() override;
  void OnForum();
  void OnSquare();

  DECLARE_MESSAGE_MAP()

private:
  void Toggle(size_t server);
};

// The summary; Finish writes the account.
class CSetNewsEnd : public CPropertyPage {
  DECLARE_DYNAMIC(CSetNewsEnd)

public:
  WizardData *data = nullptr;

  CSetNewsEnd() : CPropertyPage(IDD_SET_NEWS_END, 0) {}

protected:
  BOOL OnSetActive() override;
  BOOL OnWizardFinish() override;
  void OnPaint();

  DECLARE_MESSAGE_MAP()

private:
  SummaryText summary;
  ClientIcon icon;
};
