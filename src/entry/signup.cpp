// One call after a sign-up configures every client; another tells the mailer plug-in that the sign-up is complete.
#include "acctkit/acctkit.h"

#include "clients/external_mailer.h"
#include "clients/guarded.h"

#include <cstddef>
#include <cstring>
#include <string>

// The host's sign-up program and the library must agree on every byte of the record.
static_assert(sizeof(SignupRecord) == 2072 && offsetof(SignupRecord, smtpServer) == 1551);
static_assert(offsetof(SignupRecord, startPage) == 1808 && offsetof(SignupRecord, serviceKind) == 2068);

namespace {

// The buffers in which a search returns its key and its question.
struct SearchBuffers {
  char key[ACCTKIT_KEY_SIZE] = "";
  char message[ACCTKIT_MESSAGE_SIZE] = "";
};

using SearchExport = int32_t(ACCTKIT_CALL *)(int32_t, const char *const *, char *, char *);
using SetupExport = int32_t(ACCTKIT_CALL *)(int32_t, const char *const *, const char *);

// The shorthand exports for one kind of service.
struct ServiceFamily {
  SearchExport search;
  SetupExport setup;
};

// The text of a record's field, which ends with the field if the host left out the terminator.
template <size_t Size> std::string FieldText(const char (&field)[Size]) { return {field, strnlen(field, Size - 1)}; }

// Writes the account into one client. The search before it puts the key of an account with the same title into
// `buffers`, and that account is then overwritten.
void WriteAccount(int32_t client, const ServiceFamily &family, const char *const *values, SearchBuffers &buffers) {
  family.search(client, values, buffers.key, buffers.message);
  family.setup(client, values, buffers.key);
}

// Accounts and start pages of the clients that the plain exports support. If a client fails, the next one follows.
void SetupClients(const SignupRecord &record) {
  static constexpr ServiceFamily Zuvio = {IsExistZuvioMailAccount, SetupZuvioMailAccount};
  static constexpr ServiceFamily Kerm = {IsExistKERMMailAccount, SetupKERMMailAccount};

  const bool originalDomain = record.serviceKind == 1;
  const ServiceFamily &family = originalDomain ? Kerm : Zuvio;
  const std::string user = originalDomain ? FieldText(record.mailUser) : FieldText(record.serviceId);
  const std::string senderName = FieldText(record.senderName);
  const std::string mailAddress = FieldText(record.mailAddress);
  const std::string smtpServer = FieldText(record.smtpServer);
  const std::string popServer = FieldText(record.popServer);
  const char *const values[] = {user.c_str(), senderName.c_str(), mailAddress.c_str(), smtpServer.c_str(),
                                popServer.c_str()};
  const std::string startPage = FieldText(record.startPage);

  if (IsInstallMailer(0)) {
    SearchBuffers buffers;
    WriteAccount(0, family, values, buffers);
  }
  SetBrowserStartPage(0, "IEではこのパラメーターは使用しません（笑）", startPage.c_str());
  if (IsInstallMailer(1)) {
    SearchBuffers buffers;
    WriteAccount(1, family, values, buffers);
    SetBrowserStartPage(1, buffers.key, startPage.c_str());
  }
}

template <size_t Size> void CopyField(char (&to)[Size], const char (&from)[Size]) {
  std::memcpy(to, from, strnlen(from, Size - 1));
}

int32_t HandToPlugin(const SignupRecord &record) {
  MailEnvironment environment{};
  CopyField(environment.connectionName, record.connectionName);
  CopyField(environment.senderName, record.senderName);
  CopyField(environment.mailUser, record.mailUser);
  CopyField(environment.mailAddress, record.mailAddress);
  CopyField(environment.serviceId, record.serviceId);
  CopyField(environment.popServer, record.popServer);
  CopyField(environment.smtpServer, record.smtpServer);

  ExternalMailer mailer;
  if (mailer.IsInstall() != 1 || mailer.LoadMailerLibrary() != 1)
    return 0;
  const int32_t answer = mailer.SetMailEnvironment(environment);
  mailer.FreeMailerLibrary();
  return answer;
}

} // namespace

int32_t SetupAfterSignup(const SignupRecord *record) {
  // The plug-in is asked also if nothing could be written.
  AsOneCall([=] {
    if (record->serviceKind == 0 || record->serviceKind == 1)
      SetupClients(*record);
    return 1;
  });
  return Guarded([=] { return HandToPlugin(*record); });
}

int32_t SetupCompleted(void) {
  return AsOneCall([]() -> int32_t {
    ExternalMailer mailer;
    if (mailer.LoadMailerLibrary() != 1)
      return 0;
    const int32_t answer = mailer.SetCompleteFlag();
    mailer.FreeMailerLibrary();
    return answer;
  });
}
