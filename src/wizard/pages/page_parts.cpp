#include "wizard/pages/page_parts.h"

#include "clients/format.h"
#include "wizard/service_ini.h"

namespace page_parts {

// ---- The sheet ----

void PostButtons(const CWnd &page, DWORD buttons) {
  ::PostMessageA(::GetParent(page.m_hWnd), PSM_SETWIZBUTTONS, 0, static_cast<LPARAM>(buttons));
}

// ---- Fields ----

CString GetText(const CWnd &page, int control) {
  CString text;
  page.GetDlgItem(control)->GetWindowText(text);
  return text;
}

CString GetTrimmedText(const CWnd &page, int control) {
  CString text = GetText(page, control);
  text.TrimRight();
  return text;
}

void FillDomainCombo(const CWnd &page, const char *section) {
  for (const std::string &domain : ReadDomains(section))
    page.SendDlgItemMessage(IDC_CHOICE, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(domain.c_str()));
}

void ShowList(const CWnd &page, bool open) {
  page.SendDlgItemMessage(IDC_CHOICE, CB_SHOWDROPDOWN, open ? TRUE : FALSE, 0);
}

void MoveFocus(const CWnd &page, int control) {
  ::SendMessageA(page.m_hWnd, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(::GetDlgItem(page.m_hWnd, control)), TRUE);
}

bool Refuses(const CWnd &page, const input_tests::Tests &tests, const std::string &text, Focus focus) {
  const InputTest *const refusal = FindRefusal(tests, text);
  if (refusal == nullptr)
    return false;
  AfxMessageBox(refusal->message);
  if (focus == Focus::Now)
    MoveFocus(page, refusal->control);
  else
    page.PostMessage(FocusControlMessage, static_cast<WPARAM>(refusal->control));
  return true;
}

bool TakeTrimmed(const CWnd &page, int control, const input_tests::Tests &tests, std::string &field, Focus focus) {
  const CString text = GetTrimmedText(page, control);
  if (Refuses(page, tests, text, focus))
    return false;
  field = text;
  page.SetDlgItemText(control, text);
  return true;
}

// ---- The build stamp ----

bool WasPressed(int key) { return (GetAsyncKeyState(key) & 1) != 0; }

void ShowBuildStamp(const CWnd &page, bool whole) {
  page.SetDlgItemText(IDC_BUILD_STAMP, whole ? "Build 2001-02-22 012345Q" : "Build 2001-02-22");
}

// ---- Clients ----

ClientIcon::~ClientIcon() {
  if (shown != nullptr)
    DestroyIcon(shown);
}

void ClientIcon::Put(const CWnd &page, HICON icon) {
  page.SendDlgItemMessage(IDC_CLIENT_ICON, STM_SETICON, reinterpret_cast<WPARAM>(icon), 0);
  if (shown != nullptr)
    DestroyIcon(shown);
  shown = icon;
}

// ---- The summary ----

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

std::string AddressAndSenderLines(const std::string &mailAddress, const std::string &senderName) {
  return Format(" 　メールアドレス： %s \r\n"
                " 　　 　差出人名 ： %s \r\n",
                mailAddress, senderName);
}

void SummaryText::Show(const CWnd &page, const MailSummary &summary) {
  Show(page, Format("\r\n"
                    " メールアカウント： %s \r\n"
                    "\r\n"
                    " 　　 　メーラー ： %s \r\n",
                    summary.account, summary.clientName) +
                 AddressAndSenderLines(summary.mailAddress, summary.senderName) +
                 Format("   POPサーバー名 ： %s \r\n"
                        "  SMTPサーバー名 ： %s \r\n"
                        "\r\n",
                        summary.popServer, summary.smtpServer));
}

void SummaryText::Show(const CWnd &page, const std::string &text) {
  SubclassWindow(::GetDlgItem(page.m_hWnd, IDC_FIELD_1)); // does nothing once it is attached
  SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font.m_hObject), TRUE);
  SetWindowText(text);
}

UINT SummaryText::OnGetDlgCode() { return static_cast<UINT>(Default()) & ~UINT{DLGC_WANTALLKEYS}; }

// ---- The write ----

bool Confirmed(const std::string &question) { return AfxMessageBox(question.c_str(), MB_OKCANCEL) == IDOK; }

namespace {

constexpr UserQuestion BothQuestions[] = {&MailClient::IsExistUser, &MailClient::IsExistSecondUser};
constexpr UserQuestion SecondQuestion[] = {&MailClient::IsExistSecondUser};

// Puts what is there already to the user. False if the user wants to leave it so, else `key` names what to overwrite.
bool MayWrite(MailClient &client, const MailAccountSpec &spec, std::string &key, const UserQuestions &user) {
  std::string message;
  if (client.IsExistAccount(spec, key, message)) {
    if (!Confirmed(message))
      return false;
    if (!user.alsoWhenOverwriting)
      return true;
  }
  for (const UserQuestion question : user.questions) {
    std::string userKey = key; // the questions only warn
    if ((client.*question)(spec, userKey, message))
      return Confirmed(message);
  }
  return true;
}

} // namespace

const UserQuestions AnyUser = {BothQuestions, false};
const UserQuestions SecondUser = {SecondQuestion, false};
const UserQuestions OriginalDomainUser = {SecondQuestion, true};

bool WriteMailAccount(MailClient *client, const MailAccountSpec &spec, const UserQuestions &user) {
  if (client == nullptr) // every client has gone since it was found
    return TellResult(false, 0);
  std::string key;
  if (!MayWrite(*client, spec, key, user))
    return false;
  const bool written = client->SetupAccount(spec, key) != 0;
  return TellResult(written, client->GetClientType());
}

bool TellResult(bool written, int32_t clientType) {
  if (written)
    AfxMessageBox("設定が完了しました。", MB_ICONINFORMATION);
  else if (clientType == ClientExternalMailer)
    return false;
  else
    AfxMessageBox("設定に失敗しました。");
  return true;
}

} // namespace page_parts
