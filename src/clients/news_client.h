// What every adapter of a news client offers; the counterpart of MailClient.
#pragma once

#include "clients/account_specs.h"
#include "clients/client_type.h"
#include "win32/win32.h"

#include <cstdint>
#include <string>

class NewsClient {
public:
  virtual ~NewsClient() = default;

  // 1 if the client is installed and usable.
  virtual int32_t IsInstall() = 0;

  // Writes the account of the one news server that `serverIndex` of the record picks. An empty `key` makes a new one,
  // another names the account to overwrite; `key` is changed as by MailClient.
  virtual int32_t SetupAccount(const NewsAccountSpec &spec, std::string &key) = 0;

  virtual int32_t SetDefaultClient() = 0;

  // Looks for an account of that server. On 1 `key` names it and `message` is the question to put to the user; on 0
  // both stay as they were, but Netscape 6 empties `key`.
  virtual int32_t IsExistAccount(const NewsAccountSpec &spec, std::string &key, std::string &message) = 0;

  // The name shown for the client, the path of its program, and its version in the client's own form; empty on 0.
  virtual int32_t GetClientName(std::string &name) = 0;
  virtual int32_t GetClientPath(std::string &path) = 0;
  virtual int32_t GetClientVersion(std::string &version) = 0;

  // A ClientType, as for MailClient.
  virtual int32_t GetClientType() = 0;

  // The icon of the client's program, for the caller to destroy; null if there is no such program.
  HICON GetClientIcon();
};
