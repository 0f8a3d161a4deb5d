// The exported wizards. Each runs one modal sheet from start to end.
#include "acctkit/acctkit.h"

#include "clients/guarded.h"
#include "wizard/client_finder.h"
#include "wizard/id_list.h"
#include "wizard/pages/kerm_pages.h"
#include "wizard/pages/mailer_pages.h"
#include "wizard/pages/news_pages.h"
#include "wizard/pages/second_mailer_page.h"
#include "wizard/pages/short_pages.h"
#include "wizard/ps_wizard.h"
#include "wizard/wizard_data.h"

#include <atomic>
#include <tuple>

namespace {

constexpr const char *WrongCall = "プログラムが不正に呼び出されました。";
constexpr const char *NoClient = "設定可能なメーラーが一つも搭載されていません。\nメーラーの設定を終了します。";

// A thread's right to use the framework, which works for one thread at a time. The thread that opens a wizard has it
// until that wizard is closed, and may open others from within it.
class FrameworkClaim {
public:
  FrameworkClaim() : isOutermost(holder.compare_exchange_strong(found, GetCurrentThreadId())) {}
  FrameworkClaim(const FrameworkClaim &) = delete;
  FrameworkClaim &operator=(const FrameworkClaim &) = delete;
  ~FrameworkClaim() {
    if (isOutermost)
      holder = 0;
  }

  bool IsGranted() const { return isOutermost || found == GetCurrentThreadId(); }

private:
  static inline std::atomic<DWORD> holder = 0; // a thread's id, 0 for none

  DWORD found = 0; // the holder before
  bool isOutermost;
};

// Ends a wizard before it is shown.
int32_t Refuse(const char *message) {
  AfxMessageBox(message);
  return 0;
}

// Runs a wizard. Its parameters are the wizard's record and its pages in their order, whether the host's arguments are
// valid, the clients that the wizard needs, and how the record is filled. 0 if the sheet was never shown, for example
// while another thread has a wizard open.
template <typename Data, typename... Pages, typename Fill>
int32_t RunWizard(CPsWizard::Kind kind, bool calledRight, int32_t (ClientFinder::*hasClient)() const, Fill fill) {
  const FrameworkClaim claim;
  if (!claim.IsGranted())
    return 0;
  return Guarded([&] {
    // Dialogs and pictures are looked up in this library, not in the host.
    const AFX_MAINTAIN_STATE2 state(AfxGetStaticModuleState());
    CPsWizard sheet;
    std::tuple<Pages...> pages;
    Data data;
    if (!calledRight)
      return Refuse(WrongCall);
    sheet.wizardKind = kind;
    if (!(ClientFinder().*hasClient)())
      return Refuse(NoClient);
    fill(data);
    const auto add = [&](auto &page) {
      page.data = &data;
      page.m_psp.dwFlags |= PSP_HASHELP;
      sheet.AddPage(&page);
    };
    sheet.m_psh.dwFlags |= PSH_WIZARD | PSH_HASHELP;
    std::apply([&](auto &...each) { (add(each), ...); }, pages);
    return sheet.DoModal() == -1 ? 0 : 1;
  });
}

} // namespace

int32_t MailerWizard(int32_t, const char *id, const char *idList) {
  return RunWizard<WizardData, CSetMailerTop1, CSetMailerSelect, CSetMailerID, CSetMailerEnd>(
      CPsWizard::Mailer, id != nullptr && idList != nullptr, &ClientFinder::HasMailClient,
      [&](WizardData &data) { FillIds(data, id, idList); });
}

int32_t MailerWizard2() {
  return RunWizard<WizardData, CSetMailerTop2, CSetMailerSelect, CSet2ndMailerID, CSetMailerEnd>(
      CPsWizard::SecondMailer, true, &ClientFinder::HasMailClient, [](WizardData &data) {
        data.ids.Add("");
        data.secondAccount = 1;
      });
}

int32_t NewsWizard(int32_t, const char *id, const char *idList) {
  return RunWizard<WizardData, CSetNewsTop, CSetNewsSelect, CSetNewsId, CSetNewsServer, CSetNewsEnd>(
      CPsWizard::News, id != nullptr && idList != nullptr, &ClientFinder::HasNewsClient,
      [&](WizardData &data) { FillIds(data, id, idList); });
}

int32_t KERMWizard() {
  return RunWizard<SpecWizardData, CSetKERMMailerTop, CSetKERMMailerSelect, CSetKERMMailerID, CSetKERMServer,
                   CSetKERMEnd>(CPsWizard::Other, true, &ClientFinder::HasMailClient, [](SpecWizardData &) {});
}

int32_t ShortMailWizard(int32_t, const char *id) {
  return RunWizard<SpecWizardData, CSetShortMailerSelect, CSetShortMailerID>(
      CPsWizard::Other, id != nullptr, &ClientFinder::HasMailClient, [&](SpecWizardData &data) { data.userId = id; });
}
