#include "clients/netscape6/account_graph.h"

#include "clients/format.h"
#include "clients/netscape6/netscape6_layout.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <string_view>
#include <vector>

namespace netscape6 {

namespace {

constexpr int LastNumber = 65535;

std::string Numbered(const char *prefix, int number) { return prefix + std::to_string(number); }

// Which numbers with the prefix a quoted value names, alone or also in a comma list.
std::vector<bool> NamedNumbers(const PrefsText &prefs, std::string_view prefix, bool inLists) {
  const auto endsItem = [inLists](char byte) { return byte == '"' || (inLists && byte == ','); };
  std::vector<bool> named(LastNumber + 1);
  const std::string_view text(prefs.text, prefs.length);
  for (size_t begin = text.find(prefix, 1); begin != std::string_view::npos; begin = text.find(prefix, begin + 1)) {
    if (!endsItem(text[begin - 1]))
      continue;
    const std::string_view digits = text.substr(begin + prefix.size());
    int number = 0;
    const char *const end = std::from_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    if (number > 0 && number <= LastNumber && digits[0] != '0' && end != digits.data() + digits.size() &&
        endsItem(*end))
      named[static_cast<size_t>(number)] = true;
  }
  return named;
}

// The first numbered name that no value names; empty if all are taken.
std::string FreeName(const PrefsText &prefs, const char *prefix, bool inLists) {
  const std::vector<bool> named = NamedNumbers(prefs, prefix, inLists);
  const auto free = std::find(named.begin() + 1, named.end(), false);
  return free == named.end() ? std::string() : Numbered(prefix, static_cast<int>(free - named.begin()));
}

// The keys of an account of the list, if it is the one.
std::optional<GraphKeys> Match(const PrefsText &prefs, const std::string &key, const GraphAccount &account) {
  // The likeliest mismatch first: each search goes through the text.
  const auto server = FindPrefValue(Format(AccountServerPref, key), prefs);
  if (!server || FindPrefValue(Format(account.matchedPref, *server), prefs) != account.matchedText ||
      FindPrefValue(Format(ServerTypePref, *server), prefs) != account.type)
    return std::nullopt;
  const auto identities = FindPrefValue(Format(AccountIdentitiesPref, key), prefs);
  return identities ? std::optional(GraphKeys{key, *server, ListItems(*identities).front()}) : std::nullopt;
}

PrefLine TypeLine(const GraphKeys &keys, const GraphAccount &account) {
  return {Format(ServerTypePref, keys.server), QuotedPref(account.type)};
}

void AppendAccount(PrefsText &prefs, const GraphKeys &keys) {
  AppendPref(prefs, {Format(AccountIdentitiesPref, keys.account), QuotedPref(keys.identity)});
  AppendPref(prefs, {Format(AccountServerPref, keys.account), QuotedPref(keys.server)});
}

GraphKeys EnterFirst(PrefsText &prefs, const GraphAccount &account) {
  GraphKeys keys = {Numbered(AccountName, 1), Numbered(ServerName, 1), Numbered(IdentityName, 1)};
  AppendPref(prefs, {AccountListPref, QuotedPref(keys.account)});
  AppendPref(prefs, {DefaultAccountPref, QuotedPref(keys.account)});
  AppendAccount(prefs, keys);
  AppendPref(prefs, TypeLine(keys, account));
  return keys;
}

std::optional<GraphKeys> EnterNext(PrefsText &prefs, const std::string &list, const GraphAccount &account) {
  GraphKeys keys = {NextName(prefs, list, AccountPrefs, AccountName), FreeName(prefs, ServerName, false),
                    FreeName(prefs, IdentityName, true)}; // an account may have several identities
  if (keys.server.empty() || keys.identity.empty())
    return std::nullopt;
  ReplacePref(prefs, ExtendedList(AccountListPref, list, keys.account));
  AppendAccount(prefs, keys);
  if (account.typedAtOnce)
    AppendPref(prefs, TypeLine(keys, account));
  return keys;
}

} // namespace

std::string NextName(const PrefsText &text, const std::string &list, const char *prefs, const char *prefix) {
  const std::vector<std::string> items = ListItems(list);
  const std::set<std::string> listed(items.begin(), items.end());
  auto number = static_cast<int>(items.size()) + 1;
  std::string name = Numbered(prefix, number);
  while (listed.contains(name) || HasPrefText((prefs + name + '.').c_str(), text))
    name = Numbered(prefix, ++number);
  return name;
}

PrefLine ExtendedList(const char *key, const std::string &list, const std::string &item) {
  return {key, QuotedPref(list + ',' + item)};
}

std::optional<GraphKeys> FindOrEnter(PrefsText &prefs, const GraphAccount &account) {
  if (!HasPrefText(AccountListPref, prefs))
    return EnterFirst(prefs, account);
  const std::string list = FindPrefValue(AccountListPref, prefs).value_or("");
  for (const std::string &key : ListItems(list))
    if (auto keys = Match(prefs, key, account))
      return keys;
  return EnterNext(prefs, list, account);
}

std::array<PrefLine, 8> AccountLines(const GraphKeys &keys, const GraphAccount &account) {
  return {{
      {Format(IdentityAddressPref, keys.identity), QuotedPref(account.mailAddress)},
      {Format(IdentitySenderPref, keys.identity), QuotedPref(account.fullName)},
      {Format(IdentityHtmlPref, keys.identity), "false"},
      {Format(ServerUserPref, keys.server), QuotedPref(account.userName)},
      {Format(ServerHostPref, keys.server), QuotedPref(account.hostname)},
      TypeLine(keys, account),
      {Format(ServerLeaveMailPref, keys.server), "true"},
      {Format(ServerNamePref, keys.server), QuotedPref(account.name)},
  }};
}

bool TextsFit(const GraphAccount &account) {
  const std::string *const texts[] = {&account.userName, &account.hostname, &account.name, &account.mailAddress,
                                      &account.fullName};
  return std::ranges::all_of(texts, [](const std::string *text) { return text->size() < PrefValueSize; });
}

std::optional<std::string> Utf8(const std::string &text) {
  char converted[PrefValueSize];
  return ToUtf8Value(text.c_str(), converted) ? std::optional<std::string>(converted) : std::nullopt;
}

} // namespace netscape6
