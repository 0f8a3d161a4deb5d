// The profiles of Netscape Communicator 4.x in the registry and on disk, as the mail and the news adapter share them.
#pragma once

#include "clients/pref_lines.h"

#include <optional>
#include <span>
#include <string>

namespace communicator {

// A profile that an account goes into.
struct Profile {
  std::string name;
  std::string folder; // of all profiles
  std::string directory;
  bool isNew;
};
// The profile that `key` names, or else a new one with the account's title as its name. Nothing if Communicator's
// install directory can't be read or is empty, a new profile can't have that name, or its name or the path of its
// prefs.js has more than 255 bytes.
std::optional<Profile> ChooseProfile(const std::string &key, const std::string &accountName);

// The name of a profile that is listed and whose prefs.js can be opened. Leaves an empty prefs.js in a directory that
// has none.
std::optional<std::string> FindProfile(const std::string &name);

// Removes the mark that a profile of that name is obsolete, should an older one have it.
void ClearObsolete(const std::string &profile);
// Lists the profile, with the server where Communicator will look for new mail.
void EnterMailbox(const Profile &profile, const std::string &popServer);
// Enters the mail address and the name of the profile's user.
void EnterSender(const std::string &profile, const std::string &mailAddress, const std::string &senderName);
// Makes the folder of all profiles and the profile's directory, and enters that as the profile's.
void EnterDirectory(const Profile &profile);

// The buffers that a profile's lines, paths and name pass through.
constexpr size_t LineSize = 256;
bool LinesFit(std::span<const PrefLine> lines);

} // namespace communicator
