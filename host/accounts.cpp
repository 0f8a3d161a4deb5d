#include "accounts.h"

#include "acctkit/acctkit.h"
#include "clients/external_mailer.h"
#include "clients/netscape6/netscape6_mail.h"
#include "clients/netscape6/netscape6_news.h"
#include "clients/registry_key.h"
#include "platform.h"
#include "registry_view.h"
#include "stores/profile_registry.h"
#include "utf8.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace {

// All texts of the report are UTF-8.
struct Value {
  std::string name;
  std::string text;
};

// An account, a profile, or another place where values of a client stand.
struct Entry {
  std::string kind;
  std::string name;
  bool isDefault = false;
  std::string where;
  std::vector<Value> values;
};

struct Client {
  std::string name;
  std::string version;           // empty if it isn't installed
  std::optional<bool> takesMail; // nothing for a plug-in that is there and can't be loaded here
  bool takesNews = false;
  std::vector<Entry> (*entries)() = nullptr;
};

const std::string CurrentUser = "HKEY_CURRENT_USER\\";
const std::string LocalMachine = "HKEY_LOCAL_MACHINE\\";

std::string Below(const std::string &key, const std::string &name) {
  return std::string(key).append("\\").append(name);
}

std::string RootName(HKEY root) { return root == HKEY_CURRENT_USER ? CurrentUser : LocalMachine; }

// Those of the named values that a key has.
std::vector<Value> KeyValues(HKEY root, const std::string &key, const std::vector<const char *> &names) {
  std::vector<Value> values;
  for (const char *name : names)
    if (const auto shown = ShownValue(root, key, name))
      values.push_back({name, ToUtf8(*shown)});
  return values;
}

Entry KeyEntry(std::string kind, const std::string &name, HKEY root, const std::string &key,
               const std::vector<const char *> &valueNames) {
  return {std::move(kind), ToUtf8(name), false, RootName(root) + ToUtf8(key), KeyValues(root, key, valueNames)};
}

// The lines of a text file, as they stand, that begin with one of the words; without any word, all of them.
std::vector<Value> FileLines(const std::string &bytes, const std::vector<std::string> &beginnings) {
  std::vector<Value> lines;
  size_t begin = 0;
  while (begin < bytes.size()) {
    const size_t end = std::min(bytes.find('\n', begin), bytes.size());
    std::string line = bytes.substr(begin, end - begin);
    begin = end + 1;
    if (line.ends_with('\r'))
      line.pop_back();
    if (beginnings.empty() ||
        std::ranges::any_of(beginnings, [&](const std::string &word) { return line.starts_with(word); }))
      lines.push_back({"", MixedToUtf8(line)});
  }
  return lines;
}

// ---- Outlook Express ----

const std::string ManagerKey = "Software\\Microsoft\\Internet Account Manager";
const std::string AccountsKey = ManagerKey + "\\Accounts";

const std::vector<const char *> AccountValues = {"Account Name",
                                                 "POP3 Server",
                                                 "POP3 User Name",
                                                 "POP3 Skip Account",
                                                 "POP3 Prompt for Password",
                                                 "Leave Mail On Server",
                                                 "SMTP Server",
                                                 "SMTP Email Address",
                                                 "SMTP Display Name",
                                                 "NNTP Server",
                                                 "NNTP User Name",
                                                 "NNTP Email Address",
                                                 "NNTP Display Name",
                                                 "NNTP Prompt for Password",
                                                 "NNTP Split Messages",
                                                 "NNTP Split Message Size",
                                                 "Connection Type",
                                                 "Connectoid"};

std::vector<Entry> OutlookExpressEntries() {
  std::vector<Entry> entries;
  const std::string standard = ShownValue(HKEY_CURRENT_USER, ManagerKey, "Default Mail Account").value_or("");
  for (const std::string &name : Subkeys(HKEY_CURRENT_USER, AccountsKey)) {
    const std::string key = Below(AccountsKey, name);
    const bool news = ShownValue(HKEY_CURRENT_USER, key, "NNTP Server").has_value();
    entries.push_back(KeyEntry(news ? "news account" : "mail account", name, HKEY_CURRENT_USER, key, AccountValues));
    entries.back().isDefault = name == standard;
  }
  const std::string browser = "Software\\Microsoft\\Internet Explorer\\Main";
  if (ShownValue(HKEY_CURRENT_USER, browser, "Start Page"))
    entries.push_back(KeyEntry("browser", "", HKEY_CURRENT_USER, browser, {"Start Page"}));
  return entries;
}

// ---- Communicator ----

const std::string UsersKey = "SOFTWARE\\Netscape\\Netscape Navigator\\Users";
const std::string BiffKey = "Software\\Netscape\\Netscape Navigator\\biff\\users";

const std::vector<std::string> ShownPreferences = {
    "user_pref(\"mail.",         "user_pref(\"news.",   "user_pref(\"network.hosts.", "user_pref(\"browser.startup.",
    "user_pref(\"offline.news.", "user_pref(\"signon.", "user_pref(\"prefs."};

// A profile may have one of its keys and not the other.
void AddKey(std::vector<Entry> &entries, const char *kind, const std::string &name, HKEY root, const std::string &key,
            const std::vector<const char *> &valueNames) {
  if (KeyReadable(root, key.c_str()))
    entries.push_back(KeyEntry(kind, name, root, key, valueNames));
}

void AddFile(std::vector<Entry> &entries, const char *kind, const std::string &path,
             const std::vector<std::string> &beginnings) {
  if (const auto bytes = FileBytes(path))
    entries.push_back({kind, "", false, MixedToUtf8(path), FileLines(*bytes, beginnings)});
}

void AddPrefs(std::vector<Entry> &entries, const std::string &directory) {
  AddFile(entries, "prefs.js", Below(directory, "prefs.js"), ShownPreferences);
}

std::vector<Entry> CommunicatorEntries() {
  std::set<std::string> profiles;
  for (const auto &[root, key] : {std::pair(HKEY_LOCAL_MACHINE, UsersKey), {HKEY_CURRENT_USER, BiffKey}})
    for (const std::string &name : Subkeys(root, key))
      profiles.insert(name);
  std::vector<Entry> entries;
  for (const std::string &profile : profiles) {
    const std::string user = Below(UsersKey, profile);
    const std::string biff = Below(BiffKey, profile);
    AddKey(entries, "profile", profile, HKEY_LOCAL_MACHINE, user, {"EmailAddr", "UserName", "DirRoot", "Obsoleted"});
    AddKey(entries, "new mail", profile, HKEY_CURRENT_USER, biff, {"defaultServer"});
    const std::string servers = Below(biff, "servers");
    for (const std::string &server : Subkeys(HKEY_CURRENT_USER, servers))
      entries.push_back(KeyEntry("new mail", server, HKEY_CURRENT_USER, Below(servers, server), {"popstatePath"}));
    if (const auto directory = ShownValue(HKEY_LOCAL_MACHINE, user, "DirRoot")) {
      AddPrefs(entries, *directory);
      AddFile(entries, "news servers", Below(*directory, "news\\fat"), {"newsrc-"});
    }
  }
  // Without a profile's name a start page goes to the folder of all profiles.
  if (const auto folder =
          ShownValue(HKEY_CURRENT_USER, "Software\\Netscape\\Netscape Navigator\\Main", "Install Directory"))
    AddPrefs(entries, *folder + "\\Users");
  return entries;
}

// ---- Netscape 6 ----

std::vector<Entry> Netscape6Entries() {
  const auto appData =
      ShownValue(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders", "AppData");
  const std::string path = Below(appData.value_or(""), "Mozilla\\registry.dat");
  ProfileRegistry registry;
  if (!appData || !registry.Open(path))
    return {};
  registry.Parse();
  const std::string profilesKey = "Common\\Profiles";
  const int32_t profiles = registry.FindPath(profilesKey, "");
  std::string current;
  registry.GetValue(profilesKey, "CurrentProfile", current);
  std::vector<Entry> entries;
  for (int32_t index = 0; profiles >= 0 && index < registry.NodeCount(); ++index) {
    const ProfileRegistryNode &node = registry.Node(index);
    if (node.type != ProfileRegistryNode::KeyType || node.parent != registry.Node(profiles).location)
      continue;
    Entry entry = {"profile", MixedToUtf8(node.name), node.name == current, ToUtf8(path), {}};
    std::string directory;
    for (const char *name : {"directory", "migrated"})
      if (const int32_t value = registry.FindChild(index, name, 0); value >= 0)
        entry.values.push_back({name, MixedToUtf8(registry.Node(value).value)});
    registry.GetValue(Below(profilesKey, node.name), "directory", directory);
    entries.push_back(std::move(entry));
    if (!directory.empty())
      AddPrefs(entries, directory);
  }
  return entries;
}

// ---- The external mailer ----

std::vector<Entry> MailerEntries() {
  const std::string key = "SOFTWARE\\Harveld\\@zuvioSetup";
  const auto folder = ShownValue(HKEY_LOCAL_MACHINE, key, "InstPath");
  if (!folder)
    return {};
  std::vector<Entry> entries = {KeyEntry("plug-in", "", HKEY_LOCAL_MACHINE, key, {"InstPath", "ProgramName"})};
  AddFile(entries, "handed over", Below(*folder, "settings.txt"), {}); // the sample plug-in's
  return entries;
}

// ---- The report ----

std::string VersionText(int32_t client) {
  int32_t major = 0;
  int32_t minor = 0;
  return GetMailVersion(client, &major, &minor) ? std::to_string(major) + "." + std::to_string(minor) : "";
}

// A client of the plain exports.
Client Exported(const char *name, int32_t index, std::vector<Entry> (*entries)()) {
  return {name, VersionText(index), IsInstallMailer(index) != 0, IsInstallNews(index) != 0, entries};
}

// A client that only the wizards and the sign-up reach, so the plain exports tell nothing of it.
Client Reached(const char *name, MailClient &&mail, bool takesNews, std::vector<Entry> (*entries)()) {
  std::string version;
  mail.GetClientVersion(version);
  return {name, ToUtf8(version), mail.IsInstall() != 0, takesNews, entries};
}

Client ReachedMailer() {
  Client mailer = Reached("External mailer", ExternalMailer(), false, MailerEntries);
  if (platform::HasNotice())
    mailer.takesMail.reset();
  return mailer;
}

std::vector<Client> ReadClients() {
  return {Exported("Outlook Express", 0, OutlookExpressEntries),
          Exported("Netscape Communicator", 1, CommunicatorEntries),
          Reached("Netscape 6", Netscape6Mail(), Netscape6News().IsInstall() != 0, Netscape6Entries), ReachedMailer()};
}

// "?" for what can't be found out here.
const char *Answer(std::optional<bool> answer) { return !answer ? "?" : *answer ? "yes" : "no"; }

void PrintText(const std::vector<Client> &clients) {
  for (const Client &client : clients) {
    std::cout << client.name << (client.version.empty() ? "" : " " + client.version)
              << (client.takesMail.value_or(true) ? "" : ", not installed") << '\n';
    for (const Entry &entry : client.entries()) {
      std::cout << "  " << entry.kind << (entry.name.empty() ? "" : " " + entry.name)
                << (entry.isDefault ? " (default)" : "") << "  [" << entry.where << "]\n";
      size_t width = 0;
      for (const Value &value : entry.values)
        width = std::max(width, value.name.size());
      for (const Value &value : entry.values)
        std::cout << "    " << value.name << std::string(value.name.empty() ? 0 : width + 2 - value.name.size(), ' ')
                  << value.text << '\n';
    }
    std::cout << '\n';
  }
}

void PrintJson(const std::vector<Client> &clients) {
  using Json = nlohmann::ordered_json;
  Json document = Json::array();
  for (const Client &client : clients) {
    Json entries = Json::array();
    for (const Entry &entry : client.entries()) {
      Json values = Json::object();
      Json lines = Json::array();
      for (const Value &value : entry.values)
        if (value.name.empty())
          lines.push_back(value.text);
        else
          values[value.name] = value.text;
      entries.push_back({{"kind", entry.kind},
                         {"name", entry.name},
                         {"default", entry.isDefault},
                         {"where", entry.where},
                         {"values", values},
                         {"lines", lines}});
    }
    const Json installed = client.takesMail ? Json(*client.takesMail) : Json();
    document.push_back(
        {{"client", client.name}, {"version", client.version}, {"installed", installed}, {"entries", entries}});
  }
  std::cout << document.dump(2) << '\n';
}

} // namespace

void PrintAccounts(bool asJson) {
  const std::vector<Client> clients = ReadClients();
  if (asJson)
    PrintJson(clients);
  else
    PrintText(clients);
}

void PrintStatus() {
  const auto row = [](const std::string &client, const std::string &version, const std::string &mail,
                      const std::string &news) {
    std::cout << client << std::string(24 - std::min<size_t>(client.size(), 23), ' ') << version
              << std::string(10 - std::min<size_t>(version.size(), 9), ' ') << mail << std::string(6 - mail.size(), ' ')
              << news << '\n';
  };
  row("client", "version", "mail", "news");
  for (const Client &client : ReadClients())
    row(client.name, client.version, Answer(client.takesMail), Answer(client.takesNews));
}
