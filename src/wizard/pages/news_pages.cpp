#include "wizard/pages/news_pages.h"

#include "clients/service_constants.h"
#include "clients/text.h"
#include "wizard/pages/id_pages.h"
#include "wizard/service_ini.h"

#include <algorithm>
#include <vector>

using namespace page_parts;

// ---- Which ID ----

IMPLEMENT_DYNAMIC(CSetNewsTop, CPropertyPage)

BEGIN_MESSAGE_MAP(CSetNewsTop, CPropertyPage)
ON_WM_LBUTTONDBLCLK()
END_MESSAGE_MAP()

CSetNewsTop::CSetNewsTop() : CPropertyPage(IDD_SET_NEWS_TOP, 0) {}

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

// ---- Which client ----

IMPLEMENT_DYNAMIC(CSetNewsSelect, CPropertyPage)

BEGIN_MESSAGE_MAP(CSetNewsSelect, CPropertyPage)
ON_CBN_SELCHANGE(IDC_CHOICE, OnSelectClient)
ON_WM_PAINT()
END_MESSAGE_MAP()

CSetNewsSelect::CSetNewsSelect() : CPropertyPage(IDD_SET_NEWS_SELECT, 0) {}

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

CSetNewsId::CSetNewsId() : CPropertyPage(IDD_SET_NEWS_ID, 0) {}

BOOL CSetNewsId::OnInitDialog() {
  CPropertyPage::OnInitDialog();
  InitIdPage(*this, *data, "MAIL_SERVER");
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
  NameAccount(*data);
  data->mailAddress = data->mailUser + "@" + domain;
  data->newsHosts = {IspForumNewsHost, IspSquareNewsHost};
  const std::string settings = ServiceIniPath();
  std::string value;
  if (ReadServiceString(settings, "NEWS_SERVER", "nntp1", value))
    data->newsHosts[0] = value;
  if (ReadServiceString(settings, "NEWS_SERVER", "nntp2", value))
    data->newsHosts[1] = value;
  // The service may have one domain for all addresses in news, whatever the user's own is.
  if (ReadServiceString(settings, "MAIL_SERVER", "disp_mail", value))
    data->mailAddress = data->mailUser + "@" + value;
  ShowList(*this, false);
  return CPropertyPage::OnWizardNext();
}

// ---- Which servers ----

namespace {

// The check box of each server, and where service.ini has its caption.
struct ServerBox {
  int control;
  const char *captionKey;
};
constexpr ServerBox ServerBoxes[] = {{IDC_FORUM_SERVER, "disp_nntp1"}, {IDC_SQUARE_SERVER, "disp_nntp2"}};

} // namespace

IMPLEMENT_DYNAMIC(CSetNewsServer, CPropertyPage)

BEGIN_MESSAGE_MAP(CSetNewsServer, CPropertyPage)
ON_BN_CLICKED(IDC_FORUM_SERVER, OnForum)
ON_BN_CLICKED(IDC_SQUARE_SERVER, OnSquare)
END_MESSAGE_MAP()

CSetNewsServer::CSetNewsServer() : CPropertyPage(IDD_SET_NEWS_SERVER, 0) {}

BOOL CSetNewsServer::OnInitDialog() {
  CPropertyPage::OnInitDialog();
  for (const ServerBox &box : ServerBoxes)
    SendDlgItemMessage(box.control, BM_SETCHECK, BST_CHECKED, 0);
  data->newsServerOn = {1, 1};
  return TRUE;
}

BOOL CSetNewsServer::OnSetActive() {
  PostButtons(*this, PSWIZB_BACK | PSWIZB_NEXT);
  const std::string settings = ServiceIniPath();
  for (size_t server = 0; server < std::size(ServerBoxes); ++server) {
    const ServerBox &box = ServerBoxes[server];
    CString &caption = data->newsServerNames[server];
    if (ReadServiceString(settings, "NEWS_SERVER", box.captionKey, caption))
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

// ---- Summary and write ----

namespace {

std::string NewsSummary(const WizardData &data) {
  std::string summary = Format("\r\n"
                               " 　     @zuvioID ： %s \r\n"
                               "\r\n"
                               " ニュースリーダー： %s \r\n",
                               data.CurrentId(), data.newsClientName) +
                        AddressAndSenderLines(data.mailAddress, data.senderName) + "    　サーバー名 ：";
  const bool forum = data.newsServerOn[0] != 0;
  const bool square = data.newsServerOn[1] != 0;
  if (forum || square)
    summary += Format(" %s \r\n", data.newsHosts[forum ? 0 : 1]);
  if (forum && square)
    summary += Format("    　　　　　　　　%s \r\n", data.newsHosts[1]);
  return summary + "\r\n";
}

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

constexpr int32_t Servers[] = {0, 1};

bool IsWanted(NewsAccountSpec &spec, int32_t server) {
  spec.serverIndex = server;
  return spec.newsServerOn[static_cast<size_t>(server)] != 0;
}

bool ContainsIgnoringCase(const std::vector<std::string> &texts, const std::string &text) {
  const auto bytes = [](const std::string &of) { return reinterpret_cast<const unsigned char *>(of.c_str()); };
  return std::ranges::any_of(texts, [&](const std::string &known) { return _mbsicmp(bytes(known), bytes(text)) == 0; });
}

// What is there already on the servers that are wanted, each text once.
std::vector<std::string> FindExisting(NewsClient &client, NewsAccountSpec spec) {
  std::vector<std::string> found;
  for (const int32_t server : Servers) {
    std::string key;
    std::string message;
    if (IsWanted(spec, server) && client.IsExistAccount(spec, key, message) && !ContainsIgnoringCase(found, message))
      found.push_back(message);
  }
  return found;
}

bool MayOverwrite(const std::vector<std::string> &existing) {
  if (existing.empty())
    return true;
  std::string prompt = "同名の設定が存在します。\n上書きしますか？\n";
  for (const std::string &text : existing)
    prompt += "\n" + text;
  return Confirmed(prompt);
}

bool SetUpServers(NewsClient &client, NewsAccountSpec spec) {
  for (const int32_t server : Servers) {
    if (!IsWanted(spec, server))
      continue;
    std::string key;
    std::string message;
    client.IsExistAccount(spec, key, message);
    if (!client.SetupAccount(spec, key))
      return false;
  }
  return true;
}

// Writes the accounts of the servers that are wanted, once the user has agreed to overwrite what is there already.
// False if the wizard is to stay open.
bool WriteNewsAccounts(NewsClient *client, const NewsAccountSpec &spec) {
  if (client == nullptr) // every client has gone since it was found
    return TellResult(false, 0);
  if (!MayOverwrite(FindExisting(*client, spec)))
    return false;
  const bool written = SetUpServers(*client, spec);
  return TellResult(written, client->GetClientType());
}

} // namespace

IMPLEMENT_DYNAMIC(CSetNewsEnd, CPropertyPage)

BEGIN_MESSAGE_MAP(CSetNewsEnd, CPropertyPage)
ON_WM_PAINT()
END_MESSAGE_MAP()

CSetNewsEnd::CSetNewsEnd() : CPropertyPage(IDD_SET_NEWS_END, 0) { summaryFont.Attach(MakeSummaryFont()); }

BOOL CSetNewsEnd::OnSetActive() {
  PostButtons(*this, PSWIZB_BACK | PSWIZB_FINISH);
  ShowSummary(*this, summaryFont, NewsSummary(*data));
  return CPropertyPage::OnSetActive();
}

BOOL CSetNewsEnd::OnWizardFinish() {
  return WriteNewsAccounts(data->newsClient, NewsSpec(*data)) ? CPropertyPage::OnWizardFinish() : FALSE;
}

void CSetNewsEnd::OnPaint() { icon.Paint(*this, data->newsClient); }
