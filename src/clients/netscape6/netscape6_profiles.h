// The profiles of Netscape 6, as the mail and the news adapter share them. A profile is a name in the profile registry
// and a directory below the user's application data; the full path of that is the adapters' key.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace netscape6 {

// The user's application data folder, and the file of the profile registry in it. 0 if there is no such folder.
int32_t GetAppDataPath(std::string &path);
int32_t GetRegistryDatPath(std::string &path);

// The directory of a registered profile whose prefs.js can be read.
std::optional<std::string> FindProfile(const std::string &name);

// Makes a profile of that name, unless `key` is the directory of one already; `key` is then the new one's directory.
// The profile gets a first prefs.js in the next free directory of its name, is registered, and becomes the current one.
//
// False, with nothing changed, if the path of prefs.js has more than 255 bytes, the registry can't be read or isn't
// sound, the name is empty, all 65,535 directories of the name are taken, or the free one has a prefs.js that can't be
// read, and so may be somebody's. False as well if prefs.js can't be made or the registry can't be written; the folders
// made so far stay.
bool EnsureProfile(const std::string &name, std::string &key);

} // namespace netscape6
