// The accounts of Outlook Express in the registry, as the mail and the news adapter share them: their numbers, the
// search for one, and the client's settings that every account comes with.
#pragma once

#include "win32/win32.h"

#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace outlook_express {

// Whether the version begins with a 4. An empty version, of a client that isn't installed, doesn't.
bool IsVersion4();
// The connection type of an account that is written: the client's own default for its version.
DWORD ConnectionType();

// The name of the account to write: `key`, or that of a new account, which is entered with the next number and its
// title. Nothing if `key` is an account with a server of the other kind.
std::optional<std::string> EnterAccount(const std::string &key, const std::string &title, const char *otherServerValue);

// The name of the first account, in the order of the registry, whose key `matches` says yes to.
std::optional<std::string> FindAccount(const std::function<bool(const std::string &accountKey)> &matches);

// Whether a value of an account is that text.
bool HoldsText(const std::string &accountKey, const char *valueName, const std::string &text);

// Makes the account the default mail account unless that names an account already.
void EnsureDefaultMailAccount(const std::string &name);

// The settings of the user's default identity. Empty if it can't be read or is empty: settings of a made-up
// identity would never be read.
std::string DefaultIdentitySettings();

// Whether the texts fit the buffers of 512 bytes that the client's values pass through.
bool TextsFit(std::initializer_list<std::string_view> texts);

} // namespace outlook_express
