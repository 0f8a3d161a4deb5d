// The plain exports: is a client installed, in which version, is there an account, write one. Each makes the adapter of
// the index for one call.
#include "acctkit/acctkit.h"

#include "clients/communicator/communicator_mail.h"
#include "clients/outlook_express/outlook_express_mail.h"

#include <charconv>
#include <cstring>
#include <string_view>

namespace {

// What a host's buffers hold at least. A question about the longest title fits, a longer key can't be handed out.
constexpr size_t KeySize = 256;
constexpr size_t MessageSize = 1024;

// How the version texts of the two clients divide their numbers.
constexpr char VersionSeparators[] = {',', '.'};

// Calls the operation with the mail adapter of the index; 0 for an index without one.
template <typename Operation> int32_t WithMailClient(int32_t client, Operation operation) {
  switch (client) {
  case 0: {
    OutlookExpressMail adapter;
    return operation(adapter);
  }
  case 1: {
    CommunicatorMail adapter;
    return operation(adapter);
  }
  default:
    return 0;
  }
}

MailAccountSpec MailSpec(const char *const *spec) {
  MailAccountSpec record;
  std::string *const fields[] = {&record.userId,     &record.senderName, &record.accountName, &record.reserved,
                                 &record.smtpServer, &record.popServer,  &record.mailAddress, &record.connectionName};
  for (std::string *field : fields)
    *field = *spec++;
  return record;
}

// The number that a text begins with, 0 if it begins with anything else.
int32_t LeadingNumber(std::string_view text) {
  int32_t number = 0;
  if (!text.starts_with('-'))
    std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

int32_t SplitVersion(int32_t result, std::string_view version, char separator, int32_t *major, int32_t *minor) {
  const size_t place = version.find(separator);
  const bool divided = place != std::string_view::npos;
  *major = divided ? LeadingNumber(version.substr(0, place)) : 0;
  *minor = divided ? LeadingNumber(version.substr(place + 1)) : 0;
  return result;
}

// Hands the texts of a search back to the host. A key that doesn't fit isn't handed out in part, since it would name
// another account; a question is cut.
int32_t HandBack(int32_t result, const std::string &foundKey, const std::string &question, char *key, char *message) {
  message[0] = '\0';
  if (result == 0 || foundKey.size() >= KeySize)
    return 0;
  std::memcpy(key, foundKey.c_str(), foundKey.size() + 1);
  message[question.copy(message, MessageSize - 1)] = '\0';
  return result;
}

} // namespace

int32_t IsInstallMailer(int32_t client) {
  return WithMailClient(client, [](MailClient &adapter) { return adapter.IsInstall(); });
}

int32_t GetMailVersion(int32_t client, int32_t *major, int32_t *minor) {
  return WithMailClient(client, [=](MailClient &adapter) {
    std::string version;
    const int32_t result = adapter.GetClientVersion(version);
    return SplitVersion(result, version, VersionSeparators[client], major, minor);
  });
}

int32_t IsExistMailAccount(int32_t client, const char *const *spec, char *key, char *message) {
  return WithMailClient(client, [=](MailClient &adapter) {
    MailAccountSpec record = MailSpec(spec);
    record.originalDomain = static_cast<int32_t>(reinterpret_cast<intptr_t>(spec[8]));
    std::string foundKey = key;
    std::string question;
    const int32_t result = adapter.IsExistAccount(record, foundKey, question);
    return HandBack(result, foundKey, question, key, message);
  });
}

int32_t SetupMailAccount(int32_t client, const char *const *spec, const char *key) {
  return WithMailClient(client, [=](MailClient &adapter) { return adapter.SetupAccount(MailSpec(spec), key); });
}

// No client's news adapter is there yet: every index is one without.

int32_t IsInstallNews(int32_t) { return 0; }

int32_t GetNewsVersion(int32_t, int32_t *, int32_t *) { return 0; }

int32_t IsExistNewsAccount(int32_t, const char *const *, char *, char *) { return 0; }

int32_t SetupNewsAccount(int32_t, const char *const *, const char *) { return 0; }
