#include "clients/communicator/communicator_mail.h"

#include "clients/communicator/profile_store.h"
#include "clients/registry.h"
#include "clients/text.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

constexpr const char *SameProfileQuestion = "同名のプロファイルが存在します。\nプロファイル名：%sを上書きしますか？";
constexpr const char *ClientKey = "SOFTWARE\\Clients\\Mail\\Netscape Messenger";

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

std::string MailboxStatePath(const std::string &directory) { return directory + "\\mail\\popstate.dat"; }

// Whether every registry text of the profile fits its buffer. The values that go into preference lines as well are
// bounded by those.
bool RegistryTextsFit(const std::string &profile, const std::string &directory, const std::string &popServer) {
  const std::string texts[] = {communicator::UserPath(profile), communicator::BiffServerPath(profile, popServer),
                               MailboxStatePath(directory)};
  return std::ranges::all_of(texts, [](const std::string &text) { return text.size() < RegistryTextSize; });
}

// Enters a new profile: it is no longer obsolete, and Communicator looks for its new mail.
void EnterProfile(const std::string &profile, const std::string &directory, const std::string &popServer) {
  RegistryKey key;
  key.DeleteValue(HKEY_LOCAL_MACHINE, communicator::UserPath(profile).c_str(), "Obsoleted");
  WriteValues(HKEY_CURRENT_USER, communicator::BiffServerPath(profile, popServer),
              {{"popstatePath", MailboxStatePath(directory)}});
  WriteValues(HKEY_CURRENT_USER, communicator::BiffPath(profile), {{"defaultServer", popServer}});
}

void WriteProfilePrefs(const std::string &directory, const MailAccountSpec &spec) {
  communicator::WritePrefs(directory, AccountPrefs(spec));
  CreateDirectoryA((directory + "\\mail").c_str(), nullptr);
}

// The client's entry in the system's list of mail programs, in the order of writing. The path is the same whatever the
// install directory is.
struct ClientEntry {
  const char *key;
  const char *valueName;
  DWORD type;
  std::string_view data;
};
#define MESSENGER_KEY "SOFTWARE\\Clients\\Mail\\Netscape Messenger"
#define MESSENGER_PROGRAM "C:\\Program Files\\Netscape\\Communicator\\Program\\netscape.exe"
constexpr ClientEntry ClientEntries[] = {
    {MESSENGER_KEY "\\Protocols\\mailto\\shell\\open\\command", nullptr, REG_SZ, MESSENGER_PROGRAM " %1"},
    {MESSENGER_KEY "\\shell\\open\\command", nullptr, REG_SZ, MESSENGER_PROGRAM " %1"},
    {MESSENGER_KEY "\\Protocols\\mailto\\DefaultIcon", nullptr, REG_SZ, MESSENGER_PROGRAM ",-11"},
    {MESSENGER_KEY "\\Protocols\\mailto", nullptr, REG_SZ, "URL:MailTo Protocol"},
    {MESSENGER_KEY "\\Protocols\\mailto", "URL Protocol", REG_SZ, ""},
    {MESSENGER_KEY "\\Protocols\\mailto", "EditFlags", REG_BINARY, {"\x02\0\0\0", 4}},
    {MESSENGER_KEY, nullptr, REG_SZ, "Netscape Messenger"},
};
#undef MESSENGER_PROGRAM
#undef MESSENGER_KEY

} // namespace

int32_t CommunicatorMail::IsInstall() { return communicator::IsInstalled(); }

int32_t CommunicatorMail::SetupAccount(const MailAccountSpec &spec, const std::string &key) {
  const std::string installDirectory = communicator::InstallDirectory();
  if (installDirectory.empty())
    return 0;
  const std::string &profile = key.empty() ? spec.accountName : key;
  const std::string directory = communicator::ProfileDirectory(installDirectory, profile);
  if (!communicator::ProfileFits(profile, directory) || !RegistryTextsFit(profile, directory, spec.popServer) ||
      !communicator::PrefsTake(directory, AccountPrefs(spec)))
    return 0;

  if (key.empty())
    EnterProfile(profile, directory, spec.popServer);
  const std::string user = communicator::UserPath(profile);
  WriteValues(HKEY_LOCAL_MACHINE, user, {{"EmailAddr", spec.mailAddress}, {"UserName", spec.senderName}});
  CreateDirectoryA((installDirectory + "\\Users").c_str(), nullptr);
  CreateDirectoryA(directory.c_str(), nullptr);
  WriteValues(HKEY_LOCAL_MACHINE, user, {{"DirRoot", directory}});
  WriteProfilePrefs(directory, spec);
  return 1;
}

int32_t CommunicatorMail::SetDefaultClient() {
  RegistryKey key;
  if (!key.KeyExists(HKEY_LOCAL_MACHINE, ClientKey)) {
    for (const ClientEntry &entry : ClientEntries)
      key.WriteValue(HKEY_LOCAL_MACHINE, entry.key, entry.valueName, entry.type, entry.data.data(),
                     static_cast<DWORD>(entry.data.size()));
    if (!key.KeyExists(HKEY_LOCAL_MACHINE, ClientKey))
      return 0;
  }
  WriteValues(HKEY_LOCAL_MACHINE, "SOFTWARE\\Clients\\Mail", {{nullptr, "Netscape Messenger"}});
  return 1;
}

int32_t CommunicatorMail::IsExistAccount(const MailAccountSpec &spec, std::string &key, std::string &message) {
  if (!communicator::FindProfile(spec.accountName))
    return 0;
  key = spec.accountName;
  message = Format(SameProfileQuestion, spec.accountName);
  return 1;
}

int32_t CommunicatorMail::IsExistUser(const MailAccountSpec &, std::string &, std::string &) { return 0; }

int32_t CommunicatorMail::IsExistSecondUser(const MailAccountSpec &, std::string &, std::string &) { return 0; }

int32_t CommunicatorMail::GetClientName(std::string &name) { return communicator::ReadName(name); }

int32_t CommunicatorMail::GetClientPath(std::string &path) { return communicator::ReadProgramPath(path); }

int32_t CommunicatorMail::GetClientVersion(std::string &version) { return communicator::ReadVersion(version); }

int32_t CommunicatorMail::GetClientType() { return ClientCommunicator; }

int32_t CommunicatorMail::SetStartPage(const std::string &directory, const std::string &url) {
  const PrefLine line[] = {{"browser.startup.homepage", QuotedPref(url)}};
  if (communicator::ProfileFits({}, directory) && PrefLinesFit(line))
    communicator::WritePrefs(directory, line);
  return 1;
}
