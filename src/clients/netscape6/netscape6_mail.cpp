#include "clients/netscape6/netscape6_mail.h"

#include "clients/format.h"
#include "clients/netscape6/account_graph.h"
#include "clients/netscape6/netscape6_profiles.h"
#include "clients/service_constants.h"

namespace {

using netscape6::GraphAccount;
using netscape6::GraphKeys;

constexpr const char *SmtpList = "mail.smtpservers";
constexpr const char *DefaultSmtp = "mail.smtp.defaultserver";

std::string SmtpHostKey(const std::string &smtpKey) { return Format("mail.smtpserver.%s.hostname", smtpKey); }

// Nothing if the sender's name can't be converted.
std::optional<GraphAccount> AccountOf(const MailAccountSpec &spec) {
  const auto fullName = netscape6::Utf8(spec.senderName);
  if (!fullName)
    return std::nullopt;
  return GraphAccount{"pop3",         "userName",       spec.userId,      true,     spec.userId,
                      spec.popServer, spec.accountName, spec.mailAddress, *fullName};
}

// The SMTP server of a profile's first account, before the account's own takes its place.
std::string EnterFirstSmtp(PrefsText &prefs) {
  std::string key = "smtp1";
  const PrefLine lines[] = {{DefaultSmtp, QuotedPref(key)},
                            {SmtpHostKey(key), QuotedPref(IspMailRelayHost)},
                            {"mail.smtpserver.smtp1.try_ssl", "0"},
                            {SmtpList, QuotedPref(key)}};
  AppendPrefs(prefs, lines);
  return key;
}

// The SMTP server with that host, else one of the list without any host, else a new one at its end.
std::string FindSmtpKey(PrefsText &prefs, const std::string &host) {
  const std::string list = FindPrefValue(SmtpList, prefs).value_or("");
  std::string candidate;
  std::string spare;
  for (const std::string &item : ListItems(list)) {
    candidate = item;
    const auto stored = FindPrefValue(SmtpHostKey(item), prefs);
    if (!stored)
      continue; // one without a hostname line, which is taken if it is the last
    if (*stored == host)
      return item;
    if (stored->empty())
      spare = item;
    candidate.clear();
  }
  if (!candidate.empty() || !spare.empty())
    return candidate.empty() ? spare : candidate;
  std::string key = netscape6::NextName(prefs, list, "mail.smtpserver.", "smtp");
  ReplacePref(prefs, netscape6::ExtendedList(SmtpList, list, key));
  return key;
}

void ApplyAccountPrefs(PrefsText &prefs, const GraphKeys &keys, const std::string &smtpKey, const GraphAccount &account,
                       const std::string &smtpServer) {
  ReplacePref(prefs, {"mail.accountmanager.defaultaccount", QuotedPref(keys.account)});
  for (const PrefLine &line : netscape6::AccountPrefs(keys, account))
    ReplacePref(prefs, line);
  ReplacePref(prefs, {DefaultSmtp, QuotedPref(smtpKey)});
  ReplacePref(prefs, {SmtpHostKey(smtpKey), QuotedPref(smtpServer)});
  ReplacePref(prefs, {"signon.rememberSignons", "true"});
}

int32_t WriteAccount(const std::string &directory, const GraphAccount &account, const std::string &smtpServer) {
  return netscape6::EditProfile(directory, [&](PrefsText &prefs) {
    const bool first = !HasPrefText(netscape6::AccountList, prefs);
    const std::string smtpKey = first ? EnterFirstSmtp(prefs) : FindSmtpKey(prefs, smtpServer);
    const auto keys = netscape6::FindOrEnter(prefs, account);
    if (keys)
      ApplyAccountPrefs(prefs, *keys, smtpKey, account, smtpServer);
    return keys.has_value();
  });
}

} // namespace

int32_t Netscape6Mail::IsInstall() { return IsInstalled(netscape6::Program); }

int32_t Netscape6Mail::SetupAccount(const MailAccountSpec &spec, std::string &key) {
  const auto account = AccountOf(spec);
  if (!account || !netscape6::TextsFit(*account) || spec.smtpServer.size() >= PrefValueSize ||
      !netscape6::DirectoryFits(key) || (key.empty() && !netscape6::MakeProfile(spec.accountName, key)))
    return 0;
  return WriteAccount(key, *account, spec.smtpServer);
}

int32_t Netscape6Mail::SetDefaultClient() { return 1; }

int32_t Netscape6Mail::IsExistAccount(const MailAccountSpec &spec, std::string &key, std::string &message) {
  return netscape6::FindProfile(spec.accountName, key, message);
}

int32_t Netscape6Mail::IsExistUser(const MailAccountSpec &, std::string &, std::string &) { return 0; }

int32_t Netscape6Mail::IsExistSecondUser(const MailAccountSpec &, std::string &, std::string &) { return 0; }

int32_t Netscape6Mail::GetClientName(std::string &name) { return ReadName(netscape6::Program, name); }

int32_t Netscape6Mail::GetClientPath(std::string &path) { return ReadProgramPath(netscape6::Program, path); }

int32_t Netscape6Mail::GetClientVersion(std::string &version) { return ReadVersion(netscape6::Program, version); }

int32_t Netscape6Mail::GetClientType() { return ClientNetscape6; }
