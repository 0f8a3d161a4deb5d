#include "clients/inspect/inspect.h"

#include "clients/communicator/communicator_layout.h"
#include "clients/communicator/communicator_mail.h"
#include "clients/communicator/communicator_news.h"
#include "clients/external_mailer.h"
#include "clients/external_mailer_layout.h"
#include "clients/inspect/utf8_text.h"
#include "clients/netscape6/netscape6_layout.h"
#include "clients/netscape6/netscape6_mail.h"
#include "clients/netscape6/netscape6_news.h"
#include "clients/netscape6/netscape6_profiles.h"
#include "clients/outlook_express/outlook_express_layout.h"
#include "clients/outlook_express/outlook_express_mail.h"
#include "clients/outlook_express/outlook_express_news.h"
#include "clients/profile_prefs.h"
#include "clients/registry_key.h"
#include "stores/file_handle.h"
#include "stores/profile_registry.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <optional>
#include <set>
#include <utility>

namespace inspect {

namespace {

// ---- Values of the registry ----

std::string Shown(const RegistryValue &value) {
  if (value.type == REG_SZ || value.type == REG_EXPAND_SZ)
    return value.data.c_str();
  DWORD number = 0;
  if (value.type == REG_DWORD && value.data.size() == sizeof number) {
    std::memcpy(&number, value.data.data(), sizeof number);
    return std::to_string(number);
  }
  std::string digits;
  for (const char byte : value.data) {
    char pair[4];
    std::snprintf(pair, sizeof pair, "%02x ", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    digits += pair;
  }
  return digits;
}

std::optional<std::string> ShownValue(HKEY root, const std::string &key, const char *name) {
  const auto value = ReadAnyValue(root, key.c_str(), name);
  return value ? std::optional(Shown(*value)) : std::nullopt;
}

// A key with those of the named values that it has.
Entry KeyEntry(const char *kind, const std::string &name, HKEY root, const std::string &key,
               const std::vector<const char *> &valueNames) {
  const char *const rootName = root == HKEY_CURRENT_USER ? "HKEY_CURRENT_USER\\" : "HKEY_LOCAL_MACHINE\\";
  Entry entry = {kind, ToUtf8(name), false, rootName + ToUtf8(key), {}};
  for (const char *valueName : valueNames)
    if (const auto shown = ShownValue(root, key, valueName))
      entry.values.push_back({valueName, ToUtf8(*shown)});
  return entry;
}

void AddKey(std::vector<Entry> &entries, const char *kind, const std::string &name, HKEY root, const std::string &key,
            const std::vector<const char *> &valueNames) {
  if (KeyReadable(root, key.c_str()))
    entries.push_back(KeyEntry(kind, name, root, key, valueNames));
}

// ---- Lines of files ----

// Far more than any client's file has.
constexpr size_t LargestFile = size_t{64} << 20;

// A file's bytes, also while a client has it open; nothing if it can't be read.
std::optional<std::string> FileBytes(const std::string &path) {
  const FileHandle file(CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  std::string bytes;
  return file && ReadWholeFile(file, LargestFile, bytes) ? std::optional(bytes) : std::nullopt;
}

// The lines, as they stand, that begin with one of the texts; without any text, all of them.
std::vector<Value> Lines(const std::string &bytes, const std::vector<std::string> &beginnings) {
  std::vector<Value> lines;
  size_t begin = 0;
  while (begin < bytes.size()) {
    const size_t end = std::min(bytes.find('\n', begin), bytes.size());
    std::string line = bytes.substr(begin, end - begin);
    begin = end + 1;
    if (line.ends_with('\r'))
      line.pop_back();
    if (beginnings.empty() ||
        std::ranges::any_of(beginnings, [&](const std::string &text) { return line.starts_with(text); }))
      lines.push_back({"", MixedToUtf8(line)});
  }
  return lines;
}

void AddFile(std::vector<Entry> &entries, const char *kind, const std::string &path,
             const std::vector<std::string> &beginnings) {
  if (const auto bytes = FileBytes(path))
    entries.push_back({kind, "", false, MixedToUtf8(path), Lines(*bytes, beginnings)});
}

void AddPrefs(std::vector<Entry> &entries, const std::string &directory) {
  AddFile(entries, "prefs.js", PrefsPath(directory),
          {LineStart("mail."), LineStart("news."), LineStart("network.hosts."), LineStart("browser.startup."),
           LineStart("offline.news."), LineStart("signon."), LineStart("prefs.")});
}

// ---- The clients ----

std::vector<Entry> OutlookExpressEntries() {
  using namespace outlook_express;
  const std::string standard = ShownValue(HKEY_CURRENT_USER, ManagerKey, DefaultMailAccountValue).value_or("");
  std::vector<Entry> entries;
  for (const std::string &name : SubkeyNames(HKEY_CURRENT_USER, AccountsKey)) {
    const std::string key = AccountKey(name);
    const bool news = ReadAnyValue(HKEY_CURRENT_USER, key.c_str(), NntpServerValue).has_value();
    entries.push_back(KeyEntry(news ? "news account" : "mail account", name, HKEY_CURRENT_USER, key,
                               {AccountNameValue, Pop3ServerValue, Pop3UserValue, Pop3SkipValue, Pop3PromptValue,
                                LeaveOnServerValue, SmtpServerValue, SmtpAddressValue, SmtpSenderValue, NntpServerValue,
                                NntpUserValue, NntpAddressValue, NntpSenderValue, NntpPromptValue, NntpSplitValue,
                                NntpSplitSizeValue, ConnectionTypeValue, ConnectoidValue}));
    entries.back().isDefault = name == standard;
  }
  if (ReadAnyValue(HKEY_CURRENT_USER, BrowserKey, StartPageValue))
    entries.push_back(KeyEntry("browser", "", HKEY_CURRENT_USER, BrowserKey, {StartPageValue}));
  return entries;
}

// A profile may have its key below one root and not the one below the other.
std::vector<Entry> CommunicatorEntries() {
  using namespace communicator;
  std::set<std::string> profiles;
  for (const auto &[root, key] : {std::pair(HKEY_LOCAL_MACHINE, UsersKey), {HKEY_CURRENT_USER, BiffUsersKey}})
    for (const std::string &name : SubkeyNames(root, key))
      profiles.insert(name);
  std::vector<Entry> entries;
  for (const std::string &profile : profiles) {
    AddKey(entries, "profile", profile, HKEY_LOCAL_MACHINE, UserKey(profile),
           {AddressValue, SenderValue, DirectoryValue, ObsoleteValue});
    AddKey(entries, "new mail", profile, HKEY_CURRENT_USER, BiffUserKey(profile), {DefaultServerValue});
    for (const std::string &server : SubkeyNames(HKEY_CURRENT_USER, BiffServersKey(profile)))
      entries.push_back(
          KeyEntry("new mail", server, HKEY_CURRENT_USER, BiffServerKey(profile, server), {MailboxStateValue}));
    if (const auto directory = ShownValue(HKEY_LOCAL_MACHINE, UserKey(profile), DirectoryValue)) {
      AddPrefs(entries, *directory);
      AddFile(entries, "news servers", NewsMapPath(*directory), {NewsRecordPrefix});
    }
  }
  // Without a profile's name a start page goes to the folder of all profiles.
  if (const auto installDirectory = ShownValue(HKEY_CURRENT_USER, MainKey, InstallDirectoryValue))
    AddPrefs(entries, ProfilesFolder(*installDirectory));
  return entries;
}

std::vector<Entry> Netscape6Entries() {
  using namespace netscape6;
  std::string path;
  ProfileRegistry registry;
  if (!GetRegistryDatPath(path) || !registry.Open(path))
    return {};
  registry.Parse();
  const int32_t profiles = registry.FindPath(ProfilesPath, "");
  std::string current;
  registry.GetValue(ProfilesPath, CurrentProfileValue, current);
  std::vector<Entry> entries;
  for (int32_t index = 0; profiles >= 0 && index < registry.NodeCount(); ++index) {
    const ProfileRegistryNode &node = registry.Node(index);
    if (node.type != ProfileRegistryNode::KeyType || node.parent != registry.Node(profiles).location)
      continue;
    Entry entry = {"profile", MixedToUtf8(node.name), node.name == current, ToUtf8(path), {}};
    for (const char *name : {DirectoryValue, MigratedValue})
      if (const int32_t value = registry.FindChild(index, name, 0); value >= 0)
        entry.values.push_back({name, MixedToUtf8(registry.Node(value).value)});
    entries.push_back(std::move(entry));
    std::string directory;
    if (registry.GetValue(ProfilePath(node.name), DirectoryValue, directory) && !directory.empty())
      AddPrefs(entries, directory);
  }
  return entries;
}

std::vector<Entry> MailerEntries() {
  using namespace external_mailer;
  const auto folder = ShownValue(HKEY_LOCAL_MACHINE, PluginKey, FolderValue);
  if (!folder)
    return {};
  std::vector<Entry> entries = {KeyEntry("plug-in", "", HKEY_LOCAL_MACHINE, PluginKey, {FolderValue, FileValue})};
  AddFile(entries, "handed over", Below(*folder, SampleSettings), {});
  return entries;
}

// The version of a client that the plain exports reach, as they tell it.
std::string MajorAndMinor(MailClient &&mail, const InstalledProgram &program) {
  std::string version;
  if (!mail.GetClientVersion(version))
    return {};
  const auto [major, minor] = SplitVersion(version, program.versionSeparator);
  return std::to_string(major) + '.' + std::to_string(minor);
}

std::string WholeVersion(MailClient &&mail) {
  std::string version;
  mail.GetClientVersion(version);
  return ToUtf8(version);
}

} // namespace

std::vector<Client> Clients() {
  return {{ClientOutlookExpress, "Outlook Express", MajorAndMinor(OutlookExpressMail(), outlook_express::Program),
           OutlookExpressMail().IsInstall() != 0, OutlookExpressNews().IsInstall() != 0},
          {ClientCommunicator, "Netscape Communicator", MajorAndMinor(CommunicatorMail(), communicator::Program),
           CommunicatorMail().IsInstall() != 0, CommunicatorNews().IsInstall() != 0},
          {ClientNetscape6, "Netscape 6", WholeVersion(Netscape6Mail()), Netscape6Mail().IsInstall() != 0,
           Netscape6News().IsInstall() != 0},
          {ClientExternalMailer, "External mailer", WholeVersion(ExternalMailer()), ExternalMailer().IsInstall() != 0,
           false}};
}

std::vector<Entry> Entries(ClientType type) {
  switch (type) {
  case ClientOutlookExpress:
    return OutlookExpressEntries();
  case ClientCommunicator:
    return CommunicatorEntries();
  case ClientNetscape6:
    return Netscape6Entries();
  case ClientExternalMailer:
    return MailerEntries();
  }
  return {};
}

} // namespace inspect
