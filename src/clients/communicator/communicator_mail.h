// Netscape Communicator 4.x as a mail client: an account is a user profile, entered in the registry under both roots,
// with a directory and a prefs.js in it.
#pragma once

#include "clients/communicator/communicator_layout.h"
#include "clients/installed_program.h"
#include "clients/mail_client.h"

class CommunicatorMail : public MailClient {
public:
  int32_t IsInstall() override { return IsInstalled(communicator::Program); }

  // Makes the profile that the account's title names, or takes the one that `key` names, and replaces nine mail
  // preferences in its prefs.js. 0, with nothing written, if Communicator's install directory can't be read or is
  // empty, a new profile's title is empty or can't be a folder's name, the profile's name, a preference line or the
  // path of prefs.js has more than 255 bytes, or prefs.js has no room or a zero byte in it.
  int32_t SetupAccount(const MailAccountSpec &spec, std::string &key) override;

  // Enters the client's mailto keys of HKEY_LOCAL_MACHINE where it has none, and makes it the default mail program.
  int32_t SetDefaultClient() override;

  // Matches the profile's name, byte by byte, on profiles whose prefs.js can be opened; leaves an empty prefs.js in a
  // directory that has none.
  int32_t IsExistAccount(const MailAccountSpec &spec, std::string &key, std::string &message) override;
  int32_t IsExistUser(const MailAccountSpec &, std::string &, std::string &) override { return 0; }
  int32_t IsExistSecondUser(const MailAccountSpec &, std::string &, std::string &) override { return 0; }

  int32_t GetClientName(std::string &name) override { return ReadName(communicator::Program, name); }
  int32_t GetClientPath(std::string &path) override { return ReadProgramPath(communicator::Program, path); }
  int32_t GetClientVersion(std::string &version) override { return ReadVersion(communicator::Program, version); }
  int32_t GetClientType() override { return ClientCommunicator; }

  // Makes `url` the start page in the prefs.js of a profile's directory, which isn't made here. 1, also if nothing
  // could be written; an URL too long for its line leaves the file as it is.
  int32_t SetStartPage(const std::string &directory, const std::string &url);
};
