// Netscape 6 and its profiles, as the mail and the news adapter share them. A profile is a name in the profile registry
// and a directory below the user's application data, which its adapters' keys are the full paths of.
#pragma once

#include "clients/installed_program.h"

#include <cstdint>
#include <string>

namespace netscape6 {

extern const InstalledProgram Program;

// The user's application data folder, and the file of the profile registry in it. 0 if there is no such folder.
int32_t GetAppDataPath(std::string &path);
int32_t GetRegistryDatPath(std::string &path);

// Looks for a registered profile whose prefs.js can be read. 1 with its directory in `key` and the question whether it
// may be overwritten in `message`; 0 with an empty `key` and `message` as it was.
int32_t FindProfile(const std::string &name, std::string &key, std::string &message);

// Makes a profile, with a first prefs.js in the next free directory below its name's, registers it and makes it the
// current one. 1 with the directory in `key`. 0 with `key` as it was, and nothing changed, if the registry can't be
// read or isn't sound, the name is empty, a path would be too long, all 65,535 directories of the name are taken, or
// the free one has a prefs.js that can't be read, and so is somebody's; 0 as well if prefs.js can't be made or the
// registry can't be written, and the folders made so far then stay.
int32_t MakeProfile(const std::string &name, std::string &key);

// Whether the path of the directory's prefs.js fits its buffer of 256 bytes.
bool DirectoryFits(const std::string &directory);

} // namespace netscape6
