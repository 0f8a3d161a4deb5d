// Outlook Express and its account store in the registry, as the mail and the news adapter share them: the install test,
// the program's path and version, the numbering of accounts and the walk over them.
#pragma once

#include "win32/win32.h"

#include <cstdint>
#include <functional>
#include <string>

namespace outlook_express {

// Results are 1 or 0; the texts are empty on 0.
int32_t IsInstalled();
int32_t ReadName(std::string &name);
int32_t ReadProgramPath(std::string &path);
// The registry's version text with its own separators (as in "5,50,4522,1200"), or "4.00.0".
int32_t ReadVersion(std::string &version);

// Whether the version begins with a 4. An empty version, of a client that isn't installed, doesn't.
bool IsVersion4();
// The connection type of a new account: the client's own default for its version.
DWORD ConnectionType();

// The key of the account that `name` (eight hexadecimal digits) names, below HKEY_CURRENT_USER.
std::string AccountPath(const std::string &name);

// Enters a new account with the next number and its title, and answers its name.
std::string EnterAccount(const std::string &title);

// Calls `matches` with the path of each account's key, in the order of the registry, until it answers true. True if it
// did, and `name` is then that account's.
bool FindAccount(const std::function<bool(const std::string &path)> &matches, std::string &name);

// Whether HKEY_CURRENT_USER's account `path` has a text `valueName` that can be read.
bool HasText(const std::string &path, const char *valueName);

// Makes the account the default mail account unless that names an account already.
void EnsureDefaultMailAccount(const std::string &name);

// Below HKEY_CURRENT_USER, the key of the user's identity, in which version 5 keeps its settings. Empty if the default
// identity can't be read: its settings are then left alone, since a made-up identity would belong to nobody.
std::string IdentitySettingsPath();

// Whether a text fits the buffers of 512 bytes that the client's values pass through.
bool Fits(const std::string &text);

} // namespace outlook_express
