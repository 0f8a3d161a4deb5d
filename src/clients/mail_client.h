// What every adapter of a mail client offers. Results are 1 for yes or done and 0 for no or failed; texts are in the
// system's code page. An adapter keeps nothing between calls, so it can be made and destroyed around a single one.
#pragma once

#include "clients/account_specs.h"
#include "clients/client_type.h"
#include "win32/win32.h"

#include <cstdint>
#include <string>

class MailClient {
public:
  virtual ~MailClient() = default;

  // 1 if the client is installed and usable.
  virtual int32_t IsInstall() = 0;

  // Writes the account. An empty `key` makes a new one, another names the account to overwrite. Only the adapter of
  // Netscape 6 changes it: `key` then names the profile that was made.
  virtual int32_t SetupAccount(const MailAccountSpec &spec, std::string &key) = 0;

  // Makes the client the default mail program.
  virtual int32_t SetDefaultClient() = 0;

  // Looks for an account with the record's title. On 1 `key` names it and `message` is the question to put to the user;
  // on 0 both stay as they were, but Netscape 6 empties `key`.
  virtual int32_t IsExistAccount(const MailAccountSpec &spec, std::string &key, std::string &message) = 0;

  // The same for an account of the record's user.
  virtual int32_t IsExistUser(const MailAccountSpec &spec, std::string &key, std::string &message) = 0;

  // Asked in place of IsExistUser, or after it, by the flows for second and original-domain accounts.
  virtual int32_t IsExistSecondUser(const MailAccountSpec &spec, std::string &key, std::string &message) = 0;

  // The name shown for the client, the path of its program, and its version in the client's own form. On 0 the text is
  // empty, but the external mailer leaves it as it was.
  virtual int32_t GetClientName(std::string &name) = 0;
  virtual int32_t GetClientPath(std::string &path) = 0;
  virtual int32_t GetClientVersion(std::string &version) = 0;

  // A ClientType.
  virtual int32_t GetClientType() = 0;

  // The icon of the client's program, for the caller to destroy; null if there is no such program.
  HICON GetClientIcon();
};
