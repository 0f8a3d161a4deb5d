// The graph of numbered names that ties the accounts, servers and identities in a prefs.js of Netscape 6 together, as
// mail accounts and news servers share it.
#pragma once

#include "clients/pref_lines.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace netscape6 {

// An account as it goes into the graph. Texts stand as they will in the file.
struct GraphAccount {
  const char *type;        // of its server: "pop3" or "nntp"
  const char *matchedBy;   // the preference of its server that tells it from others of the type
  std::string matchedText; // and what that has to hold
  bool typedAtOnce;        // whether its server has its type from the start, or only with the other preferences

  std::string userName;
  std::string hostname;
  std::string name;
  std::string mailAddress;
  std::string fullName;
};

// The numbered names of one account, as in "account1", "server1" and "id1".
struct GraphKeys {
  std::string account;
  std::string server;
  std::string identity; // the first, if the account has several
};

constexpr const char *AccountList = "mail.accountmanager.accounts";

// The name that the next item of a numbered list takes, as in "smtp2": the number behind the count of its items, or the
// first one from there on that isn't in use, should the list have gaps. The preferences of such an item begin with
// `keys`, as in "mail.smtpserver.".
std::string NextName(const PrefsText &prefs, const std::string &list, const char *keys, const char *prefix);
// The list with a further item.
PrefLine ExtendedList(const char *key, const std::string &list, const std::string &item);

// The account's keys: those of the account that is there already, or new ones, which are then entered. Nothing if all
// numbers are taken; the text is then not to be saved.
std::optional<GraphKeys> FindOrEnter(PrefsText &prefs, const GraphAccount &account);

// The preferences of the account's identity and server, in the order in which they are replaced.
std::array<PrefLine, 8> AccountPrefs(const GraphKeys &keys, const GraphAccount &account);

// That each text is short enough to be read back into the clients' own buffers of 260 bytes.
bool TextsFit(const GraphAccount &account);

// A text in UTF-8, or nothing if it doesn't fit.
std::optional<std::string> Utf8(const std::string &text);

// Edits the prefs.js of a profile's directory and makes its directory for mail. `edit` answers whether the text is to
// be saved. 0, with the file as it was, if it isn't, or if the file has no room; a file that can't be read stays as it
// is, and counts as done.
int32_t EditProfile(const std::string &directory, const std::function<bool(PrefsText &)> &edit);

} // namespace netscape6
