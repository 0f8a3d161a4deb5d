// Netscape Communicator 4.x and its profiles, as the mail and the news adapter share them: the install test, the
// program's path and version, the registry keys of a profile and its directory.
#pragma once

#include "clients/pref_lines.h"
#include "win32/win32.h"

#include <cstdint>
#include <string>

namespace communicator {

// Results are 1 or 0; the texts are empty on 0.
int32_t IsInstalled();
int32_t ReadName(std::string &name);
int32_t ReadProgramPath(std::string &path);
// The registry's version text (as in "4.75"), or "4.xx".
int32_t ReadVersion(std::string &version);

// Where HKEY_CURRENT_USER keeps the install directory.
extern const char *const MainKey;
// Communicator's install directory, empty if it can't be read.
std::string InstallDirectory();
// A profile's directory below the install directory.
std::string ProfileDirectory(const std::string &installDirectory, const std::string &profile);
std::string PrefsPath(const std::string &directory);

// The profile's key below HKEY_LOCAL_MACHINE.
std::string UserPath(const std::string &profile);
// The profile's keys below HKEY_CURRENT_USER: the one that lists it, and the one of one of its POP servers.
std::string BiffPath(const std::string &profile);
std::string BiffServerPath(const std::string &profile, const std::string &server);

// Whether a profile of that name is listed and its prefs.js can be opened. Leaves an empty prefs.js in a directory that
// has none.
bool FindProfile(const std::string &profile);

// Whether the profile's name and the path of its prefs.js fit their buffers of 256 bytes.
bool ProfileFits(const std::string &profile, const std::string &directory);

// Whether the lines fit their buffers and the directory's prefs.js, if there is one, has room for them. A file that
// can't be read counts as having room: it will be left as it is.
bool PrefsTake(const std::string &directory, std::span<const PrefLine> lines);

// Replaces preferences in the directory's prefs.js.
void WritePrefs(const std::string &directory, std::span<const PrefLine> lines);

} // namespace communicator
