// Finds the installed clients that a wizard can set up.
#pragma once

#include "clients/mail_client.h"
#include "clients/news_client.h"

#include <array>
#include <memory>

// The adapters at fixed indexes; null for a client that isn't installed.
using MailClients = std::array<std::unique_ptr<MailClient>, 4>; // external mailer, Outlook Express, Communicator,
                                                                // Netscape 6
using NewsClients = std::array<std::unique_ptr<NewsClient>, 3>; // Outlook Express, Communicator, Netscape 6

class ClientFinder {
public:
  virtual ~ClientFinder() = default;

  // 1 if any client is installed.
  int32_t HasMailClient() const;
  int32_t HasNewsClient() const;

  // Makes an adapter for each client that is installed; the others are null. 1 if there is any.
  int32_t FindMailClients(MailClients &clients) const;
  int32_t FindNewsClients(NewsClients &clients) const;
};
