#include "wizard/pages/news_pages.h"

#include "clients/service_constants.h"
#include "wizard/account_writing.h"
#include "wizard/build_stamp.h"
#include "wizard/id_pages.h"
#include "wizard/page_fields.h"
#include "wizard/ps_wizard.h"
#include "wizard/service_ini.h"

#include <algorithm>

namespace {

// Each server's check box, the keys of its caption and its host in service.ini, and the host if service.ini has none.
struct Server {
  int control;
  const char *captionKey;
  const char *hostKey;
  const char *host;
};
constexpr Server Servers[] = {{IDC_FORUM_SERVER, "disp_nntp1", "nntp1", IspForumNewsHost},
                              {IDC_SQUARE_SERVER, "disp_nntp2", "nntp2", IspSquareNewsHost}};

} // namespace

// ---- ID ----

IMPLEMENT_DYNAMIC(CSetNewsTop, CPropertyPage)

BEGIN_MESSAGE_MAP(CSetNewsTop, CPropertyPage)
ON_WM_LBUTTONDBLCLK()
END_MESSAGE_MAP()

BOOL CSetNewsTop::OnSetActive() {
  PostButtons(*this, PSWIZB_NEXT);
  ListIds(*this, *data);
  return CPropertyPage::OnSetActive();
}

LRESULT CSetNewsTop::OnWizardNext() {
  if (!TakeId(*this, *data)) {
    AfxMessageBox(WrongIdMessage);
    return Stay;
  }
  return CPropertyPage::OnWizardNext();
}

void CSetNewsTop::OnLButtonDblClk(UINT, CPoint) {
  HandleDoubleClick(*this, [this] { Default(); });
}

// ---- Client ----

IMPLEMENT_DYNAMIC(CSetNewsSelect, CPropertyPage)

BEGIN_MESSAGE_MAP(CSetNewsSelect, CPropertyPage)
ON_CBN_SELCHANGE(IDC_CHOICE, OnSelectClient)
ON_WM_PAINT()
END_MESSAGE_MAP()

void CSetNewsSelect::DoDataExchange(CDataExchange *exchange) {
  CPropertyPage::DoDataExchange(exchange);
  choice.Bind(exchange);
}

BOOL CSetNewsSelect::OnInitDialog() {
  CPropertyPage::OnInitDialog();
  ClientFinder().FindNewsClients(data->newsClients);
  data->newsClient = choice.List(data->newsClients);
  if (data->newsClient == nullptr)
    return FALSE;
  data->newsClientName = NameOf(*data->newsClient);
  return TRUE;
}

BOOL CSetNewsSelect::OnSetActive() {
  PostButtons(*this, PSWIZB_BACK | PSWIZB_NEXT);
  return CPropertyPage::OnSetActive();
}

void CSetNewsSelect::OnSelectClient() {
  if (choice.Take(*this, data->newsClients, data->newsClient))
    data->newsClientName = NameOf(*data->newsClient);
}

void CSetNewsSelect::OnPaint() { choice.icon.Paint(*this, data->newsClient); }

// ---- Address and name ----

IMPLEMENT_DYNAMIC(CSetNewsId, CPropertyPage)

BOOL CSetNewsId::OnInitDialog() {
  CPropertyPage::OnInitDialog();
  InitIdPage(*this, *data, MailSection);
  return TRUE;
}

BOOL CSetNewsId::OnSetActive() {
  ShowIdPageWithId(*this, *data);
  PostButtons(*this, PSWIZB_BACK | PSWIZB_NEXT);
  return CPropertyPage::OnSetActive();
}

LRESULT CSetNewsId::OnWizardBack() {
  ShowList(*this, false);
  return CPropertyPage::OnWizardBack();
}

LRESULT CSetNewsId::OnWizardNext() {
  data->senderName = GetText(*this, IDC_FIELD_2);
  data->mailUser = GetText(*this, IDC_FIELD_1);
  const CString domain = GetText(*this, IDC_CHOICE);
  if (Refuses(*this, input_tests::MailerDomain, domain) || Refuses(*this, input_tests::NewsUser, data->mailUser) ||
      Refuses(*this, input_tests::NewsSender, data->senderName))
    return Stay;
  NameAccount(*data, data->CurrentId());
  const std::string settings = ServiceIniPath();
  for (size_t server = 0; server < std::size(Servers); ++server)
    if (!ReadServiceString(settings, NewsSection, Servers[server].hostKey, data->newsHosts[server]))
      data->newsHosts[server] = Servers[server].host;
  // The service may set one domain for all addresses in news, whichever domain the user chose.
  std::string mailDomain;
  if (!ReadServiceString(settings, MailSection, "disp_mail", mailDomain))
    mailDomain = domain;
  data->mailAddress = data->mailUser + "@" + mailDomain;
  ShowList(*this, false);
  return CPropertyPage::OnWizardNext();
}

// ---- News servers ----

IMPLEMENT_DYNAMIC(CSetNewsServer, CPropertyPage)

BEGIN_MESSAGE_MAP(CSetNewsServer, CPropertyPage)
ON_BN_CLICKED(IDC_FORUM_SERVER, OnForum)
ON_BN_CLICKED(IDC_SQUARE_SERVER, OnSquare)
END_MESSAGE_MAP()

BOOL CSetNewsServer::OnInitDialog() {
  CPropertyPage::OnInitDialog();
  for (const Server &server : Servers)
    SendDlgItemMessage(server.control, BM_SETCHECK, BST_CHECKED, 0);
  data->newsServerOn = {1, 1};
  return TRUE;
}

BOOL CSetNewsServer::OnSetActive() {
  PostButtons(*this, PSWIZB_BACK | PSWIZB_NEXT);
  const std::string settings = ServiceIniPath();
  for (size_t server = 0; server < std::size(Servers); ++server) {
    const Server &box = Servers[server];
    CString &caption = data->newsServerNames[server];
    if (ReadServiceString(settings, NewsSection, box.captionKey, caption))
      SetDlgItemText(box.control, caption);
    else
      caption = GetText(*this, box.control);
  }
  return CPropertyPage::OnSetActive();
}

LRESULT CSetNewsServer::OnWizardNext() {
  if (data->newsServerOn == std::array<int32_t, 2>{0, 0}) {
    AfxMessageBox(NoServerMessage);
    MoveFocus(*this, IDC_FORUM_SERVER);
    return Stay;
  }
  return CPropertyPage::OnWizardNext();
}

void CSetNewsServer::OnForum() { Toggle(0); }

void CSetNewsServer::OnSquare() { Toggle(1); }

void CSetNewsServer::Toggle(size_t server) { data->newsServerOn[server] = data->newsServerOn[server] == 0 ? 1 : 0; }

// ---- Summary and writing ----

namespace {

NewsAccountSpec NewsSpec(const WizardData &data) {
  NewsAccountSpec spec;
  spec.userId = data.CurrentId();
  spec.senderName = data.senderName;
  spec.accountName = data.accountName;
  spec.reserved = data.reserved;
  std::ranges::copy(data.newsHosts, spec.newsHosts.begin());
  std::ranges::copy(data.newsServerNames, spec.newsServerNames.begin());
  spec.newsServerOn = data.newsServerOn;
  spec.mailAddress = data.mailAddress;
  spec.connectionName = data.connectionName;
  return spec;
}

} // namespace

IMPLEMENT_DYNAMIC(CSetNewsEnd, CPropertyPage)

BEGIN_MESSAGE_MAP(CSetNewsEnd, CPropertyPage)
ON_WM_PAINT()
END_MESSAGE_MAP()

BOOL CSetNewsEnd::OnSetActive() {
  PostButtons(*this, PSWIZB_BACK | PSWIZB_FINISH);
  summary.Show(*this, NewsSummary(*data));
  return CPropertyPage::OnSetActive();
}

BOOL CSetNewsEnd::OnWizardFinish() {
  return WriteNewsAccounts(data->newsClient, NewsSpec(*data)) ? CPropertyPage::OnWizardFinish() : FALSE;
}

void CSetNewsEnd::OnPaint() { icon.Paint(*this, data->newsClient); }
