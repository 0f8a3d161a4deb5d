#include "clients/communicator/communicator_profiles.h"

#include "clients/file_queries.h"
#include "clients/profile_prefs.h"
#include "clients/registry_key.h"
#include "stores/file_handle.h"

#include <algorithm>
#include <memory>
#include <string_view>

namespace communicator {

const InstalledProgram Program = {"NetscapeCommunicator (Netscape)",
                                  "SOFTWARE\\Netscape\\Netscape Navigator",
                                  "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\NETSCAPE.EXE",
                                  "4.",
                                  "SOFTWARE\\Netscape\\Conference",
                                  "CurrentVersion",
                                  "4.xx"};

namespace {

constexpr const char *BiffKey = "Software\\Netscape\\Netscape Navigator\\biff\\users";
constexpr const char *DefaultServer = "defaultServer";
constexpr const char *MailboxStatePath = "popstatePath";
constexpr const char *MailboxState = "\\mail\\popstate.dat";

// The profile's keys below HKEY_CURRENT_USER: the one that lists it, and the one of one of its POP servers.
std::string BiffPath(const std::string &profile) { return std::string(BiffKey) + '\\' + profile; }

std::string BiffServerPath(const std::string &profile, const std::string &server) {
  return BiffPath(profile) + "\\servers\\" + server;
}

// The directory of a listed profile, told by where the state of its POP mailbox is kept; empty if that can't be told.
std::string ListedDirectory(const std::string &profile) {
  std::string server;
  std::string state;
  if (!ReadText(HKEY_CURRENT_USER, BiffPath(profile), DefaultServer, server) ||
      !ReadText(HKEY_CURRENT_USER, BiffServerPath(profile, server), MailboxStatePath, state))
    return {};
  const size_t place = state.find(MailboxState);
  return place == std::string::npos ? std::string() : state.substr(0, place);
}

// What no folder's name holds, besides control characters.
constexpr std::string_view NotInNames = "\\/:*?\"<>|";
// Of the second bytes of double-byte characters, in every code page that has such.
constexpr BYTE LowestTrailByte = 0x40;

bool CanOpenPrefs(const std::string &directory) {
  return static_cast<bool>(OpenFileAlone(PrefsPath(directory).c_str(), GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS));
}

} // namespace

std::string InstallDirectory() {
  std::string path;
  ReadPath(HKEY_CURRENT_USER, MainKey, InstallDirectoryValue, path);
  return path;
}

std::string ProfilesFolder(const std::string &installDirectory) { return installDirectory + "\\Users"; }

std::string ProfileDirectory(const std::string &installDirectory, const std::string &profile) {
  return ProfilesFolder(installDirectory) + '\\' + profile;
}

std::string UserPath(const std::string &profile) { return std::string(Program.productKey) + "\\Users\\" + profile; }

bool FindProfile(const std::string &profile) {
  const ScopedKey profiles(HKEY_CURRENT_USER, BiffKey);
  std::string listed;
  for (DWORD index = 0; profiles && EnumSubkey(profiles.Get(), index, listed); ++index) {
    if (listed != profile)
      continue;
    const std::string directory = ListedDirectory(profile);
    if (!directory.empty() && CanOpenPrefs(directory))
      return true;
  }
  return false;
}

bool CanNameProfile(const std::string &name) {
  // Windows drops blanks and full stops at the end of a folder's name.
  if (name.empty() || name.back() == ' ' || name.back() == '.')
    return false;
  for (size_t place = 0; place < name.size(); ++place) {
    const auto byte = static_cast<BYTE>(name[place]);
    if (IsDBCSLeadByte(byte)) {
      if (++place == name.size() || static_cast<BYTE>(name[place]) < LowestTrailByte)
        return false;
    } else if (byte < ' ' || NotInNames.find(name[place]) != std::string_view::npos)
      return false;
  }
  return true;
}

void Revive(const std::string &profile) {
  RegistryKey key;
  key.DeleteValue(HKEY_LOCAL_MACHINE, UserPath(profile).c_str(), "Obsoleted");
}

void EnterMailbox(const std::string &profile, const std::string &directory, const std::string &popServer) {
  WriteValues(HKEY_CURRENT_USER, BiffServerPath(profile, popServer), {{MailboxStatePath, directory + MailboxState}});
  WriteValues(HKEY_CURRENT_USER, BiffPath(profile), {{DefaultServer, popServer}});
}

void EnterSender(const std::string &profile, const std::string &mailAddress, const std::string &senderName) {
  WriteValues(HKEY_LOCAL_MACHINE, UserPath(profile), {{"EmailAddr", mailAddress}, {"UserName", senderName}});
}

void EnterDirectory(const std::string &installDirectory, const std::string &profile) {
  const std::string directory = ProfileDirectory(installDirectory, profile);
  CreateDirectoryA(ProfilesFolder(installDirectory).c_str(), nullptr);
  CreateDirectoryA(directory.c_str(), nullptr);
  WriteValues(HKEY_LOCAL_MACHINE, UserPath(profile), {{"DirRoot", directory}});
}

bool ProfileFits(const std::string &profile, const std::string &directory) {
  return profile.size() < LineSize && PrefsPath(directory).size() < LineSize;
}

bool LinesFit(std::span<const PrefLine> lines) {
  return std::ranges::all_of(lines, [](const PrefLine &line) { return LineText(line).size() < LineSize; });
}

bool PrefsTake(const std::string &directory, const PrefsEdit &edit) {
  const std::string path = PrefsPath(directory);
  if (!PathExists(path.c_str()))
    return true;
  const auto prefs = std::make_unique<PrefsText>();
  LoadPrefsText(path.c_str(), *prefs);
  edit(*prefs);
  return prefs->whole || !prefs->read;
}

void EditPrefs(const std::string &directory, const PrefsEdit &edit, DWORD access) {
  const std::string path = PrefsPath(directory);
  const auto prefs = std::make_unique<PrefsText>();
  LoadPrefsText(path.c_str(), *prefs);
  edit(*prefs);
  SavePrefsText(path.c_str(), *prefs, access);
}

} // namespace communicator
