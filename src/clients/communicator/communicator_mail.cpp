#include "clients/communicator/communicator_mail.h"

#include "clients/communicator/communicator_profiles.h"
#include "clients/found_account.h"
#include "clients/profile_prefs.h"
#include "clients/registry_key.h"
#include "clients/windows_layout.h"

#include <array>
#include <string_view>

using namespace communicator;

namespace {

// The preferences of an account, in the order in which their old lines go and the new ones are written.
std::array<PrefLine, 9> AccountPrefs(const MailAccountSpec &spec) {
  return {{
      {AddressPref, QuotedPref(spec.mailAddress)},
      {SenderPref, QuotedPref(spec.senderName)},
      {UserPref, QuotedPref(spec.userId)},
      {PopServerPref, QuotedPref(spec.popServer)},
      {SmtpServerPref, QuotedPref(spec.smtpServer)},
      {LeaveOnServerPref, "true"},
      {ComposeHtmlPref, "false"},
      {RememberMailPasswordPref, "true"},
      {StartPageOverridePref, "false"},
  }};
}

// The client's entry in the system's list of mail programs, in the order of writing. The path is the same whatever the
// install directory is.
struct ClientEntry {
  const char *branch; // of the client's own key
  const char *subkey; // below that
  const char *valueName;
  DWORD type;
  std::string_view data;
};
#define MESSENGER_PROGRAM "C:\\Program Files\\Netscape\\Communicator\\Program\\netscape.exe"
constexpr ClientEntry ClientEntries[] = {
    {ProtocolsKey, MailtoCommandKey, nullptr, REG_SZ, MESSENGER_PROGRAM " %1"},
    {"", OpenCommandKey, nullptr, REG_SZ, MESSENGER_PROGRAM " %1"},
    {ProtocolsKey, MailtoIconKey, nullptr, REG_SZ, MESSENGER_PROGRAM ",-11"},
    {ProtocolsKey, MailtoKey, nullptr, REG_SZ, "URL:MailTo Protocol"},
    {ProtocolsKey, MailtoKey, UrlProtocolValue, REG_SZ, ""},
    {ProtocolsKey, MailtoKey, EditFlagsValue, REG_BINARY, {"\x02\0\0\0", 4}},
    {"", "", nullptr, REG_SZ, MailProgramName},
};
#undef MESSENGER_PROGRAM

} // namespace

int32_t CommunicatorMail::SetupAccount(const MailAccountSpec &spec, std::string &key) {
  const auto profile = ChooseProfile(key, spec.accountName);
  const auto lines = AccountPrefs(spec);
  if (!profile || !LinesFit(lines))
    return 0;
  ProfilePrefs prefs(profile->directory);
  for (const PrefLine &line : lines)
    RemovePrefLine(line.key.c_str(), prefs.Text());
  AppendPrefs(prefs.Text(), lines);
  if (!prefs.HasRoom())
    return 0;

  if (profile->isNew) {
    ClearObsolete(profile->name);
    EnterMailbox(*profile, spec.popServer);
  }
  EnterSender(profile->name, spec.mailAddress, spec.senderName);
  EnterDirectory(*profile);
  prefs.Save();
  MakeMailFolder(profile->directory);
  return 1;
}

int32_t CommunicatorMail::SetDefaultClient() {
  const std::string clientKey = MailProgramKey(MailProgramName);
  RegistryKey key;
  if (!key.KeyExists(HKEY_LOCAL_MACHINE, clientKey.c_str())) {
    for (const ClientEntry &entry : ClientEntries)
      key.WriteValue(HKEY_LOCAL_MACHINE, (clientKey + entry.branch + entry.subkey).c_str(), entry.valueName, entry.type,
                     entry.data.data(), static_cast<DWORD>(entry.data.size()));
    if (!key.KeyExists(HKEY_LOCAL_MACHINE, clientKey.c_str()))
      return 0;
  }
  WriteValuesFullAccess(HKEY_LOCAL_MACHINE, MailProgramsKey, {{nullptr, MailProgramName}});
  return 1;
}

int32_t CommunicatorMail::IsExistAccount(const MailAccountSpec &spec, std::string &key, std::string &message) {
  return AnswerFound(FindProfile(spec.accountName), SameProfileQuestion(spec.accountName), key, message);
}

int32_t CommunicatorMail::SetStartPage(const std::string &directory, const std::string &url) {
  const PrefLine line = {StartPagePref, QuotedPref(url)};
  if (PrefsPathFits(directory) && LinesFit({&line, 1})) {
    ProfilePrefs prefs(directory);
    ReplacePref(prefs.Text(), line);
    prefs.Save();
  }
  return 1;
}
