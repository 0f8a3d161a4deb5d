#include "clients/communicator/communicator_profiles.h"

#include "clients/communicator/communicator_layout.h"
#include "clients/profile_prefs.h"
#include "clients/registry_key.h"
#include "stores/file_handle.h"

#include <algorithm>
#include <string_view>

namespace communicator {

namespace {

// The directory of a listed profile, told by where the state of its POP mailbox is kept; empty if that can't be told.
std::string ListedDirectory(const std::string &profile) {
  const auto server = ReadTextFullAccess(HKEY_CURRENT_USER, BiffUserKey(profile), DefaultServerValue);
  const auto state =
      server ? ReadTextFullAccess(HKEY_CURRENT_USER, BiffServerKey(profile, *server), MailboxStateValue) : std::nullopt;
  const size_t length = state ? state->find(MailboxStatePath("")) : std::string::npos;
  return length == std::string::npos ? "" : state->substr(0, length);
}

bool CanOpenPrefs(const std::string &directory) {
  return static_cast<bool>(OpenFileAlone(PrefsPath(directory).c_str(), GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS));
}

// What no folder's name holds, besides control characters.
constexpr std::string_view NotInNames = "\\/:*?\"<>|";
// Of the second bytes of double-byte characters, in every code page that has such.
constexpr BYTE LowestTrailByte = 0x40;

// Whether a new profile can have that name, which becomes a folder's and a registry key's. Characters count: the second
// byte of a double-byte one may be a backslash's, and an incomplete one at the end would take the backslash behind it.
bool CanNameProfile(const std::string &name) {
  // Windows drops blanks and full stops at the end of a folder's name.
  if (name.empty() || name.back() == ' ' || name.back() == '.')
    return false;
  for (size_t index = 0; index < name.size(); ++index) {
    const auto byte = static_cast<BYTE>(name[index]);
    if (IsDBCSLeadByte(byte)) {
      if (++index == name.size() || static_cast<BYTE>(name[index]) < LowestTrailByte)
        return false;
    } else if (byte < ' ' || NotInNames.find(name[index]) != std::string_view::npos)
      return false;
  }
  return true;
}

} // namespace

std::optional<Profile> ChooseProfile(const std::string &key, const std::string &accountName) {
  const std::string installDirectory = ReadPathFullAccess(HKEY_CURRENT_USER, MainKey, InstallDirectoryValue).text;
  const bool isNew = key.empty();
  const std::string &name = isNew ? accountName : key;
  Profile profile = {name, ProfilesFolder(installDirectory), ProfileDirectory(installDirectory, name), isNew};
  if (installDirectory.empty() || (isNew && !CanNameProfile(name)) || name.size() >= LineSize ||
      !PrefsPathFits(profile.directory))
    return std::nullopt;
  return profile;
}

std::optional<std::string> FindProfile(const std::string &name) {
  const std::vector<std::string> listed = SubkeyNames(HKEY_CURRENT_USER, BiffUsersKey);
  if (std::ranges::find(listed, name) == listed.end())
    return std::nullopt;
  const std::string directory = ListedDirectory(name);
  return !directory.empty() && CanOpenPrefs(directory) ? std::optional(name) : std::nullopt;
}

void ClearObsolete(const std::string &profile) {
  RegistryKey key;
  key.DeleteValue(HKEY_LOCAL_MACHINE, UserKey(profile).c_str(), ObsoleteValue);
}

void EnterMailbox(const Profile &profile, const std::string &popServer) {
  WriteValuesFullAccess(HKEY_CURRENT_USER, BiffServerKey(profile.name, popServer),
                        {{MailboxStateValue, MailboxStatePath(profile.directory)}});
  WriteValuesFullAccess(HKEY_CURRENT_USER, BiffUserKey(profile.name), {{DefaultServerValue, popServer}});
}

void EnterSender(const std::string &profile, const std::string &mailAddress, const std::string &senderName) {
  WriteValuesFullAccess(HKEY_LOCAL_MACHINE, UserKey(profile), {{AddressValue, mailAddress}, {SenderValue, senderName}});
}

void EnterDirectory(const Profile &profile) {
  CreateDirectoryA(profile.folder.c_str(), nullptr);
  CreateDirectoryA(profile.directory.c_str(), nullptr);
  WriteValuesFullAccess(HKEY_LOCAL_MACHINE, UserKey(profile.name), {{DirectoryValue, profile.directory}});
}

bool LinesFit(std::span<const PrefLine> lines) {
  return std::ranges::all_of(lines, [](const PrefLine &line) { return LineText(line).size() < LineSize; });
}

} // namespace communicator
