// What the pages of the wizards do alike.
#pragma once

#include "mfc/afxwin.h"
#include "resources/resource.h"
#include "wizard/client_combo_box.h"
#include "wizard/client_finder.h"
#include "wizard/input_rules.h"

#include <span>
#include <string>

namespace page_parts {

// ---- The sheet ----

// Sets the wizard's buttons (PSWIZB_*). Posted, so they change just after the page has come up.
void PostButtons(const CWnd &page, DWORD buttons);

// What a Next button answers to keep the page.
constexpr LRESULT Stay = -1;

// ---- Fields ----

CString GetText(const CWnd &page, int control);
CString GetTrimmedText(const CWnd &page, int control);

// Fills the page's list with the domains of a section of service.ini.
void FillDomainCombo(const CWnd &page, const char *section);

// Opens or closes the page's list.
void ShowList(const CWnd &page, bool open);

void MoveFocus(const CWnd &page, int control);

// When the control of a refused text gets the focus: at once, or once the sheet has dealt with the refusal, by the
// message FocusControlMessage that is posted to the page with the control's id.
enum class Focus { Now, Later };
constexpr UINT FocusControlMessage = WM_USER + 101;

// Whether a test refuses the text. If so its message has been shown, and its control gets the focus.
bool Refuses(const CWnd &page, const input_tests::Tests &tests, const std::string &text, Focus focus = Focus::Now);

// Takes a control's text without white space at its end: once it has passed the tests it is stored, and shown so.
bool TakeTrimmed(const CWnd &page, int control, const input_tests::Tests &tests, std::string &field,
                 Focus focus = Focus::Now);

// ---- The build stamp ----

// Whether a key was pressed since it was last asked for; whether it is down now doesn't count.
bool WasPressed(int key);

void ShowBuildStamp(const CWnd &page, bool whole);

// What a double click does on a first page: with Shift pressed it shows when the library was built, with Backspace more
// of it. The default handling comes in between.
template <typename DefaultHandling> void HandleDoubleClick(const CWnd &page, DefaultHandling handleByDefault) {
  if (!WasPressed(VK_SHIFT)) {
    handleByDefault();
  } else if (WasPressed(VK_BACK)) {
    ShowBuildStamp(page, true);
    handleByDefault();
  } else {
    handleByDefault();
    ShowBuildStamp(page, false);
  }
}

// ---- Clients ----

template <typename Client> CString NameOf(Client &client) {
  CString name;
  client.GetClientName(name);
  return name;
}

// The icon of the chosen client as a page shows it, for as long as the page lives.
class ClientIcon {
public:
  ClientIcon() = default;
  ~ClientIcon();
  ClientIcon(const ClientIcon &) = delete;
  ClientIcon &operator=(const ClientIcon &) = delete;

  // Shows the icon of the client, if there is one.
  template <typename Client> void Show(const CWnd &page, Client *client) {
    if (client != nullptr)
      Put(page, client->GetClientIcon());
  }

  // The same in answer to WM_PAINT.
  template <typename Client> void Paint(CWnd &page, Client *client) {
    const CPaintDC context(&page);
    Show(page, client);
  }

private:
  void Put(const CWnd &page, HICON icon);

  HICON shown = nullptr;
};

// The list of the installed clients on a page, with the icon of the chosen one.
class ClientChoice {
public:
  ClientIcon icon;

  void Bind(CDataExchange *exchange) { DDX_Control(exchange, IDC_CHOICE, list); }

  // Lists the clients that have a path and selects the first of them, which is the answer; null if there is none.
  template <typename Clients> auto List(const Clients &clients) {
    typename Clients::value_type::pointer first = nullptr;
    for (const auto &client : clients) {
      std::string path;
      if (client == nullptr || !client->GetClientPath(path))
        continue;
      list.AddClient(path, NameOf(*client));
      if (first == nullptr)
        first = client.get();
    }
    if (first != nullptr)
      list.SetCurSel(0);
    return first;
  }

  // Makes the first client with the selected path the chosen one and shows its icon. False if there is none, and
  // nothing is changed.
  template <typename Clients, typename Client> bool Take(const CWnd &page, const Clients &clients, Client *&chosen) {
    std::string selected;
    if (!list.GetSelectedPath(selected))
      return false;
    for (const auto &client : clients) {
      std::string path;
      if (client == nullptr || !client->GetClientPath(path) || path != selected)
        continue;
      chosen = client.get();
      icon.Show(page, chosen);
      return true;
    }
    return false;
  }

private:
  ClientComboBox list;
};

// ---- The summary ----

struct MailSummary {
  std::string account;
  std::string clientName;
  std::string mailAddress;
  std::string senderName;
  std::string popServer;
  std::string smtpServer;
};

// A page's text of several lines, in a font in which every half-width character is as wide as half a full-width one.
class SummaryText : public CWnd {
  DECLARE_DYNAMIC(SummaryText)

public:
  SummaryText();

  void Show(const CWnd &page, const MailSummary &summary);
  void Show(const CWnd &page, const std::string &text);

protected:
  // Esc and Enter are the wizard's: an edit control of several lines would take them, though nobody can type here.
  UINT OnGetDlgCode();

  DECLARE_MESSAGE_MAP()

private:
  CFont font;
};

// Two of the lines, which the news summary has too.
std::string AddressAndSenderLines(const std::string &mailAddress, const std::string &senderName);

// ---- The write ----

// Puts a question to the user; true for OK.
bool Confirmed(const std::string &question);

// What is asked about the user of a mail account, in order until one question is put to the user.
using UserQuestion = int32_t (MailClient::*)(const MailAccountSpec &spec, std::string &key, std::string &message);
struct UserQuestions {
  std::span<const UserQuestion> questions;
  bool alsoWhenOverwriting; // also if there is an account of the title, which the user agreed to overwrite
};
extern const UserQuestions AnyUser;
extern const UserQuestions SecondUser;
extern const UserQuestions OriginalDomainUser;

// Writes a mail account once the user has agreed to what is there already: an account of the title, which is then
// overwritten, or one of the user, which only is a warning. False if the wizard is to stay open.
bool WriteMailAccount(MailClient *client, const MailAccountSpec &spec, const UserQuestions &user);

// Tells how a write ended. False if the wizard is to stay open: the external mailer tells its failures itself.
bool TellResult(bool written, int32_t clientType);

} // namespace page_parts
