// The summary of the account on the last page, before it is written.
#pragma once

#include "mfc/afxwin.h"
#include "wizard/wizard_data.h"

#include <string>

// A text control of several lines. In its font every half-width character is half as wide as a full-width one.
class SummaryText : public CWnd {
  DECLARE_DYNAMIC(SummaryText)

public:
  SummaryText();

  void Show(const CWnd &page, const std::string &text);

protected:
  // Leaves Esc and Enter to the wizard: a multi-line edit control would take them, although nobody can type here.
  UINT OnGetDlgCode();

  DECLARE_MESSAGE_MAP()

private:
  CFont font;
};

// The text for a mail account in the client of that name. `account` is the ID or the mail account, depending on the
// wizard.
std::string MailSummary(const std::string &account, const std::string &clientName, const std::string &mailAddress,
                        const std::string &senderName, const std::string &popServer, const std::string &smtpServer);

// The text for the chosen news servers.
std::string NewsSummary(const WizardData &data);
