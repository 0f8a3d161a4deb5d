#include "clients/netscape6/netscape6_mail.h"

#include "clients/format.h"
#include "clients/found_account.h"
#include "clients/netscape6/account_graph.h"
#include "clients/netscape6/netscape6_profiles.h"
#include "clients/profile_prefs.h"
#include "clients/service_constants.h"

using namespace netscape6;

namespace {

// Nothing if the sender's name can't be converted.
std::optional<GraphAccount> AccountOf(const MailAccountSpec &spec) {
  const auto fullName = Utf8(spec.senderName);
  if (!fullName)
    return std::nullopt;
  return GraphAccount{.type = "pop3",
                      .matchedPref = ServerUserPref,
                      .matchedText = spec.userId,
                      .typedAtOnce = true,
                      .userName = spec.userId,
                      .hostname = spec.popServer,
                      .name = spec.accountName,
                      .mailAddress = spec.mailAddress,
                      .fullName = *fullName};
}

// The SMTP server of a profile's first account, before the account's own takes its place.
std::string EnterFirstSmtp(PrefsText &prefs) {
  std::string key = SmtpName + std::string("1");
  const PrefLine lines[] = {{DefaultSmtpPref, QuotedPref(key)},
                            {Format(SmtpHostPref, key), QuotedPref(IspMailRelayHost)},
                            {Format(SmtpSslPref, key), "0"},
                            {SmtpListPref, QuotedPref(key)}};
  AppendPrefs(prefs, lines);
  return key;
}

// The SMTP server with that host, else one of the list without any host, else a new one at its end.
std::string FindSmtpKey(PrefsText &prefs, const std::string &host) {
  const std::string list = FindPrefValue(SmtpListPref, prefs).value_or("");
  std::string candidate;
  std::string spare;
  for (const std::string &item : ListItems(list)) {
    candidate = item;
    const auto stored = FindPrefValue(Format(SmtpHostPref, item), prefs);
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
  std::string key = NextName(prefs, list, SmtpPrefs, SmtpName);
  ReplacePref(prefs, ExtendedList(SmtpListPref, list, key));
  return key;
}

void ApplyAccountPrefs(PrefsText &prefs, const GraphKeys &keys, const std::string &smtpKey, const GraphAccount &account,
                       const std::string &smtpServer) {
  ReplacePref(prefs, {DefaultAccountPref, QuotedPref(keys.account)});
  ReplacePrefs(prefs, AccountLines(keys, account));
  ReplacePref(prefs, {DefaultSmtpPref, QuotedPref(smtpKey)});
  ReplacePref(prefs, {Format(SmtpHostPref, smtpKey), QuotedPref(smtpServer)});
  ReplacePref(prefs, {RememberPasswordsPref, "true"});
}

bool WriteAccount(const std::string &directory, const GraphAccount &account, const std::string &smtpServer) {
  ProfilePrefs prefs(directory);
  const bool first = !HasPrefText(AccountListPref, prefs.Text());
  const std::string smtpKey = first ? EnterFirstSmtp(prefs.Text()) : FindSmtpKey(prefs.Text(), smtpServer);
  const auto keys = FindOrEnter(prefs.Text(), account);
  if (!keys)
    return false;
  ApplyAccountPrefs(prefs.Text(), *keys, smtpKey, account, smtpServer);
  if (!prefs.HasRoom())
    return false;
  prefs.Save();
  MakeMailFolder(directory);
  return true;
}

} // namespace

int32_t Netscape6Mail::SetupAccount(const MailAccountSpec &spec, std::string &key) {
  const auto account = AccountOf(spec);
  if (!account || !TextsFit(*account) || spec.smtpServer.size() >= PrefValueSize)
    return 0;
  return EnsureProfile(spec.accountName, key) && WriteAccount(key, *account, spec.smtpServer);
}

int32_t Netscape6Mail::IsExistAccount(const MailAccountSpec &spec, std::string &key, std::string &message) {
  key.clear();
  return AnswerFound(FindProfile(spec.accountName), SameProfileQuestion(spec.accountName), key, message);
}
