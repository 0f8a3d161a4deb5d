#include "clients/netscape6/netscape6_news.h"

#include "clients/found_account.h"
#include "clients/netscape6/account_graph.h"
#include "clients/netscape6/netscape6_profiles.h"
#include "clients/profile_prefs.h"

using namespace netscape6;

namespace {

// Nothing if the sender's name or the server's can't be converted.
std::optional<GraphAccount> AccountOf(const NewsAccountSpec &spec) {
  const auto fullName = Utf8(spec.senderName);
  const auto serverName = Utf8(spec.ServerName());
  if (!fullName || !serverName)
    return std::nullopt;
  return GraphAccount{.type = "nntp",
                      .matchedPref = ServerNamePref,
                      .matchedText = *serverName,
                      .typedAtOnce = false,
                      .userName = spec.userId,
                      .hostname = spec.Host(),
                      .name = *serverName,
                      .mailAddress = spec.mailAddress,
                      .fullName = *fullName};
}

void ApplyAccountPrefs(PrefsText &prefs, const GraphKeys &keys, const GraphAccount &account) {
  ReplacePrefs(prefs, AccountLines(keys, account));
  ReplacePref(prefs, {RememberPasswordsPref, "true"});
}

bool WriteAccount(const std::string &directory, const GraphAccount &account) {
  ProfilePrefs prefs(directory);
  const auto keys = FindOrEnter(prefs.Text(), account);
  if (!keys)
    return false;
  ApplyAccountPrefs(prefs.Text(), *keys, account);
  if (!prefs.HasRoom())
    return false;
  prefs.Save();
  MakeMailFolder(directory);
  return true;
}

} // namespace

int32_t Netscape6News::SetupAccount(const NewsAccountSpec &spec, std::string &key) {
  const auto account = AccountOf(spec);
  if (!account || !TextsFit(*account))
    return 0;
  return EnsureProfile(spec.accountName, key) && WriteAccount(key, *account);
}

int32_t Netscape6News::IsExistAccount(const NewsAccountSpec &spec, std::string &key, std::string &message) {
  key.clear();
  return AnswerFound(FindProfile(spec.accountName), SameProfileQuestion(spec.accountName), key, message);
}
