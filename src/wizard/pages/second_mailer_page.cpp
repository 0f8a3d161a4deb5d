#include "wizard/pages/second_mailer_page.h"

#include "wizard/id_pages.h"
#include "wizard/page_fields.h"
#include "wizard/ps_wizard.h"
#include "wizard/service_ini.h"

IMPLEMENT_DYNAMIC(CSet2ndMailerID, CPropertyPage)

BOOL CSet2ndMailerID::OnInitDialog() {
  CPropertyPage::OnInitDialog();
  InitIdPage(*this, *data, SecondMailSection);
  return TRUE;
}

BOOL CSet2ndMailerID::OnSetActive() {
  constexpr int UserLimit = 30;
  ShowIdPage(*this, *data, UserLimit);
  PostButtons(*this, PSWIZB_BACK | PSWIZB_NEXT);
  return CPropertyPage::OnSetActive();
}

LRESULT CSet2ndMailerID::OnWizardBack() {
  ShowList(*this, false);
  return CPropertyPage::OnWizardBack();
}

LRESULT CSet2ndMailerID::OnWizardNext() {
  data->senderName = GetText(*this, IDC_FIELD_2);
  CString domain = GetText(*this, IDC_CHOICE);
  if (Refuses(*this, input_tests::SecondDomain, domain))
    return Stay;
  domain.TrimRight();
  if (Refuses(*this, input_tests::SecondHost, domain))
    return Stay;
  data->mailUser = GetText(*this, IDC_FIELD_1);
  data->mailAddress = data->mailUser + "@" + domain;
  if (Refuses(*this, input_tests::SecondUser, data->mailUser) ||
      Refuses(*this, input_tests::MailerSender, data->senderName))
    return Stay;

  // The mail user may contain an at sign, and then the host isn't the domain.
  CString host = data->mailAddress.Mid(data->mailAddress.Find("@") + 1);
  host.TrimRight();
  host.MakeLower();
  data->currentId = 0;
  data->ids[0] = data->mailUser;
  data->popServer = host;
  data->smtpServer = host;
  NameAccount(*data, data->mailAddress);
  ShowList(*this, false);
  return CPropertyPage::OnWizardNext();
}
