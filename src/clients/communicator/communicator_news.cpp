#include "clients/communicator/communicator_news.h"

#include "clients/communicator/communicator_profiles.h"
#include "clients/communicator/news_map.h"
#include "clients/format.h"
#include "clients/profile_prefs.h"

#include <array>
#include <cstring>

namespace {

constexpr const char *SameProfileLine = "プロファイル名：%s";
constexpr const char *ServerKey = "network.hosts.nntp_server";
constexpr const char *AddressKey = "mail.identity.useremail";
constexpr const char *SenderKey = "mail.identity.username";

PrefLine ServerLine(const NewsAccountSpec &spec) { return {ServerKey, QuotedPref(spec.Host())}; }

// The preferences at the end of the file.
std::array<PrefLine, 6> NewsPrefs(const NewsAccountSpec &spec) {
  return {{
      {"mail.html_compose", "false"},
      {"mail.pop_name", QuotedPref(spec.userId)},
      {"news.remember_password", "true"},
      {"browser.startup.homepage_override", "false"},
      {"offline.news.download.increments", "2"},
      {"offline.news.download.by_date", "true"},
  }};
}

bool LinesFit(const NewsAccountSpec &spec) {
  const PrefLine others[] = {
      ServerLine(spec), {AddressKey, QuotedPref(spec.mailAddress)}, {SenderKey, QuotedPref(spec.senderName)}};
  return communicator::LinesFit(NewsPrefs(spec)) && communicator::LinesFit(others);
}

} // namespace

void CommunicatorNews::KeepOrFill(PrefsText &prefs, const char *key, const std::string &value) {
  keptLine[0] = '\0';
  const bool taken = TakePrefLine(key, prefs, keptLine, sizeof keptLine) != 0;
  if (taken && std::strstr(keptLine, "\"\"") == nullptr) {
    AppendPrefLine(prefs, Format("user_pref(\"%s\n", std::string(keptLine)).c_str());
    return;
  }
  // A line that is too long to be kept stays where it is, and so does its value.
  if (!taken && HasPrefText(Format("user_pref(\"%s\"", std::string(key)).c_str(), prefs))
    return;
  AppendPref(prefs, {key, QuotedPref(value)});
}

void CommunicatorNews::EditNewsPrefs(PrefsText &prefs, const NewsAccountSpec &spec) {
  // The line that names the server goes as well, under whatever key it stands. An empty host names none.
  const std::string server = QuotedPref(spec.Host());
  for (const char *needle :
       {"mail.html_compose", "offline.news.download.increments", "offline.news.download.by_date", "mail.pop_name",
        server.c_str(), "mail.html_compose", "news.remember_password", "browser.startup.homepage_override"})
    if (needle != server || !spec.Host().empty())
      RemovePrefLine(needle, prefs);

  if (spec.IsServerOn()) {
    const std::string line = LineText(ServerLine(spec));
    const std::string otherServer = Format("user_pref(\"%s\"", std::string(ServerKey));
    if (!InsertPrefLine(otherServer.c_str(), prefs, line.c_str()))
      AppendPrefLine(prefs, line.c_str());
  }
  KeepOrFill(prefs, AddressKey, spec.mailAddress);
  KeepOrFill(prefs, SenderKey, spec.senderName);
  AppendPrefs(prefs, NewsPrefs(spec));
}

void CommunicatorNews::WriteNewsPrefs(const std::string &directory, const NewsAccountSpec &spec) {
  const auto edit = [&](PrefsText &prefs) {
    EditNewsPrefs(prefs, spec);
    if (spec.IsServerOn())
      communicator::NewsMap(directory).Enter(spec.Host());
  };
  communicator::EditPrefs(directory, edit, GENERIC_WRITE);
  MakeMailDirectory(directory);
}

int32_t CommunicatorNews::IsInstall() { return IsInstalled(communicator::Program); }

int32_t CommunicatorNews::SetupAccount(const NewsAccountSpec &spec, std::string &key) {
  const std::string installDirectory = communicator::InstallDirectory();
  if (installDirectory.empty())
    return 0;
  const std::string &profile = key.empty() ? spec.accountName : key;
  const std::string directory = communicator::ProfileDirectory(installDirectory, profile);
  if ((key.empty() && !communicator::CanNameProfile(profile)) || !communicator::ProfileFits(profile, directory) ||
      !LinesFit(spec) || (spec.IsServerOn() && !communicator::NewsMap(directory).Takes(spec.Host())) ||
      !communicator::PrefsTake(directory, [&](PrefsText &prefs) { EditNewsPrefs(prefs, spec); }))
    return 0;

  if (key.empty()) {
    communicator::Revive(profile);
    communicator::EnterSender(profile, spec.mailAddress, spec.senderName);
  }
  communicator::EnterDirectory(installDirectory, profile);
  WriteNewsPrefs(directory, spec);
  return 1;
}

int32_t CommunicatorNews::SetDefaultClient() { return 1; }

int32_t CommunicatorNews::IsExistAccount(const NewsAccountSpec &spec, std::string &key, std::string &message) {
  if (!communicator::FindProfile(spec.accountName))
    return 0;
  key = spec.accountName;
  message = Format(SameProfileLine, spec.accountName);
  return 1;
}

int32_t CommunicatorNews::GetClientName(std::string &name) { return ReadName(communicator::Program, name); }

int32_t CommunicatorNews::GetClientPath(std::string &path) { return ReadProgramPath(communicator::Program, path); }

int32_t CommunicatorNews::GetClientVersion(std::string &version) { return ReadVersion(communicator::Program, version); }

int32_t CommunicatorNews::GetClientType() { return ClientCommunicator; }
