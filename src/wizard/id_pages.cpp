#include "wizard/id_pages.h"

#include "clients/service_names.h"
#include "resources/resource.h"
#include "wizard/page_fields.h"

void ListIds(const CWnd &page, const WizardData &data) {
  page.SendDlgItemMessage(IDC_CHOICE, CB_RESETCONTENT);
  for (int index = 0; index < data.ids.GetSize(); ++index)
    if (!data.ids[index].IsEmpty())
      page.SendDlgItemMessage(IDC_CHOICE, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(data.ids[index].c_str()));
  page.SendDlgItemMessage(IDC_CHOICE, CB_SETCURSEL, static_cast<WPARAM>(data.currentId), 0);
}

bool TakeId(const CWnd &page, WizardData &data) {
  CString id = GetText(page, IDC_CHOICE);
  if (!NormalizeServiceId(id))
    return false;
  const int spare = data.ids.GetSize() - 1;
  int index = 0;
  while (index <= spare && data.ids[index] != id)
    ++index;
  if (index <= spare) {
    if (index != data.currentId)
      data.idState = WizardData::Changed;
    data.currentId = index;
  } else if (page.SendDlgItemMessage(IDC_CHOICE, CB_GETCURSEL) == CB_ERR) {
    data.currentId = spare;
    data.ids[spare] = id;
    data.idState = WizardData::Changed;
  }
  return true;
}

void InitIdPage(const CWnd &page, WizardData &data, const char *section) {
  FillDomainCombo(page, section);
  data.idState = WizardData::FirstShow;
}

void ShowIdPage(const CWnd &page, WizardData &data, int userLimit) {
  if (data.idState == WizardData::FirstShow) {
    ShowList(page, true);
    data.idState = WizardData::Settled;
  }
  page.SendDlgItemMessage(IDC_FIELD_1, EM_LIMITTEXT, static_cast<WPARAM>(userLimit), 0);
}

void ShowIdPageWithId(const CWnd &page, WizardData &data) {
  constexpr int UserLimit = 32;
  ShowIdPage(page, data, UserLimit);
  if (GetText(page, IDC_FIELD_1).IsEmpty() || data.idState == WizardData::Changed) {
    data.idState = WizardData::Settled;
    page.SetDlgItemText(IDC_FIELD_1, data.CurrentId());
  }
}

void NameAccount(WizardData &data, const std::string &name) {
  data.connectionName = ShortConnectionName;
  data.accountName = ServiceTitle(name);
}
