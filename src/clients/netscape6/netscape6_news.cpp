#include "clients/netscape6/netscape6_news.h"

#include "clients/netscape6/account_graph.h"
#include "clients/netscape6/netscape6_profiles.h"

namespace {

using netscape6::GraphAccount;

// Nothing if the sender's name or the server's can't be converted.
std::optional<GraphAccount> AccountOf(const NewsAccountSpec &spec) {
  const auto fullName = netscape6::Utf8(spec.senderName);
  const auto serverName = netscape6::Utf8(spec.ServerName());
  if (!fullName || !serverName)
    return std::nullopt;
  return GraphAccount{"nntp",      "name",      *serverName,      false,    spec.userId,
                      spec.Host(), *serverName, spec.mailAddress, *fullName};
}

void ApplyAccountPrefs(PrefsText &prefs, const netscape6::GraphKeys &keys, const GraphAccount &account) {
  for (const PrefLine &line : netscape6::AccountPrefs(keys, account))
    ReplacePref(prefs, line);
  ReplacePref(prefs, {"signon.rememberSignons", "true"});
}

int32_t WriteAccount(const std::string &directory, const GraphAccount &account) {
  return netscape6::EditProfile(directory, [&](PrefsText &prefs) {
    const auto keys = netscape6::FindOrEnter(prefs, account);
    if (keys)
      ApplyAccountPrefs(prefs, *keys, account);
    return keys.has_value();
  });
}

} // namespace

int32_t Netscape6News::IsInstall() { return IsInstalled(netscape6::Program); }

int32_t Netscape6News::SetupAccount(const NewsAccountSpec &spec, std::string &key) {
  const auto account = AccountOf(spec);
  if (!account || !netscape6::TextsFit(*account) || !netscape6::DirectoryFits(key) ||
      (key.empty() && !netscape6::MakeProfile(spec.accountName, key)))
    return 0;
  return WriteAccount(key, *account);
}

int32_t Netscape6News::SetDefaultClient() { return 1; }

int32_t Netscape6News::IsExistAccount(const NewsAccountSpec &spec, std::string &key, std::string &message) {
  return netscape6::FindProfile(spec.accountName, key, message);
}

int32_t Netscape6News::GetClientName(std::string &name) { return ReadName(netscape6::Program, name); }

int32_t Netscape6News::GetClientPath(std::string &path) { return ReadProgramPath(netscape6::Program, path); }

int32_t Netscape6News::GetClientVersion(std::string &version) { return ReadVersion(netscape6::Program, version); }

int32_t Netscape6News::GetClientType() { return ClientNetscape6; }
