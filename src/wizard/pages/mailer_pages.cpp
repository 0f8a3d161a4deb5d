#include "wizard/pages/mailer_pages.h"

#include "wizard/account_writing.h"
#include "wizard/build_stamp.h"
#include "wizard/id_pages.h"
#include "wizard/page_fields.h"
#include "wizard/ps_wizard.h"
#include "wizard/service_ini.h"

// ---- ID ----

IMPLEMENT_DYNAMIC(CSetMailerTop1, CPropertyPage)

BEGIN_MESSAGE_MAP(CSetMailerTop1, CPropertyPage)
ON_CBN_SELCHANGE(IDC_CHOICE, OnSelectId)
ON_WM_LBUTTONDBLCLK()
END_MESSAGE_MAP()

BOOL CSetMailerTop1::OnSetActive() {
  PostButtons(*this, PSWIZB_NEXT);
  ListIds(*this, *data);
  return CPropertyPage::OnSetActive();
}

void CSetMailerTop1::OnSelectId() { data->idState = WizardData::Changed; }

LRESULT CSetMailerTop1::OnWizardNext() {
  if (!TakeId(*this, *data)) {
    AfxMessageBox(WrongIdMessage);
    MoveFocus(*this, IDC_CHOICE);
    return Stay;
  }
  return CPropertyPage::OnWizardNext();
}

void CSetMailerTop1::OnLButtonDblClk(UINT, CPoint) {
  HandleDoubleClick(*this, [this] { Default(); });
}

IMPLEMENT_DYNAMIC(CSetMailerTop2, CPropertyPage)

BEGIN_MESSAGE_MAP(CSetMailerTop2, CPropertyPage)
ON_WM_LBUTTONDBLCLK()
END_MESSAGE_MAP()

BOOL CSetMailerTop2::OnSetActive() {
  PostButtons(*this, PSWIZB_NEXT);
  SetWindowText("MailerWizard (" + data->CurrentId() + ")");
  return CPropertyPage::OnSetActive();
}

void CSetMailerTop2::OnLButtonDblClk(UINT, CPoint) {
  HandleDoubleClick(*this, [this] { Default(); });
}

// ---- Client ----

IMPLEMENT_DYNAMIC(CSetMailerSelect, CPropertyPage)

BEGIN_MESSAGE_MAP(CSetMailerSelect, CPropertyPage)
ON_CBN_SELCHANGE(IDC_CHOICE, OnSelectClient)
ON_WM_PAINT()
END_MESSAGE_MAP()

void CSetMailerSelect::DoDataExchange(CDataExchange *exchange) {
  CPropertyPage::DoDataExchange(exchange);
  choice.Bind(exchange);
}

BOOL CSetMailerSelect::OnInitDialog() {
  CPropertyPage::OnInitDialog();
  ClientFinder().FindMailClients(data->mailClients);
  data->mailClient = choice.List(data->mailClients);
  if (data->mailClient == nullptr)
    return FALSE;
  data->clientName = NameOf(*data->mailClient);
  return TRUE;
}

BOOL CSetMailerSelect::OnSetActive() {
  PostButtons(*this, PSWIZB_BACK | PSWIZB_NEXT);
  return CPropertyPage::OnSetActive();
}

void CSetMailerSelect::OnSelectClient() {
  if (choice.Take(*this, data->mailClients, data->mailClient))
    data->clientName = NameOf(*data->mailClient);
}

void CSetMailerSelect::OnPaint() { choice.icon.Paint(*this, data->mailClient); }

// ---- Address and sender ----

IMPLEMENT_DYNAMIC(CSetMailerID, CPropertyPage)

BOOL CSetMailerID::OnInitDialog() {
  CPropertyPage::OnInitDialog();
  InitIdPage(*this, *data, MailSection);
  return TRUE;
}

BOOL CSetMailerID::OnSetActive() {
  ShowIdPageWithId(*this, *data);
  PostButtons(*this, PSWIZB_BACK | PSWIZB_NEXT);
  return CPropertyPage::OnSetActive();
}

LRESULT CSetMailerID::OnWizardBack() {
  ShowList(*this, false);
  return CPropertyPage::OnWizardBack();
}

LRESULT CSetMailerID::OnWizardNext() {
  data->senderName = GetText(*this, IDC_FIELD_2);
  data->mailUser = GetText(*this, IDC_FIELD_1);
  const CString domain = GetText(*this, IDC_CHOICE);
  if (Refuses(*this, input_tests::MailerDomain, domain))
    return Stay;
  const std::string number = std::to_string(1 + SendDlgItemMessage(IDC_CHOICE, CB_GETCURSEL));
  const std::string settings = ServiceIniPath();
  ReadServiceString(settings, MailSection, ("pop" + number).c_str(), data->popServer);
  ReadServiceString(settings, MailSection, ("smtp" + number).c_str(), data->smtpServer);
  data->mailAddress = data->mailUser + "@" + domain;
  if (Refuses(*this, input_tests::MailerUser, data->mailUser) ||
      Refuses(*this, input_tests::MailerSender, data->senderName))
    return Stay;
  NameAccount(*data, data->CurrentId());
  ShowList(*this, false);
  return CPropertyPage::OnWizardNext();
}

// ---- Summary and writing ----

IMPLEMENT_DYNAMIC(CSetMailerEnd, CPropertyPage)

BEGIN_MESSAGE_MAP(CSetMailerEnd, CPropertyPage)
ON_WM_PAINT()
END_MESSAGE_MAP()

BOOL CSetMailerEnd::OnSetActive() {
  PostButtons(*this, PSWIZB_BACK | PSWIZB_FINISH);
  summary.Show(*this, MailSummary(data->CurrentId(), data->clientName, data->mailAddress, data->senderName,
                                  data->popServer, data->smtpServer));
  return CPropertyPage::OnSetActive();
}

BOOL CSetMailerEnd::OnWizardFinish() {
  MailAccountSpec spec;
  spec.userId = data->CurrentId();
  spec.senderName = data->senderName;
  spec.accountName = data->accountName;
  spec.reserved = data->reserved;
  spec.smtpServer = data->smtpServer;
  spec.popServer = data->popServer;
  spec.mailAddress = data->mailAddress;
  spec.connectionName = data->connectionName;
  spec.secondAccount = data->secondAccount;
  return WriteMailAccount(data->mailClient, spec, data->secondAccount ? SecondUser : AnyUser)
             ? CPropertyPage::OnWizardFinish()
             : FALSE;
}

void CSetMailerEnd::OnPaint() { icon.Paint(*this, data->mailClient); }
