#include "clients/outlook_express/outlook_express_news.h"

#include "clients/format.h"
#include "clients/found_account.h"
#include "clients/outlook_express/outlook_express_accounts.h"
#include "clients/registry_key.h"

using namespace outlook_express;

namespace {

constexpr const char *SameTitleLine = "アカウント名：%s";

std::string Title(const NewsAccountSpec &spec) { return spec.accountName + ' ' + spec.ServerName(); }

// Plain text, and articles that are kept for ever, the same for every news account of the client. Version 5 keeps these
// in the user's identity.
void WriteClientSettings() {
  static const NamedValue PlainText = {SendHtmlValue, DWORD{0}};
  static const NamedValue KeepArticles = {KeepDaysValue, DWORD{0xFFFFFFFF}};
  static const NamedValue KeepReadArticles = {KeepReadValue, DWORD{0}};

  WriteValuesFullAccess(HKEY_CURRENT_USER, NewsSettingsKey(SettingsKey), {PlainText, KeepArticles, KeepReadArticles});
  const std::string identity = DefaultIdentitySettings();
  if (identity.empty())
    return;
  WriteValuesFullAccess(HKEY_CURRENT_USER, NewsSettingsKey(identity), {PlainText});
  WriteValuesFullAccess(HKEY_CURRENT_USER, identity, {{CompactionValue, DWORD{1}}});
  WriteValuesFullAccess(HKEY_CURRENT_USER, NewsSettingsKey(identity), {KeepArticles, KeepReadArticles});
}

} // namespace

int32_t OutlookExpressNews::SetupAccount(const NewsAccountSpec &spec, std::string &key) {
  const std::string title = Title(spec);
  if (!TextsFit({spec.userId, spec.senderName, title, spec.mailAddress, spec.Host(), AccountKey(key)}))
    return 0;
  const auto name = EnterAccount(key, title, Pop3ServerValue);
  if (!name)
    return 0;
  WriteValuesFullAccess(HKEY_CURRENT_USER, AccountKey(*name),
                        {{NntpUserValue, spec.userId},
                         {NntpAddressValue, spec.mailAddress},
                         {NntpSenderValue, spec.senderName},
                         {NntpServerValue, spec.Host()},
                         {ConnectionTypeValue, ConnectionType()},
                         {NntpSplitValue, DWORD{1}},
                         {NntpPromptValue, DWORD{0}},
                         {NntpSplitSizeValue, DWORD{600}}});
  WriteClientSettings();
  return 1;
}

int32_t OutlookExpressNews::IsExistAccount(const NewsAccountSpec &spec, std::string &key, std::string &message) {
  const std::string title = Title(spec);
  const auto found =
      FindAccount([&](const std::string &accountKey) { return HoldsText(accountKey, AccountNameValue, title); });
  return AnswerFound(found, Format(SameTitleLine, title), key, message);
}
