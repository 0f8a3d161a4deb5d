// What a last page shows of the account before it is written.
#pragma once

#include "mfc/afxwin.h"
#include "wizard/wizard_data.h"

#include <string>

// A page's text of several lines, in a font in which every half-width character is as wide as half a full-width one.
class SummaryText : public CWnd {
  DECLARE_DYNAMIC(SummaryText)

public:
  SummaryText();

  void Show(const CWnd &page, const std::string &text);

protected:
  // Esc and Enter are the wizard's: an edit control of several lines would take them, though nobody can type here.
  UINT OnGetDlgCode();

  DECLARE_MESSAGE_MAP()

private:
  CFont font;
};

// The text for a mail account that goes to a client of that name. `account` is what the flow names it by, an ID or an
// account.
std::string MailSummary(const std::string &account, const std::string &clientName, const std::string &mailAddress,
                        const std::string &senderName, const std::string &popServer, const std::string &smtpServer);

// The text for the news servers that are wanted.
std::string NewsSummary(const WizardData &data);
