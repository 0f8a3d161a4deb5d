// Netscape 6 as a mail client: an account is a user profile, and in its prefs.js the account, server, identity and SMTP
// server that belong together.
#pragma once

#include "clients/installed_program.h"
#include "clients/mail_client.h"
#include "clients/netscape6/netscape6_layout.h"

class Netscape6Mail : public MailClient {
public:
  int32_t IsInstall() override { return IsInstalled(netscape6::Program); }

  // Writes a POP3 account into the prefs.js of the profile whose directory `key` is, or of a new one that the account's
  // title names; `key` is then its directory. An account of the same user is taken over, and becomes the default one
  // like any other. 0, with nothing changed, if a text has more than 259 bytes (the name shown as sender in UTF-8), the
  // directory's path more than 246, 65,535 servers or identities are there already, or prefs.js has no room or a zero
  // byte in it; and if no profile could be made. A prefs.js that can't be opened stays as it is, which counts as done.
  int32_t SetupAccount(const MailAccountSpec &spec, std::string &key) override;

  int32_t SetDefaultClient() override { return 1; }

  // Matches the profile's name, byte by byte, on profiles with a prefs.js; `key` is empty on 0.
  int32_t IsExistAccount(const MailAccountSpec &spec, std::string &key, std::string &message) override;
  int32_t IsExistUser(const MailAccountSpec &, std::string &, std::string &) override { return 0; }
  int32_t IsExistSecondUser(const MailAccountSpec &, std::string &, std::string &) override { return 0; }

  int32_t GetClientName(std::string &name) override { return ReadName(netscape6::Program, name); }
  int32_t GetClientPath(std::string &path) override { return ReadProgramPath(netscape6::Program, path); }
  int32_t GetClientVersion(std::string &version) override { return ReadVersion(netscape6::Program, version); }
  int32_t GetClientType() override { return ClientNetscape6; }
};
