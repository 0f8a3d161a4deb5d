// Netscape 6 as a news client: a news server is an account of its own in a profile's prefs.js. The twin of
// Netscape6Mail, on the same profiles and in the same graph.
#pragma once

#include "clients/news_client.h"

class Netscape6News : public NewsClient {
public:
  int32_t IsInstall() override;

  // Writes the record's server as Netscape6Mail writes an account, with the same results. A server of the same display
  // name is taken over; it becomes the default account only as the first account of a profile.
  int32_t SetupAccount(const NewsAccountSpec &spec, std::string &key) override;

  int32_t SetDefaultClient() override;

  // Matches the profile's name as Netscape6Mail does.
  int32_t IsExistAccount(const NewsAccountSpec &spec, std::string &key, std::string &message) override;

  int32_t GetClientName(std::string &name) override;
  int32_t GetClientPath(std::string &path) override;
  int32_t GetClientVersion(std::string &version) override;
  int32_t GetClientType() override;
};
