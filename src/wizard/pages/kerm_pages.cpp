#include "wizard/pages/kerm_pages.h"

#include "clients/service_names.h"
#include "wizard/account_writing.h"
#include "wizard/page_fields.h"
#include "wizard/ps_wizard.h"

// ---- Mail account ----

IMPLEMENT_DYNAMIC(CSetKERMMailerTop, CPropertyPage)

BOOL CSetKERMMailerTop::OnSetActive() {
  PostButtons(*this, PSWIZB_NEXT);
  return CPropertyPage::OnSetActive();
}

LRESULT CSetKERMMailerTop::OnWizardNext() {
  if (!TakeTrimmed(*this, IDC_FIELD_1, input_tests::OriginalAccount, data->userId))
    return Stay;
  return CPropertyPage::OnWizardNext();
}

// ---- Client ----

IMPLEMENT_DYNAMIC(CSetKERMMailerSelect, CPropertyPage)

BEGIN_MESSAGE_MAP(CSetKERMMailerSelect, CPropertyPage)
ON_CBN_SELCHANGE(IDC_CHOICE, OnSelectClient)
ON_WM_PAINT()
END_MESSAGE_MAP()

void CSetKERMMailerSelect::DoDataExchange(CDataExchange *exchange) {
  CPropertyPage::DoDataExchange(exchange);
  choice.Bind(exchange);
}

BOOL CSetKERMMailerSelect::OnInitDialog() {
  CPropertyPage::OnInitDialog();
  finder.FindMailClients(data->mailClients);
  data->mailClient = choice.List(data->mailClients);
  return data->mailClient != nullptr;
}

BOOL CSetKERMMailerSelect::OnSetActive() {
  PostButtons(*this, PSWIZB_BACK | PSWIZB_NEXT);
  return CPropertyPage::OnSetActive();
}

void CSetKERMMailerSelect::OnSelectClient() { choice.Take(*this, data->mailClients, data->mailClient); }

void CSetKERMMailerSelect::OnPaint() { choice.icon.Paint(*this, data->mailClient); }

// ---- Address and sender ----

IMPLEMENT_DYNAMIC(CSetKERMMailerID, CPropertyPage)

// The buttons stay as on the page before.
BOOL CSetKERMMailerID::OnSetActive() {
  constexpr WPARAM AddressLimit = 255;
  SendDlgItemMessage(IDC_FIELD_1, EM_LIMITTEXT, AddressLimit, 0);
  return CPropertyPage::OnSetActive();
}

LRESULT CSetKERMMailerID::OnWizardNext() {
  if (!TakeTrimmed(*this, IDC_FIELD_1, input_tests::OriginalAddress, data->mailAddress) ||
      !TakeTrimmed(*this, IDC_FIELD_2, input_tests::OriginalSender, data->senderName))
    return Stay;
  return CPropertyPage::OnWizardNext();
}

// ---- Servers ----

IMPLEMENT_DYNAMIC(CSetKERMServer, CPropertyPage)

BOOL CSetKERMServer::OnSetActive() {
  PostButtons(*this, PSWIZB_BACK | PSWIZB_NEXT);
  return CPropertyPage::OnSetActive();
}

LRESULT CSetKERMServer::OnWizardNext() {
  if (!TakeTrimmed(*this, IDC_FIELD_1, input_tests::OriginalPopServer, data->popServer) ||
      !TakeTrimmed(*this, IDC_FIELD_2, input_tests::OriginalSmtpServer, data->smtpServer))
    return Stay;
  return CPropertyPage::OnWizardNext();
}

// ---- Summary and writing ----

IMPLEMENT_DYNAMIC(CSetKERMEnd, CPropertyPage)

BEGIN_MESSAGE_MAP(CSetKERMEnd, CPropertyPage)
ON_WM_PAINT()
END_MESSAGE_MAP()

BOOL CSetKERMEnd::OnSetActive() {
  PostButtons(*this, PSWIZB_BACK | PSWIZB_FINISH);
  const std::string clientName = data->mailClient != nullptr ? NameOf(*data->mailClient) : CString();
  summary.Show(*this, MailSummary(data->userId, clientName, data->mailAddress, data->senderName, data->popServer,
                                  data->smtpServer));
  return CPropertyPage::OnSetActive();
}

BOOL CSetKERMEnd::OnWizardFinish() {
  data->accountName = data->mailAddress;
  MailAccountSpec spec = *data;
  spec.originalDomain = 1;
  spec.connectionName = ServiceConnectionName;
  return WriteMailAccount(data->mailClient, spec, OriginalDomainUser) ? CPropertyPage::OnWizardFinish() : FALSE;
}

void CSetKERMEnd::OnPaint() { icon.Paint(*this, data->mailClient); }
