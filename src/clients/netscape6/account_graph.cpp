#include "clients/netscape6/account_graph.h"

#include "clients/netscape6/profile_store.h"
#include "clients/text.h"

#include <algorithm>
#include <memory>

namespace netscape6 {

namespace {

constexpr int LastNumber = 65535;

std::string Numbered(const char *prefix, int number) { return prefix + std::to_string(number); }

// Whether a quoted value names it, alone or in a list of identities.
bool IsNamed(const PrefsText &prefs, const std::string &name) {
  for (const char *format : {"\"%s\"", "\"%s,", ",%s,", ",%s\""})
    if (HasPrefText(Format(format, name).c_str(), prefs))
      return true;
  return false;
}

// The first numbered name that no value names; empty if all are taken.
std::string FreeName(const PrefsText &prefs, const char *prefix) {
  for (int number = 1; number <= LastNumber; ++number)
    if (std::string name = Numbered(prefix, number); !IsNamed(prefs, name))
      return name;
  return {};
}

// The keys of an account of the list, if it is the one.
std::optional<GraphKeys> Match(const PrefsText &prefs, const std::string &key, const GraphAccount &account) {
  const auto server = ReadPref(prefs, Format("mail.account.%s.server", key));
  const auto identity = ReadPref(prefs, Format("mail.account.%s.identities", key));
  if (!server || !identity)
    return std::nullopt;
  const auto type = ReadPref(prefs, Format("mail.server.%s.type", *server));
  const auto text = ReadPref(prefs, Format("mail.server.%s.%s", *server, std::string(account.matchedBy)));
  if (type != account.type || text != account.matchedText)
    return std::nullopt;
  return GraphKeys{key, *server, *identity};
}

void Append(PrefsText &prefs, const PrefLine &line) { AppendPrefLine(prefs, LineText(line).c_str()); }

PrefLine TypeLine(const GraphKeys &keys, const GraphAccount &account) {
  return {Format("mail.server.%s.type", keys.server), QuotedPref(account.type)};
}

void AppendAccount(PrefsText &prefs, const GraphKeys &keys) {
  Append(prefs, {Format("mail.account.%s.identities", keys.account), QuotedPref(keys.identity)});
  Append(prefs, {Format("mail.account.%s.server", keys.account), QuotedPref(keys.server)});
}

GraphKeys EnterFirst(PrefsText &prefs, const GraphAccount &account) {
  const GraphKeys keys = {"account1", "server1", "id1"};
  Append(prefs, {AccountList, QuotedPref(keys.account)});
  Append(prefs, {"mail.accountmanager.defaultaccount", QuotedPref(keys.account)});
  AppendAccount(prefs, keys);
  Append(prefs, TypeLine(keys, account));
  return keys;
}

std::optional<GraphKeys> EnterNext(PrefsText &prefs, const std::string &list, const GraphAccount &account) {
  const auto hasLines = [&](const std::string &name) {
    return HasPrefText(Format("mail.account.%s.", name).c_str(), prefs) != 0;
  };
  const GraphKeys keys = {NextName(list, "account", hasLines), FreeName(prefs, "server"), FreeName(prefs, "id")};
  if (keys.server.empty() || keys.identity.empty())
    return std::nullopt;
  ReplacePref(prefs, ExtendedList(AccountList, list, keys.account));
  AppendAccount(prefs, keys);
  if (account.typedAtOnce)
    Append(prefs, TypeLine(keys, account));
  return keys;
}

} // namespace

std::optional<std::string> ReadPref(const PrefsText &prefs, const std::string &key) {
  const auto value = FindPrefValue(key.c_str(), prefs);
  return value ? std::optional<std::string>(*value) : std::nullopt;
}

std::vector<std::string> ListItems(const std::string &list) {
  std::vector<std::string> items;
  std::string item(list.size() + 1, '\0');
  for (int32_t index = 0; index < CountListItems(list.c_str()); ++index) {
    GetListItem(list.c_str(), index, item.data(), static_cast<int32_t>(item.size()));
    items.emplace_back(item.c_str());
  }
  return items;
}

std::string NextName(const std::string &list, const char *prefix,
                     const std::function<bool(const std::string &)> &inUse) {
  const std::vector<std::string> items = ListItems(list);
  auto number = static_cast<int>(items.size()) + 1;
  std::string name = Numbered(prefix, number);
  while (std::ranges::find(items, name) != items.end() || inUse(name))
    name = Numbered(prefix, ++number);
  return name;
}

PrefLine ExtendedList(const char *key, const std::string &list, const std::string &item) {
  return {key, QuotedPref(list + ',' + item)};
}

std::optional<GraphKeys> FindOrEnter(PrefsText &prefs, const GraphAccount &account) {
  if (!HasPrefText(AccountList, prefs))
    return EnterFirst(prefs, account);
  const std::string list = ReadPref(prefs, AccountList).value_or("");
  for (const std::string &key : ListItems(list))
    if (const auto keys = Match(prefs, key, account))
      return keys;
  return EnterNext(prefs, list, account);
}

std::array<PrefLine, 8> AccountPrefs(const GraphKeys &keys, const GraphAccount &account) {
  const std::string identity = "mail.identity." + keys.identity;
  const std::string server = "mail.server." + keys.server;
  return {{
      {identity + ".useremail", QuotedPref(account.mailAddress)},
      {identity + ".fullName", QuotedPref(account.fullName)},
      {identity + ".compose_html", "false"},
      {server + ".userName", QuotedPref(account.userName)},
      {server + ".hostname", QuotedPref(account.hostname)},
      TypeLine(keys, account),
      {server + ".leave_on_server", "true"},
      {server + ".name", QuotedPref(account.name)},
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

int32_t EditProfile(const std::string &directory, const std::function<bool(PrefsText &)> &edit) {
  const std::string path = PrefsPath(directory);
  const auto prefs = std::make_unique<PrefsText>();
  LoadPrefsText(path.c_str(), *prefs);
  if (!edit(*prefs) || (prefs->read && !prefs->whole))
    return 0;
  SavePrefsText(path.c_str(), *prefs);
  CreateDirectoryA((directory + "\\mail").c_str(), nullptr);
  return 1;
}

} // namespace netscape6
