// Netscape 6 as a news client: a news server is an account of its own in a profile's prefs.js. The twin of
// Netscape6Mail, on the same profiles and in the same graph.
#pragma once

#include "clients/installed_program.h"
#include "clients/netscape6/netscape6_layout.h"
#include "clients/news_client.h"

class Netscape6News : public NewsClient {
public:
  int32_t IsInstall() override { return IsInstalled(netscape6::Program); }

  // Writes the record's server as Netscape6Mail writes an account, with the same results. A server of the same display
  // name is taken over; it becomes the default account only as the first account of a profile.
  int32_t SetupAccount(const NewsAccountSpec &spec, std::string &key) override;

  int32_t SetDefaultClient() override { return 1; }

  // Matches the profile's name as Netscape6Mail does.
  int32_t IsExistAccount(const NewsAccountSpec &spec, std::string &key, std::string &message) override;

  int32_t GetClientName(std::string &name) override { return ReadName(netscape6::Program, name); }
  int32_t GetClientPath(std::string &path) override { return ReadProgramPath(netscape6::Program, path); }
  int32_t GetClientVersion(std::string &version) override { return ReadVersion(netscape6::Program, version); }
  int32_t GetClientType() override { return ClientNetscape6; }
};
