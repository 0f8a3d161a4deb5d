// What the pages of one run of a wizard share. The export makes one record on its stack; every page holds a pointer to
// it and frees nothing of it.
#pragma once

#include "clients/account_specs.h"
#include "mfc/afxwin.h"
#include "wizard/client_finder.h"

#include <array>
#include <cstdint>

// Of the mailer, second-mailer and news wizards.
struct WizardData {
  // Whether the ID page proposes the ID as the mail user when it is shown.
  enum IdState : int32_t {
    Settled,  // only into an empty field
    Changed,  // the ID is another than the one last proposed
    FirstShow // the page was just made
  };

  CStringArray ids; // the host's, and behind them a spare entry for one that is typed
  CString reserved; // nobody writes it
  CString accountName;
  CString connectionName;
  CString mailAddress;
  CString mailUser;
  CString clientName;
  CString senderName;
  CString popServer;
  CString smtpServer;
  std::array<CString, 2> newsHosts;
  std::array<CString, 2> newsServerNames;
  std::array<int32_t, 2> newsServerOn{};
  int32_t currentId = 0; // an index into `ids`
  int32_t idState = Settled;
  int32_t secondAccount = 0;
  MailClient *mailClient = nullptr; // one of the below, the chosen one
  MailClients mailClients;
  CString newsClientName;
  NewsClient *newsClient = nullptr;
  NewsClients newsClients;

  const CString &CurrentId() const { return ids[currentId]; }
};

// Of the original-domain and short wizards, which take no list of IDs: the account itself and the clients.
struct SpecWizardData : MailAccountSpec {
  MailClient *mailClient = nullptr;
  MailClients mailClients;
};
