// The pages of the news wizard, in their order.
#pragma once

#include "wizard/pages/page_parts.h"
#include "wizard/wizard_data.h"

// Which ID.
class CSetNewsTop : public CPropertyPage {
  DECLARE_DYNAMIC(CSetNewsTop)

public:
  WizardData *data = nullptr;

  CSetNewsTop();

protected:
  BOOL OnSetActive() override;
  LRESULT OnWizardNext() override;
  void OnLButtonDblClk(UINT keys, CPoint point);

  DECLARE_MESSAGE_MAP()
};

// Which news client.
class CSetNewsSelect : public CPropertyPage {
  DECLARE_DYNAMIC(CSetNewsSelect)

public:
  WizardData *data = nullptr;

  CSetNewsSelect();

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

// Address and name.
class CSetNewsId : public CPropertyPage {
  DECLARE_DYNAMIC(CSetNewsId)

public:
  WizardData *data = nullptr;

  CSetNewsId();

protected:
  BOOL OnInitDialog() override;
  BOOL OnSetActive() override;
  LRESULT OnWizardBack() override;
  LRESULT OnWizardNext() override;
};

// Which of the two news servers.
class CSetNewsServer : public CPropertyPage {
  DECLARE_DYNAMIC(CSetNewsServer)

public:
  WizardData *data = nullptr;

  CSetNewsServer();

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

// The summary, and the write.
class CSetNewsEnd : public CPropertyPage {
  DECLARE_DYNAMIC(CSetNewsEnd)

public:
  WizardData *data = nullptr;

  CSetNewsEnd();

protected:
  BOOL OnSetActive() override;
  BOOL OnWizardFinish() override;
  void OnPaint();

  DECLARE_MESSAGE_MAP()

private:
  page_parts::SummaryText summary;
  page_parts::ClientIcon icon;
};
