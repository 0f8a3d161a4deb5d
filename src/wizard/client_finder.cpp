#include "wizard/client_finder.h"

#include "clients/communicator/communicator_mail.h"
#include "clients/communicator/communicator_news.h"
#include "clients/external_mailer.h"
#include "clients/netscape6/netscape6_mail.h"
#include "clients/netscape6/netscape6_news.h"
#include "clients/outlook_express/outlook_express_mail.h"
#include "clients/outlook_express/outlook_express_news.h"

#include <algorithm>

namespace {

// Deletes the adapters of clients that aren't installed; 1 if any is left.
template <typename Clients> int32_t KeepInstalled(Clients &clients) {
  for (auto &client : clients)
    if (!client->IsInstall())
      client.reset();
  return std::ranges::any_of(clients, [](const auto &client) { return client != nullptr; }) ? 1 : 0;
}

} // namespace

int32_t ClientFinder::HasMailClient() const {
  MailClients clients;
  return FindMailClients(clients);
}

int32_t ClientFinder::HasNewsClient() const {
  NewsClients clients;
  return FindNewsClients(clients);
}

int32_t ClientFinder::FindMailClients(MailClients &clients) const {
  clients = {std::make_unique<ExternalMailer>(), std::make_unique<OutlookExpressMail>(),
             std::make_unique<CommunicatorMail>(), std::make_unique<Netscape6Mail>()};
  return KeepInstalled(clients);
}

int32_t ClientFinder::FindNewsClients(NewsClients &clients) const {
  clients = {std::make_unique<OutlookExpressNews>(), std::make_unique<CommunicatorNews>(),
             std::make_unique<Netscape6News>()};
  return KeepInstalled(clients);
}
