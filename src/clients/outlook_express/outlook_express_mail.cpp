#include "clients/outlook_express/outlook_express_mail.h"

#include "clients/format.h"
#include "clients/found_account.h"
#include "clients/outlook_express/outlook_express_accounts.h"
#include "clients/registry_key.h"
#include "clients/windows_layout.h"

using namespace outlook_express;

namespace {

constexpr const char *SameTitleQuestion = "同名のアカウントが存在します。\nアカウント名：%sを上書きしますか？";
// The line feeds stand where the client's message box breaks its lines.
constexpr const char *SameUserQuestion =
    "メールアカウント「%s」の設定は、すでに存在しています。\n\n"
    "「OK」ボタンをクリックすると、新たな設定を追加しますので、同じメールが複数受\n"
    "信される可能性があります。新たな設定を追加しない場合は、「キャンセル」ボタン\n"
    "をクリックしてください。";

// News accounts stand among the mail accounts.
bool IsMailAccount(const std::string &accountKey) {
  for (const char *valueName : {Pop3ServerValue, SmtpServerValue})
    if (!ReadTextFullAccess(HKEY_CURRENT_USER, accountKey, valueName).value_or("").empty())
      return true;
  return false;
}

std::optional<std::string> FindMailAccount(const char *valueName, const std::string &wanted) {
  return FindAccount([&](const std::string &accountKey) {
    return IsMailAccount(accountKey) && HoldsText(accountKey, valueName, wanted);
  });
}

// Copies the default value of one of the client's keys to the system's key. It is a command line and no file's path, so
// whether there is such a file doesn't matter.
void CopyDefaultValue(const std::string &from, const std::string &to) {
  const auto stored = ReadTextFullAccess(HKEY_LOCAL_MACHINE, from, nullptr);
  const std::string text = ReadPathFullAccess(HKEY_LOCAL_MACHINE, from, nullptr).text;
  if (stored && (!text.empty() || stored->empty()))
    WriteValuesFullAccess(HKEY_LOCAL_MACHINE, to, {{nullptr, text}});
}

} // namespace

int32_t OutlookExpressMail::SetupAccount(const MailAccountSpec &spec, std::string &key) {
  if (!TextsFit({spec.userId, spec.senderName, spec.accountName, spec.smtpServer, spec.popServer, spec.mailAddress,
                 AccountKey(key)}))
    return 0;
  const auto name = EnterAccount(key, spec.accountName, NntpServerValue);
  if (!name)
    return 0;
  EnsureDefaultMailAccount(*name);
  WriteValuesFullAccess(HKEY_CURRENT_USER, AccountKey(*name),
                        {{Pop3ServerValue, spec.popServer},
                         {Pop3UserValue, spec.userId},
                         {SmtpServerValue, spec.smtpServer},
                         {SmtpAddressValue, spec.mailAddress},
                         {SmtpSenderValue, spec.senderName},
                         {Pop3SkipValue, DWORD{0}},
                         {LeaveOnServerValue, DWORD{1}},
                         {Pop3PromptValue, DWORD{0}},
                         {ConnectionTypeValue, ConnectionType()}});

  const NamedValue plainText = {SendHtmlValue, DWORD{0}};
  WriteValuesFullAccess(HKEY_CURRENT_USER, MailSettingsKey(SettingsKey), {plainText});
  if (!IsVersion4())
    if (const std::string settings = DefaultIdentitySettings(); !settings.empty())
      WriteValuesFullAccess(HKEY_CURRENT_USER, MailSettingsKey(settings), {plainText});
  return 1;
}

int32_t OutlookExpressMail::SetDefaultClient() {
  const std::string clientKey = MailProgramKey(MailProgramName);
  RegistryKey key;
  if (!key.KeyExists(HKEY_LOCAL_MACHINE, clientKey.c_str()))
    return 0;
  for (const char *subkey : {MailtoIconKey, MailtoCommandKey})
    CopyDefaultValue(clientKey + ProtocolsKey + subkey, std::string(ClassesKey) + subkey);
  WriteValuesFullAccess(HKEY_LOCAL_MACHINE, MailProgramsKey, {{nullptr, MailProgramName}});
  return 1;
}

int32_t OutlookExpressMail::IsExistAccount(const MailAccountSpec &spec, std::string &key, std::string &message) {
  return AnswerFound(FindMailAccount(AccountNameValue, spec.accountName), Format(SameTitleQuestion, spec.accountName),
                     key, message);
}

int32_t OutlookExpressMail::IsExistUser(const MailAccountSpec &spec, std::string &key, std::string &message) {
  return AnswerFound(FindMailAccount(Pop3UserValue, spec.userId), Format(SameUserQuestion, spec.userId), key, message);
}
