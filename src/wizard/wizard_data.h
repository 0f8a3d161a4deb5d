// The data that the pages of one wizard share. The export has one record on its stack; every page has a pointer to it
// and frees nothing in it.
#pragma once

#include "clients/account_specs.h"
#include "mfc/afxwin.h"
#include "wizard/client_finder.h"

#include <array>
#include <cstdint>

// For the mailer, second-mailer and news wizards.
struct WizardData {
  // Whether the ID page proposes the ID as the mail user when it is shown.
  enum IdState : int32_t {
    Settled,  // only into an empty field
    Changed,  // the ID differs from the one last proposed
    FirstShow // the page was just made
  };

  CStringArray ids; // the host's, and after them a spare entry for a typed one
  CString reserved; // never written
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
  MailClient *mailClient = nullptr; // the chosen one of `mailClients`
  MailClients mailClients;
  CString newsClientName;
  NewsClient *newsClient = nullptr;
  NewsClients newsClients;

  const CString &CurrentId() const { return ids[currentId]; }
};

// For the original-domain and short wizards, which get no list of IDs: the account itself and the clients.
struct SpecWizardData : MailAccountSpec {
  MailClient *mailClient = nullptr;
  MailClients mailClients;
};
