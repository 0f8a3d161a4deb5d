// The graph of numbered names that ties the accounts, servers and identities in a prefs.js of Netscape 6 together, as
// mail accounts and news servers share it.
#pragma once

#include "clients/pref_lines.h"

#include <array>
#include <optional>
#include <string>

namespace netscape6 {

// An account as it goes into the graph. Texts stand as they will in the file. A mail account is known by the user of
// its server, a news account by the server's name:
//
//   const GraphAccount account = {.type = "pop3", .matchedPref = ServerUserPref, .matchedText = user, ...};
//   if (const auto keys = FindOrEnter(prefs, account)) // {"account2", "server2", "id2"}
//     ReplacePrefs(prefs, AccountLines(*keys, account));
struct GraphAccount {
  std::string type;        // of its server: "pop3" or "nntp"
  const char *matchedPref; // the preference of its server that tells it from others of the type
  std::string matchedText; // and what that has to hold
  bool typedAtOnce;        // whether FindOrEnter gives a further server its type, or only AccountLines does

  std::string userName;
  std::string hostname;
  std::string name;
  std::string mailAddress;
  std::string fullName;
};

// The numbered names of one account.
struct GraphKeys {
  std::string account;
  std::string server;
  std::string identity; // the first, if the account has several
};

// The name that the next item of a numbered list takes, as in "smtp2": the number behind the count of its items, or the
// first one from there on that isn't in use, should the list have gaps. The preferences of such an item begin with
// `prefs`, as in "mail.smtpserver.".
std::string NextName(const PrefsText &text, const std::string &list, const char *prefs, const char *prefix);
// The list with a further item.
PrefLine ExtendedList(const char *key, const std::string &list, const std::string &item);

// The keys of the account that is there already, or those of a new one, which is then entered. Nothing if all numbers
// are taken; the text is then not to be saved.
std::optional<GraphKeys> FindOrEnter(PrefsText &prefs, const GraphAccount &account);

// The preferences of the account's identity and server, in the order in which they are replaced.
std::array<PrefLine, 8> AccountLines(const GraphKeys &keys, const GraphAccount &account);

// That each text is short enough to be read back into the clients' own buffers of 260 bytes.
bool TextsFit(const GraphAccount &account);

// A text in UTF-8, or nothing if it doesn't fit.
std::optional<std::string> Utf8(const std::string &text);

} // namespace netscape6
