#include "clients/communicator/communicator_mail.h"

#include "clients/communicator/communicator_profiles.h"
#include "clients/profile_prefs.h"
#include "clients/registry_key.h"

#include <array>
#include <string_view>

namespace {

constexpr const char *ClientName = "Netscape Messenger";

// The preferences of an account, in the order in which their old lines go and the new ones are written.
std::array<PrefLine, 9> AccountPrefs(const MailAccountSpec &spec) {
  return {{
      {"mail.identity.useremail", QuotedPref(spec.mailAddress)},
      {"mail.identity.username", QuotedPref(spec.senderName)},
      {"mail.pop_name", QuotedPref(spec.userId)},
      {"network.hosts.pop_server", QuotedPref(spec.popServer)},
      {"network.hosts.smtp_server", QuotedPref(spec.smtpServer)},
      {"mail.leave_on_server", "true"},
      {"mail.html_compose", "false"},
      {"mail.remember_password", "true"},
      {"browser.startup.homepage_override", "false"},
  }};
}

// All old lines go before the first new one is written.
communicator::PrefsEdit ReplaceAll(std::span<const PrefLine> lines) {
  return [lines](PrefsText &prefs) {
    for (const PrefLine &line : lines)
      RemovePrefLine(line.key.c_str(), prefs);
    AppendPrefs(prefs, lines);
  };
}

// The client's entry in the system's list of mail programs, in the order of writing. The path is the same whatever the
// install directory is.
struct ClientEntry {
  const char *below; // the client's own key
  const char *valueName;
  DWORD type;
  std::string_view data;
};
#define MESSENGER_PROGRAM "C:\\Program Files\\Netscape\\Communicator\\Program\\netscape.exe"
constexpr ClientEntry ClientEntries[] = {
    {"\\Protocols\\mailto\\shell\\open\\command", nullptr, REG_SZ, MESSENGER_PROGRAM " %1"},
    {"\\shell\\open\\command", nullptr, REG_SZ, MESSENGER_PROGRAM " %1"},
    {"\\Protocols\\mailto\\DefaultIcon", nullptr, REG_SZ, MESSENGER_PROGRAM ",-11"},
    {"\\Protocols\\mailto", nullptr, REG_SZ, "URL:MailTo Protocol"},
    {"\\Protocols\\mailto", "URL Protocol", REG_SZ, ""},
    {"\\Protocols\\mailto", "EditFlags", REG_BINARY, {"\x02\0\0\0", 4}},
    {"", nullptr, REG_SZ, ClientName},
};
#undef MESSENGER_PROGRAM

} // namespace

int32_t CommunicatorMail::IsInstall() { return IsInstalled(communicator::Program); }

int32_t CommunicatorMail::SetupAccount(const MailAccountSpec &spec, std::string &key) {
  const std::string installDirectory = communicator::InstallDirectory();
  if (installDirectory.empty())
    return 0;
  const std::string &profile = key.empty() ? spec.accountName : key;
  const std::string directory = communicator::ProfileDirectory(installDirectory, profile);
  const auto prefs = AccountPrefs(spec);
  if ((key.empty() && !communicator::CanNameProfile(profile)) || !communicator::ProfileFits(profile, directory) ||
      !communicator::LinesFit(prefs) || !communicator::PrefsTake(directory, ReplaceAll(prefs)))
    return 0;

  if (key.empty()) {
    communicator::Revive(profile);
    communicator::EnterMailbox(profile, directory, spec.popServer);
  }
  communicator::EnterSender(profile, spec.mailAddress, spec.senderName);
  communicator::EnterDirectory(installDirectory, profile);
  communicator::EditPrefs(directory, ReplaceAll(prefs));
  MakeMailDirectory(directory);
  return 1;
}

int32_t CommunicatorMail::SetDefaultClient() {
  const std::string clientKey = std::string(MailProgramsKey) + '\\' + ClientName;
  RegistryKey key;
  if (!key.KeyExists(HKEY_LOCAL_MACHINE, clientKey.c_str())) {
    for (const ClientEntry &entry : ClientEntries)
      key.WriteValue(HKEY_LOCAL_MACHINE, (clientKey + entry.below).c_str(), entry.valueName, entry.type,
                     entry.data.data(), static_cast<DWORD>(entry.data.size()));
    if (!key.KeyExists(HKEY_LOCAL_MACHINE, clientKey.c_str()))
      return 0;
  }
  WriteValues(HKEY_LOCAL_MACHINE, MailProgramsKey, {{nullptr, ClientName}});
  return 1;
}

int32_t CommunicatorMail::IsExistAccount(const MailAccountSpec &spec, std::string &key, std::string &message) {
  if (!communicator::FindProfile(spec.accountName))
    return 0;
  key = spec.accountName;
  message = SameProfileQuestion(spec.accountName);
  return 1;
}

int32_t CommunicatorMail::IsExistUser(const MailAccountSpec &, std::string &, std::string &) { return 0; }

int32_t CommunicatorMail::IsExistSecondUser(const MailAccountSpec &, std::string &, std::string &) { return 0; }

int32_t CommunicatorMail::GetClientName(std::string &name) { return ReadName(communicator::Program, name); }

int32_t CommunicatorMail::GetClientPath(std::string &path) { return ReadProgramPath(communicator::Program, path); }

int32_t CommunicatorMail::GetClientVersion(std::string &version) { return ReadVersion(communicator::Program, version); }

int32_t CommunicatorMail::GetClientType() { return ClientCommunicator; }

int32_t CommunicatorMail::SetStartPage(const std::string &directory, const std::string &url) {
  const PrefLine line = {"browser.startup.homepage", QuotedPref(url)};
  if (communicator::ProfileFits({}, directory) && communicator::LinesFit({&line, 1}))
    communicator::EditPrefs(directory, [&](PrefsText &prefs) { ReplacePref(prefs, line); });
  return 1;
}
