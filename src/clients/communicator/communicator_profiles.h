// Netscape Communicator 4.x and its profiles, as the mail and the news adapter share them: the install test, the
// program's path and version, the registry keys of a profile and its directory.
#pragma once

#include "clients/installed_program.h"
#include "clients/pref_lines.h"
#include "win32/win32.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace communicator {

// The version of its conference program, as in "4.75 [ja]", stands for the client's.
extern const InstalledProgram Program;

// Where HKEY_CURRENT_USER keeps the install directory.
inline constexpr const char *MainKey = "Software\\Netscape\\Netscape Navigator\\Main";
inline constexpr const char *InstallDirectoryValue = "Install Directory";
// Communicator's install directory; an empty one counts as one that can't be read.
std::string InstallDirectory();
// Below the install directory, the folder of all profiles and the directory of one.
std::string ProfilesFolder(const std::string &installDirectory);
std::string ProfileDirectory(const std::string &installDirectory, const std::string &profile);

// The profile's key below HKEY_LOCAL_MACHINE.
std::string UserPath(const std::string &profile);

// Whether a profile of that name is listed and its prefs.js can be opened. Leaves an empty prefs.js in a directory that
// has none.
bool FindProfile(const std::string &profile);

// Whether a new profile can have that name, which becomes a folder's and a registry key's. Characters count: the second
// byte of a double-byte one may be a backslash's, and an incomplete one at the end would take the backslash behind it.
bool CanNameProfile(const std::string &name);

// A profile of that name is no longer obsolete, should an older one have been.
void Revive(const std::string &profile);
// Lists the profile, with the server where Communicator will look for new mail.
void EnterMailbox(const std::string &profile, const std::string &directory, const std::string &popServer);
// Enters what the profile's user is called.
void EnterSender(const std::string &profile, const std::string &mailAddress, const std::string &senderName);
// Makes the folder of all profiles and the profile's directory, and enters that as the profile's.
void EnterDirectory(const std::string &installDirectory, const std::string &profile);

// The lines, paths and names of a profile pass through buffers of 256 bytes.
constexpr size_t LineSize = 256;
// Whether the profile's name and the path of its prefs.js fit their buffers.
bool ProfileFits(const std::string &profile, const std::string &directory);
bool LinesFit(std::span<const PrefLine> lines);

// An edit of a prefs.js. It is made twice, once to see whether the file has room.
using PrefsEdit = std::function<void(PrefsText &prefs)>;

// Whether the directory's prefs.js, if there is one, has room for the edit. A file that can't be read counts as having
// room: it will be left as it is.
bool PrefsTake(const std::string &directory, const PrefsEdit &edit);

// Edits the directory's prefs.js.
void EditPrefs(const std::string &directory, const PrefsEdit &edit, DWORD access = GENERIC_READ | GENERIC_WRITE);

} // namespace communicator
