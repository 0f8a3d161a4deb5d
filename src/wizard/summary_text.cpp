#include "wizard/summary_text.h"

#include "clients/format.h"
#include "resources/resource.h"

IMPLEMENT_DYNAMIC(SummaryText, CWnd)

BEGIN_MESSAGE_MAP(SummaryText, CWnd)
ON_WM_GETDLGCODE()
END_MESSAGE_MAP()

SummaryText::SummaryText() {
  constexpr int Height = 12;
  constexpr int Weight = 400;
  constexpr DWORD ShiftJis = 128;
  font.Attach(CreateFontA(Height, 0, 0, 0, Weight, 0, 0, 0, ShiftJis, 0, 0, 0, 0, "ＭＳ ゴシック"));
}

void SummaryText::Show(const CWnd &page, const std::string &text) {
  SubclassWindow(::GetDlgItem(page.m_hWnd, IDC_FIELD_1)); // does nothing if it is attached already
  SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font.m_hObject), TRUE);
  SetWindowText(text);
}

UINT SummaryText::OnGetDlgCode() { return static_cast<UINT>(Default()) & ~UINT{DLGC_WANTALLKEYS}; }

// ---- The texts ----

namespace {

// Two lines that both texts contain.
std::string AddressAndSenderLines(const std::string &mailAddress, const std::string &senderName) {
  return Format(" 　メールアドレス： %s \r\n"
                " 　　 　差出人名 ： %s \r\n",
                mailAddress, senderName);
}

} // namespace

std::string MailSummary(const std::string &account, const std::string &clientName, const std::string &mailAddress,
                        const std::string &senderName, const std::string &popServer, const std::string &smtpServer) {
  return Format("\r\n"
                " メールアカウント： %s \r\n"
                "\r\n"
                " 　　 　メーラー ： %s \r\n",
                account, clientName) +
         AddressAndSenderLines(mailAddress, senderName) +
         Format("   POPサーバー名 ： %s \r\n"
                "  SMTPサーバー名 ： %s \r\n"
                "\r\n",
                popServer, smtpServer);
}

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
