// The external mailer: a mail client that is reached only through its plug-in, a library that the registry names. The
// plug-in is loaded for one operation at a time; what it tells is copied.
#pragma once

#include "acctkit/acctkit.h"
#include "clients/mail_client.h"

#include <optional>

class ExternalMailer : public MailClient {
public:
  ExternalMailer() = default;
  ~ExternalMailer() override;
  ExternalMailer(const ExternalMailer &) = delete;
  ExternalMailer &operator=(const ExternalMailer &) = delete;

  // 1 if the plug-in loads, names a mailer, and that mailer's file exists.
  int32_t IsInstall() override;

  // Hands the account to the plug-in; `key` isn't used. 1 if the plug-in took it. 0, without asking it, if a text is
  // too long for its field.
  int32_t SetupAccount(const MailAccountSpec &spec, std::string &key) override;

  // What this client doesn't do; the plug-in isn't loaded.
  int32_t SetDefaultClient() override { return 1; }
  int32_t IsExistAccount(const MailAccountSpec &, std::string &, std::string &) override { return 0; }
  int32_t IsExistUser(const MailAccountSpec &, std::string &, std::string &) override { return 0; }
  int32_t IsExistSecondUser(const MailAccountSpec &, std::string &, std::string &) override { return 0; }

  // The plug-in's texts; on 0 the argument stays as it was. The version is the product version of the mailer's file,
  // and the result is 1 also if there is none.
  int32_t GetClientName(std::string &name) override;
  int32_t GetClientPath(std::string &path) override;
  int32_t GetClientVersion(std::string &version) override;
  int32_t GetClientType() override { return ClientExternalMailer; }

  // 1 if the plug-in was loaded now and has all three entry points. One that lacks an entry point stays in memory, and
  // every later load answers 0, until it is freed.
  int32_t LoadMailerLibrary();
  // 1 if a plug-in was freed.
  int32_t FreeMailerLibrary();

  // Call a loaded plug-in and answer what it answers. 0 if it throws, where that can be caught (not in the 32-bit DLL,
  // whose run-time library isn't the plug-in's).
  int32_t SetMailEnvironment(const MailEnvironment &environment) const;
  int32_t SetCompleteFlag() const;

private:
  // Loads the plug-in, asks it about its mailer and frees it. Nothing if it can't be loaded or doesn't answer 1.
  std::optional<MailerInfo> ReadMailerInfo();

  HMODULE module = nullptr;
  std::optional<PlatformCall::Pause> pause; // while foreign code is loaded, which may use the exports itself
  GetMailerInfoEntry getMailerInfo = nullptr;
  SetMailEnvironmentEntry setMailEnvironment = nullptr;
  SetCompleteFlagEntry setCompleteFlag = nullptr;
};
