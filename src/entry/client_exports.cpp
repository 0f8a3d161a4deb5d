// The plain exports: whether a client is installed and in which version, and finding and writing an account. Each call
// makes the adapter that belongs to the client index.
#include "acctkit/acctkit.h"

#include "clients/communicator/communicator_layout.h"
#include "clients/communicator/communicator_mail.h"
#include "clients/communicator/communicator_news.h"
#include "clients/guarded.h"
#include "clients/outlook_express/outlook_express_layout.h"
#include "clients/outlook_express/outlook_express_mail.h"
#include "clients/outlook_express/outlook_express_news.h"

#include <cstring>

namespace {

// The clients by their index.
constexpr const InstalledProgram *Programs[] = {&outlook_express::Program, &communicator::Program};

// Calls the operation with the adapter of the client index; 0 for any other index.
template <typename Adapter0, typename Adapter1, typename Operation>
int32_t WithClient(int32_t client, Operation operation) {
  return AsOneCall([&]() -> int32_t {
    switch (client) {
    case 0: {
      Adapter0 adapter;
      return operation(adapter);
    }
    case 1: {
      Adapter1 adapter;
      return operation(adapter);
    }
    default:
      return 0;
    }
  });
}
template <typename Operation> int32_t WithMailClient(int32_t client, Operation operation) {
  return WithClient<OutlookExpressMail, CommunicatorMail>(client, operation);
}
template <typename Operation> int32_t WithNewsClient(int32_t client, Operation operation) {
  return WithClient<OutlookExpressNews, CommunicatorNews>(client, operation);
}

MailAccountSpec MailSpec(const char *const *spec) {
  MailAccountSpec record;
  std::string *const fields[] = {&record.userId,     &record.senderName, &record.accountName, &record.reserved,
                                 &record.smtpServer, &record.popServer,  &record.mailAddress, &record.connectionName};
  for (std::string *field : fields)
    *field = *spec++;
  return record;
}

// A news spec that describes one server.
NewsAccountSpec NewsSpec(const char *const *spec) {
  NewsAccountSpec record;
  std::string *const fields[] = {&record.userId,      &record.senderName,    &record.accountName,
                                 &record.reserved,    &record.newsHosts[0],  &record.newsServerNames[0],
                                 &record.mailAddress, &record.connectionName};
  for (std::string *field : fields)
    *field = *spec++;
  record.newsServerOn[0] = 1;
  return record;
}

// Asks a client's version and splits it.
template <typename Client> int32_t ReadVersionNumbers(Client &adapter, int32_t client, int32_t *major, int32_t *minor) {
  std::string version;
  const int32_t result = adapter.GetClientVersion(version);
  const VersionNumbers numbers = SplitVersion(version, Programs[client]->versionSeparator);
  *major = numbers.major;
  *minor = numbers.minor;
  return result;
}

// Searches for an account and copies the texts to the host's buffers. A key that doesn't fit isn't cut, since the cut
// key would name another account; a question is cut.
template <typename Client, typename Spec> int32_t Search(Client &adapter, const Spec &spec, char *key, char *message) {
  std::string foundKey = key;
  std::string question;
  const int32_t result = adapter.IsExistAccount(spec, foundKey, question);
  message[0] = '\0';
  if (result == 0 || foundKey.size() >= ACCTKIT_KEY_SIZE)
    return 0;
  std::memcpy(key, foundKey.c_str(), foundKey.size() + 1);
  message[question.copy(message, ACCTKIT_MESSAGE_SIZE - 1)] = '\0';
  return result;
}

} // namespace

int32_t IsInstallMailer(int32_t client) {
  return WithMailClient(client, [](MailClient &adapter) { return adapter.IsInstall(); });
}

int32_t IsInstallNews(int32_t client) {
  return WithNewsClient(client, [](NewsClient &adapter) { return adapter.IsInstall(); });
}

int32_t GetMailVersion(int32_t client, int32_t *major, int32_t *minor) {
  return WithMailClient(client, [=](MailClient &adapter) { return ReadVersionNumbers(adapter, client, major, minor); });
}

int32_t GetNewsVersion(int32_t client, int32_t *major, int32_t *minor) {
  return WithNewsClient(client, [=](NewsClient &adapter) { return ReadVersionNumbers(adapter, client, major, minor); });
}

int32_t IsExistMailAccount(int32_t client, const char *const *spec, char *key, char *message) {
  return WithMailClient(client, [=](MailClient &adapter) {
    MailAccountSpec record = MailSpec(spec);
    record.originalDomain = static_cast<int32_t>(reinterpret_cast<intptr_t>(spec[8]));
    return Search(adapter, record, key, message);
  });
}

int32_t IsExistNewsAccount(int32_t client, const char *const *spec, char *key, char *message) {
  return WithNewsClient(client, [=](NewsClient &adapter) { return Search(adapter, NewsSpec(spec), key, message); });
}

int32_t SetupMailAccount(int32_t client, const char *const *spec, const char *key) {
  return WithMailClient(client, [=](MailClient &adapter) {
    std::string account = key;
    return adapter.SetupAccount(MailSpec(spec), account);
  });
}

int32_t SetupNewsAccount(int32_t client, const char *const *spec, const char *key) {
  return WithNewsClient(client, [=](NewsClient &adapter) {
    std::string account = key;
    return adapter.SetupAccount(NewsSpec(spec), account);
  });
}
