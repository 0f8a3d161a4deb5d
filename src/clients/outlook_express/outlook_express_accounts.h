// Outlook Express and its account store in the registry, as the mail and the news adapter share them: the numbering of
// accounts, the walk over them, and the client's settings that every account comes with.
#pragma once

#include "clients/installed_program.h"
#include "clients/registry_key.h"

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

namespace outlook_express {

// Its version text has separators of its own, as in "5,50,4522,1200".
extern const InstalledProgram Program;

// Whether the version begins with a 4. An empty version, of a client that isn't installed, doesn't.
bool IsVersion4();
// Connection types of an account: a dial-up connection, and the client's own default in each version.
constexpr DWORD DialUpConnection = 2;
constexpr DWORD ConnectionOfVersion4 = 1;
constexpr DWORD ConnectionOfVersion5 = 3;
// The connection type of an account that is written: the client's own default for its version.
DWORD ConnectionType();

// The key of all accounts, below HKEY_CURRENT_USER.
inline constexpr const char *AccountsKey = "Software\\Microsoft\\Internet Account Manager\\Accounts";
// The key of the account that `name` (eight hexadecimal digits) names, below HKEY_CURRENT_USER.
std::string AccountPath(const std::string &name);

// Enters a new account with the next number and its title, and answers its name.
std::string EnterAccount(const std::string &title);

// Calls `matches` with the path of each account's key, in the order of the registry, until it answers true. True if it
// did, and `name` is then that account's.
bool FindAccount(const std::function<bool(const std::string &path)> &matches, std::string &name);

// Whether the key of an account has a value that can be read as a text, and whether that is the text given.
bool HasText(const std::string &path, const char *valueName);
bool HoldsText(const std::string &path, const char *valueName, const std::string &text);

// Makes the account the default mail account unless that names an account already.
void EnsureDefaultMailAccount(const std::string &name);

// Below HKEY_CURRENT_USER, the key of the user's identity, in which version 5 keeps its settings. Empty if the default
// identity can't be read or is empty: its settings are then left alone, since a made-up identity would belong to
// nobody.
std::string IdentitySettingsPath();

// Whether the texts fit the buffers of 512 bytes that the client's values pass through.
bool TextsFit(std::initializer_list<std::string_view> texts);

} // namespace outlook_express
