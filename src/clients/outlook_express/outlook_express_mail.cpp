#include "clients/outlook_express/outlook_express_mail.h"

#include "clients/format.h"
#include "clients/outlook_express/outlook_express_accounts.h"
#include "clients/registry_key.h"

namespace {

constexpr const char *ClientName = "Outlook Express";
constexpr const char *SameTitleQuestion = "同名のアカウントが存在します。\nアカウント名：%sを上書きしますか？";
// The line feeds stand where the client's message box breaks its lines.
constexpr const char *SameUserQuestion =
    "メールアカウント「%s」の設定は、すでに存在しています。\n\n"
    "「OK」ボタンをクリックすると、新たな設定を追加しますので、同じメールが複数受\n"
    "信される可能性があります。新たな設定を追加しない場合は、「キャンセル」ボタン\n"
    "をクリックしてください。";

// A mail account is one with a POP3 or an SMTP server; news accounts live in the same place.
bool IsMailAccount(const std::string &path) {
  std::string server;
  for (const char *valueName : {"POP3 Server", "SMTP Server"})
    if (ReadText(HKEY_CURRENT_USER, path, valueName, server) && !server.empty())
      return true;
  return false;
}

int32_t FindMailAccount(const char *valueName, const std::string &wanted, const char *question, std::string &key,
                        std::string &message) {
  const bool found = outlook_express::FindAccount(
      [&](const std::string &path) {
        return IsMailAccount(path) && outlook_express::HoldsText(path, valueName, wanted);
      },
      key);
  if (found)
    message = Format(question, wanted);
  return found ? 1 : 0;
}

// Copies the default value of one of the client's keys to the system's key. A command line isn't a file, so whether the
// path exists has no meaning here.
void CopyDefaultValue(const std::string &from, const std::string &to) {
  std::string stored;
  std::string text;
  const int32_t found = ReadText(HKEY_LOCAL_MACHINE, from, nullptr, stored);
  ReadPath(HKEY_LOCAL_MACHINE, from.c_str(), nullptr, text);
  if (found && (!text.empty() || stored.empty()))
    WriteValues(HKEY_LOCAL_MACHINE, to, {{nullptr, text}});
}

} // namespace

int32_t OutlookExpressMail::IsInstall() { return IsInstalled(outlook_express::Program); }

int32_t OutlookExpressMail::SetupAccount(const MailAccountSpec &spec, std::string &key) {
  if (!outlook_express::TextsFit({spec.userId, spec.senderName, spec.accountName, spec.smtpServer, spec.popServer,
                                  spec.mailAddress, outlook_express::AccountPath(key)}))
    return 0;
  if (!key.empty() && outlook_express::HasText(outlook_express::AccountPath(key), "NNTP Server"))
    return 0;

  const std::string name = key.empty() ? outlook_express::EnterAccount(spec.accountName) : key;
  outlook_express::EnsureDefaultMailAccount(name);
  WriteValues(HKEY_CURRENT_USER, outlook_express::AccountPath(name),
              {{"POP3 Server", spec.popServer},
               {"POP3 User Name", spec.userId},
               {"SMTP Server", spec.smtpServer},
               {"SMTP Email Address", spec.mailAddress},
               {"SMTP Display Name", spec.senderName},
               {"POP3 Skip Account", DWORD{0}},
               {"Leave Mail On Server", DWORD{1}},
               {"POP3 Prompt for Password", DWORD{0}},
               {"Connection Type", outlook_express::ConnectionType()}});

  const NamedValue plainText = {"Message Send HTML", DWORD{0}};
  WriteValues(HKEY_CURRENT_USER, "Software\\Microsoft\\Outlook Express\\Mail", {plainText});
  if (!outlook_express::IsVersion4())
    if (const std::string settings = outlook_express::IdentitySettingsPath(); !settings.empty())
      WriteValues(HKEY_CURRENT_USER, settings + "\\Mail", {plainText});
  return 1;
}

int32_t OutlookExpressMail::SetDefaultClient() {
  const std::string clientKey = std::string(MailProgramsKey) + '\\' + ClientName;
  RegistryKey key;
  if (!key.KeyExists(HKEY_LOCAL_MACHINE, clientKey.c_str()))
    return 0;
  const std::string protocols = clientKey + "\\Protocols";
  for (const char *below : {"\\mailto\\DefaultIcon", "\\mailto\\shell\\open\\command"})
    CopyDefaultValue(protocols + below, std::string("SOFTWARE\\Classes") + below);
  WriteValues(HKEY_LOCAL_MACHINE, MailProgramsKey, {{nullptr, ClientName}});
  return 1;
}

int32_t OutlookExpressMail::IsExistAccount(const MailAccountSpec &spec, std::string &key, std::string &message) {
  return FindMailAccount("Account Name", spec.accountName, SameTitleQuestion, key, message);
}

int32_t OutlookExpressMail::IsExistUser(const MailAccountSpec &spec, std::string &key, std::string &message) {
  return FindMailAccount("POP3 User Name", spec.userId, SameUserQuestion, key, message);
}

int32_t OutlookExpressMail::IsExistSecondUser(const MailAccountSpec &, std::string &, std::string &) { return 0; }

int32_t OutlookExpressMail::GetClientName(std::string &name) { return ReadName(outlook_express::Program, name); }

int32_t OutlookExpressMail::GetClientPath(std::string &path) { return ReadProgramPath(outlook_express::Program, path); }

int32_t OutlookExpressMail::GetClientVersion(std::string &version) {
  return ReadVersion(outlook_express::Program, version);
}

int32_t OutlookExpressMail::GetClientType() { return ClientOutlookExpress; }
