#include "clients/outlook_express/outlook_express_news.h"

#include "clients/format.h"
#include "clients/outlook_express/outlook_express_accounts.h"
#include "clients/registry_key.h"

namespace {

constexpr const char *SameTitleLine = "アカウント名：%s";

std::string Title(const NewsAccountSpec &spec) { return spec.accountName + ' ' + spec.ServerName(); }

// Plain text, and articles that are kept for ever, the same for every news account of the client. Version 5 keeps these
// in the user's identity.
void WriteClientSettings() {
  static const NamedValue PlainText = {"Message Send HTML", DWORD{0}};
  static const NamedValue KeepArticles = {"Cache Delete Message Days", DWORD{0xFFFFFFFF}};
  static const NamedValue KeepReadArticles = {"Cache Read Messages", DWORD{0}};

  WriteValues(HKEY_CURRENT_USER, "Software\\Microsoft\\Outlook Express\\News",
              {PlainText, KeepArticles, KeepReadArticles});
  const std::string identity = outlook_express::IdentitySettingsPath();
  if (identity.empty())
    return;
  const std::string news = identity + "\\News";
  WriteValues(HKEY_CURRENT_USER, news, {PlainText});
  WriteValues(HKEY_CURRENT_USER, identity, {{"Background Compaction", DWORD{1}}});
  WriteValues(HKEY_CURRENT_USER, news, {KeepArticles, KeepReadArticles});
}

} // namespace

int32_t OutlookExpressNews::IsInstall() { return IsInstalled(outlook_express::Program); }

int32_t OutlookExpressNews::SetupAccount(const NewsAccountSpec &spec, std::string &key) {
  const std::string title = Title(spec);
  if (!outlook_express::TextsFit(
          {spec.userId, spec.senderName, title, spec.mailAddress, spec.Host(), outlook_express::AccountPath(key)}))
    return 0;
  if (!key.empty() && outlook_express::HasText(outlook_express::AccountPath(key), "POP3 Server"))
    return 0;

  const std::string name = key.empty() ? outlook_express::EnterAccount(title) : key;
  WriteValues(HKEY_CURRENT_USER, outlook_express::AccountPath(name),
              {{"NNTP User Name", spec.userId},
               {"NNTP Email Address", spec.mailAddress},
               {"NNTP Display Name", spec.senderName},
               {"NNTP Server", spec.Host()},
               {"Connection Type", outlook_express::ConnectionType()},
               {"NNTP Split Messages", DWORD{1}},
               {"NNTP Prompt for Password", DWORD{0}},
               {"NNTP Split Message Size", DWORD{600}}}); // in kilobytes
  WriteClientSettings();
  return 1;
}

int32_t OutlookExpressNews::SetDefaultClient() { return 1; }

int32_t OutlookExpressNews::IsExistAccount(const NewsAccountSpec &spec, std::string &key, std::string &message) {
  const std::string title = Title(spec);
  if (!outlook_express::FindAccount(
          [&](const std::string &path) { return outlook_express::HoldsText(path, "Account Name", title); }, key))
    return 0;
  message = Format(SameTitleLine, title);
  return 1;
}

int32_t OutlookExpressNews::GetClientName(std::string &name) { return ReadName(outlook_express::Program, name); }

int32_t OutlookExpressNews::GetClientPath(std::string &path) { return ReadProgramPath(outlook_express::Program, path); }

int32_t OutlookExpressNews::GetClientVersion(std::string &version) {
  return ReadVersion(outlook_express::Program, version);
}

int32_t OutlookExpressNews::GetClientType() { return ClientOutlookExpress; }
