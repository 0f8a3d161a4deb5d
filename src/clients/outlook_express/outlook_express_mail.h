// Outlook Express, versions 4 and 5, as a mail client: accounts in the current user's registry.
#pragma once

#include "clients/installed_program.h"
#include "clients/mail_client.h"
#include "clients/outlook_express/outlook_express_layout.h"

class OutlookExpressMail : public MailClient {
public:
  int32_t IsInstall() override { return IsInstalled(outlook_express::Program); }

  // Writes a POP3/SMTP account below "Software\Microsoft\Internet Account Manager" of HKEY_CURRENT_USER, with the next
  // number (which isn't tested) or over the account whose key's name `key` is, makes it the default mail account if
  // there is no valid one, and turns HTML mail off. 0, with nothing written, if `key` belongs to a news account or a
  // text of the record has more than 511 bytes.
  int32_t SetupAccount(const MailAccountSpec &spec, std::string &key) override;

  // Copies the client's mailto entries of HKEY_LOCAL_MACHINE to the system's. 0, with nothing written, without a client
  // key; an entry that the client doesn't have leaves the system's alone, and the result 1.
  int32_t SetDefaultClient() override;

  // Match the account's title or POP3 user, byte by byte, on mail accounts alone.
  int32_t IsExistAccount(const MailAccountSpec &spec, std::string &key, std::string &message) override;
  int32_t IsExistUser(const MailAccountSpec &spec, std::string &key, std::string &message) override;
  int32_t IsExistSecondUser(const MailAccountSpec &, std::string &, std::string &) override { return 0; }

  int32_t GetClientName(std::string &name) override { return ReadName(outlook_express::Program, name); }
  int32_t GetClientPath(std::string &path) override { return ReadProgramPath(outlook_express::Program, path); }
  int32_t GetClientVersion(std::string &version) override { return ReadVersion(outlook_express::Program, version); }
  int32_t GetClientType() override { return ClientOutlookExpress; }
};
