#include "wizard/pages/short_pages.h"

#include "clients/service_constants.h"
#include "clients/service_names.h"
#include "wizard/account_writing.h"
#include "wizard/page_fields.h"
#include "wizard/ps_wizard.h"
#include "wizard/service_ini.h"

namespace {

bool MayCancel() { return AfxMessageBox("メーラーの設定を中止します。よろしいですか？", MB_YESNO) == IDYES; }

} // namespace

// ---- Client ----

IMPLEMENT_DYNAMIC(CSetShortMailerSelect, CPropertyPage)

BEGIN_MESSAGE_MAP(CSetShortMailerSelect, CPropertyPage)
ON_CBN_SELCHANGE(IDC_CHOICE, OnSelectClient)
ON_WM_PAINT()
END_MESSAGE_MAP()

void CSetShortMailerSelect::DoDataExchange(CDataExchange *exchange) {
  CPropertyPage::DoDataExchange(exchange);
  choice.Bind(exchange);
}

BOOL CSetShortMailerSelect::OnInitDialog() {
  CPropertyPage::OnInitDialog();
  finder.FindMailClients(data->mailClients);
  data->mailClient = choice.List(data->mailClients);
  return data->mailClient != nullptr;
}

BOOL CSetShortMailerSelect::OnSetActive() {
  PostButtons(*this, PSWIZB_NEXT);
  return CPropertyPage::OnSetActive();
}

BOOL CSetShortMailerSelect::OnQueryCancel() { return MayCancel() ? CPropertyPage::OnQueryCancel() : FALSE; }

void CSetShortMailerSelect::OnSelectClient() { choice.Take(*this, data->mailClients, data->mailClient); }

void CSetShortMailerSelect::OnPaint() { choice.icon.Paint(*this, data->mailClient); }

// ---- Address, sender and writing ----

IMPLEMENT_DYNAMIC(CSetShortMailerID, CPropertyPage)

BEGIN_MESSAGE_MAP(CSetShortMailerID, CPropertyPage)
ON_MESSAGE(FocusControlMessage, OnFocusControl)
END_MESSAGE_MAP()

BOOL CSetShortMailerID::OnInitDialog() {
  CPropertyPage::OnInitDialog();
  FillDomainCombo(*this, MailSection);
  return TRUE;
}

BOOL CSetShortMailerID::OnSetActive() {
  PostButtons(*this, PSWIZB_BACK | PSWIZB_FINISH);
  if (GetText(*this, IDC_CHOICE).IsEmpty())
    ShowList(*this, true);
  if (GetText(*this, IDC_FIELD_1).IsEmpty())
    SetDlgItemText(IDC_FIELD_1, data->userId);
  return CPropertyPage::OnSetActive();
}

BOOL CSetShortMailerID::OnQueryCancel() { return MayCancel() ? CPropertyPage::OnQueryCancel() : FALSE; }

LRESULT CSetShortMailerID::OnWizardBack() {
  ShowList(*this, false);
  return CPropertyPage::OnWizardBack();
}

LRESULT CSetShortMailerID::OnFocusControl(WPARAM control, LPARAM) {
  MoveFocus(*this, static_cast<int>(control));
  return 0;
}

bool CSetShortMailerID::TakeInput() {
  const CString domain = GetText(*this, IDC_CHOICE);
  CString alias;
  if (Refuses(*this, input_tests::MailerDomain, domain, Focus::Later) ||
      !TakeTrimmed(*this, IDC_FIELD_1, input_tests::ShortAlias, alias, Focus::Later))
    return false;
  data->mailAddress = alias + "@" + domain;
  return TakeTrimmed(*this, IDC_FIELD_2, input_tests::OriginalSender, data->senderName, Focus::Later);
}

BOOL CSetShortMailerID::OnWizardFinish() {
  if (!TakeInput())
    return FALSE;
  data->accountName = ServiceTitle(data->userId);
  data->popServer = IspPopHost;
  data->smtpServer = IspSmtpHost;
  MailAccountSpec spec = *data;
  spec.connectionName = ServiceConnectionName;
  return WriteMailAccount(data->mailClient, spec, AnyUser) ? CPropertyPage::OnWizardFinish() : FALSE;
}
