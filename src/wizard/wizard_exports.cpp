// The wizards that the library exports: each runs one modal sheet from start to end.
#include "acctkit/acctkit.h"

#include "entry/guard.h"
#include "wizard/client_finder.h"
#include "wizard/pages/kerm_pages.h"
#include "wizard/pages/mailer_pages.h"
#include "wizard/pages/news_pages.h"
#include "wizard/pages/second_mailer_page.h"
#include "wizard/pages/short_pages.h"
#include "wizard/ps_wizard.h"
#include "wizard/wizard_data.h"

#include <cstring>

namespace {

constexpr const char *WrongCall = "プログラムが不正に呼び出されました。";
constexpr const char *NoClient = "設定可能なメーラーが一つも搭載されていません。\nメーラーの設定を終了します。";

// The end of a wizard that never comes up.
int32_t Refuse(const char *message) {
  AfxMessageBox(message);
  return 0;
}

// The strings of a host's list, one behind the other. A zero byte at its very start doesn't end it.
void ReadIds(const char *list, CStringArray &ids) {
  for (const char *at = list; at[0] != '\0' || at[1] != '\0'; at += std::strlen(at)) {
    if (*at == '\0')
      ++at;
    ids.Add(at);
  }
}

// The IDs with their spare entry, and the host's ID among them.
void FillIds(WizardData &data, const char *id, const char *idList) {
  ReadIds(idList, data.ids);
  data.ids.Add(""); // the spare entry, which an empty ID finds
  for (int index = data.ids.GetSize() - 1; index >= 0; --index)
    if (data.ids[index] == id)
      data.currentId = index;
}

// Runs the sheet with its pages in their order. 0 if it never came up.
template <typename Data, typename... Pages> int32_t RunWizard(CPsWizard &sheet, Data &data, Pages &...pages) {
  const auto add = [&](auto &page) {
    page.data = &data;
    page.m_psp.dwFlags |= PSP_HASHELP;
    sheet.AddPage(&page);
  };
  sheet.m_psh.dwFlags |= PSH_WIZARD | PSH_HASHELP;
  (add(pages), ...);
  return sheet.DoModal() == -1 ? 0 : 1;
}

} // namespace

// Every export makes the library's module state the current one, so that dialogs are looked up in this library.

int32_t MailerWizard(int32_t, const char *id, const char *idList) {
  return Guarded([&] {
    const AFX_MAINTAIN_STATE2 state(AfxGetStaticModuleState());
    CPsWizard sheet;
    CSetMailerTop1 top;
    CSetMailerSelect select;
    CSetMailerID address;
    CSetMailerEnd end;
    WizardData data;
    if (id == nullptr || idList == nullptr)
      return Refuse(WrongCall);
    sheet.wizardKind = CPsWizard::Mailer;
    if (!ClientFinder().HasMailClient())
      return Refuse(NoClient);
    FillIds(data, id, idList);
    return RunWizard(sheet, data, top, select, address, end);
  });
}

int32_t MailerWizard2() {
  return Guarded([&] {
    const AFX_MAINTAIN_STATE2 state(AfxGetStaticModuleState());
    CPsWizard sheet;
    CSetMailerTop2 top;
    CSetMailerSelect select;
    CSet2ndMailerID address;
    CSetMailerEnd end;
    WizardData data;
    sheet.wizardKind = CPsWizard::SecondMailer;
    if (!ClientFinder().HasMailClient())
      return Refuse(NoClient);
    data.ids.Add("");
    data.secondAccount = 1;
    return RunWizard(sheet, data, top, select, address, end);
  });
}

int32_t NewsWizard(int32_t, const char *id, const char *idList) {
  return Guarded([&] {
    const AFX_MAINTAIN_STATE2 state(AfxGetStaticModuleState());
    CPsWizard sheet;
    CSetNewsTop top;
    CSetNewsSelect select;
    CSetNewsId address;
    CSetNewsServer servers;
    CSetNewsEnd end;
    WizardData data;
    if (id == nullptr || idList == nullptr)
      return Refuse(WrongCall);
    sheet.wizardKind = CPsWizard::News;
    if (!ClientFinder().HasNewsClient())
      return Refuse(NoClient);
    FillIds(data, id, idList);
    return RunWizard(sheet, data, top, select, address, servers, end);
  });
}

int32_t KERMWizard() {
  return Guarded([&] {
    const AFX_MAINTAIN_STATE2 state(AfxGetStaticModuleState());
    CPsWizard sheet;
    CSetKERMMailerTop top;
    CSetKERMMailerSelect select;
    CSetKERMMailerID address;
    CSetKERMServer servers;
    CSetKERMEnd end;
    SpecWizardData data;
    if (!ClientFinder().HasMailClient())
      return Refuse(NoClient);
    return RunWizard(sheet, data, top, select, address, servers, end);
  });
}

int32_t ShortMailWizard(int32_t, const char *id) {
  return Guarded([&] {
    const AFX_MAINTAIN_STATE2 state(AfxGetStaticModuleState());
    CPsWizard sheet;
    CSetShortMailerSelect select;
    CSetShortMailerID address;
    SpecWizardData data;
    if (id == nullptr)
      return Refuse(WrongCall);
    if (!ClientFinder().HasMailClient())
      return Refuse(NoClient);
    data.userId = id;
    return RunWizard(sheet, data, select, address);
  });
}
