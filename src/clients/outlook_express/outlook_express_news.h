// Outlook Express, versions 4 and 5, as a news client: the twin of OutlookExpressMail in the same account store.
#pragma once

#include "clients/installed_program.h"
#include "clients/news_client.h"
#include "clients/outlook_express/outlook_express_layout.h"

class OutlookExpressNews : public NewsClient {
public:
  int32_t IsInstall() override { return IsInstalled(outlook_express::Program); }

  // Writes the account of the record's server below "Software\Microsoft\Internet Account Manager" of HKEY_CURRENT_USER,
  // with the next number (which isn't tested) or over the account whose key's name `key` is, and the client's own news
  // settings. 0, with nothing written, if `key` belongs to a mail account or a text has more than 511 bytes.
  int32_t SetupAccount(const NewsAccountSpec &spec, std::string &key) override;

  int32_t SetDefaultClient() override { return 1; }

  // Matches the account's title, byte by byte, on accounts of either kind. The title is `accountName`, a blank and the
  // server's display name.
  int32_t IsExistAccount(const NewsAccountSpec &spec, std::string &key, std::string &message) override;

  int32_t GetClientName(std::string &name) override { return ReadName(outlook_express::Program, name); }
  int32_t GetClientPath(std::string &path) override { return ReadProgramPath(outlook_express::Program, path); }
  int32_t GetClientVersion(std::string &version) override { return ReadVersion(outlook_express::Program, version); }
  int32_t GetClientType() override { return ClientOutlookExpress; }
};
