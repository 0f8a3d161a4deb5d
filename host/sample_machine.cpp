#include "sample_machine.h"

#include "clients/communicator/communicator_layout.h"
#include "clients/external_mailer_layout.h"
#include "clients/file_queries.h"
#include "clients/netscape6/netscape6_layout.h"
#include "clients/outlook_express/outlook_express_layout.h"
#include "clients/profile_prefs.h"
#include "clients/registry_key.h"
#include "clients/service_names.h"
#include "clients/windows_layout.h"
#include "platform.h"
#include "samples/programs.h"
#include "stores/file_handle.h"
#include "stores/profile_registry.h"
#include "stores/registry_dat.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string_view>
#include <variant>

namespace oe = outlook_express;
namespace nc = communicator;
namespace n6 = netscape6;

const std::vector<std::string> SampleClients = {"oe4", "oe5", "communicator", "netscape6", "mailer"};

namespace {

// Folders of the samples. For the first two the machine may have others, which are then taken.
const std::string ProgramFiles = "%ProgramFiles%";
const std::string AppData = "C:\\WINDOWS\\Application Data";
const std::string DefaultProgramFiles = "C:\\Program Files";
const std::string CommunicatorFolder = DefaultProgramFiles + "\\Netscape\\Communicator";
const std::string MailerFolder = external_mailer::SampleFolder;

const std::string Account = oe::AccountKey("00000001");
const std::string OutlookExpressProgram = ProgramFiles + "\\Outlook Express\\" + oe::Program.file;

const std::string Profile = "home";
const std::string ProfileFolder = nc::ProfileDirectory(CommunicatorFolder, Profile);
const std::string CommunicatorProgram = CommunicatorFolder + "\\Program\\" + nc::Program.file;
constexpr const char *PopServer = "pop.company.example";

const std::string MozillaProfile = n6::ProfileFolder(AppData, "default") + "\\4x7q2k1m.slt";
const std::string Netscape6Program = DefaultProgramFiles + "\\Netscape\\Netscape 6\\" + n6::Program.file;

constexpr const char *PluginFile = "sample_mailer.dll";

// A value of the sample machine, entered with one of the clients; "oe" stands for either version.
struct SampleValue {
  const char *client;
  HKEY root;
  std::string key;
  const char *name;
  std::variant<std::string, DWORD> data;
};
const SampleValue Values[] = {
    {"oe4", HKEY_LOCAL_MACHINE, oe::ProductKey, oe::Program.versionValue, "4,72,3110,0"},
    {"oe5", HKEY_LOCAL_MACHINE, oe::ProductKey, oe::Program.versionValue, "5,50,4522,1200"},
    {"oe5", HKEY_CURRENT_USER, oe::IdentitiesKey, oe::DefaultIdentityValue, "{5B8E2F40-1C11-4D5A-9E0B-7A6D3C2F1E00}"},
    {"oe", HKEY_LOCAL_MACHINE, ProgramKey(oe::Program.file), nullptr, OutlookExpressProgram},
    {"oe", HKEY_LOCAL_MACHINE, WindowsKey, ProgramFilesValue, DefaultProgramFiles},
    {"oe", HKEY_CURRENT_USER, oe::BrowserKey, oe::StartPageValue, "http://old.example/"},
    {"oe", HKEY_CURRENT_USER, oe::ManagerKey, oe::AccountNameValue, DWORD{2}},
    {"oe", HKEY_CURRENT_USER, oe::ManagerKey, oe::DefaultMailAccountValue, "00000001"},
    {"oe", HKEY_CURRENT_USER, Account, oe::AccountNameValue, "会社のメール"},
    {"oe", HKEY_CURRENT_USER, Account, oe::Pop3ServerValue, PopServer},
    {"oe", HKEY_CURRENT_USER, Account, oe::Pop3UserValue, "yamada"},
    {"oe", HKEY_CURRENT_USER, Account, oe::SmtpServerValue, "smtp.company.example"},
    {"oe", HKEY_CURRENT_USER, Account, oe::SmtpAddressValue, "yamada@company.example"},
    {"oe", HKEY_CURRENT_USER, Account, oe::SmtpSenderValue, "山田 太郎"},
    {"oe", HKEY_CURRENT_USER, Account, oe::ConnectionTypeValue, DWORD{oe::DialUpConnection}},
    {"oe", HKEY_CURRENT_USER, Account, oe::ConnectoidValue, ServiceConnectionName},
    // A machine's first write makes the key "Software", which sample machines spell so.
    {"communicator", HKEY_LOCAL_MACHINE, nc::SettingsKey, CurrentVersionValue, "4.75"},
    {"communicator", HKEY_LOCAL_MACHINE, nc::Program.versionKey, nc::Program.versionValue, "4.75 [ja]"},
    {"communicator", HKEY_LOCAL_MACHINE, ProgramKey(nc::Program.file), nullptr, CommunicatorProgram},
    {"communicator", HKEY_CURRENT_USER, nc::MainKey, nc::InstallDirectoryValue, CommunicatorFolder},
    {"communicator", HKEY_LOCAL_MACHINE, nc::UserKey(Profile), nc::DirectoryValue, ProfileFolder},
    {"communicator", HKEY_LOCAL_MACHINE, nc::UserKey(Profile), nc::AddressValue, "yamada@company.example"},
    {"communicator", HKEY_LOCAL_MACHINE, nc::UserKey(Profile), nc::SenderValue, "山田 太郎"},
    {"communicator", HKEY_CURRENT_USER, nc::BiffUserKey(Profile), nc::DefaultServerValue, PopServer},
    {"communicator", HKEY_CURRENT_USER, nc::BiffServerKey(Profile, PopServer), nc::MailboxStateValue,
     nc::MailboxStatePath(ProfileFolder)},
    {"netscape6", HKEY_LOCAL_MACHINE, n6::ProductKey, CurrentVersionValue, "6.2 (ja)"},
    {"netscape6", HKEY_LOCAL_MACHINE, ProgramKey(n6::Program.file), nullptr, Netscape6Program},
    {"netscape6", HKEY_CURRENT_USER, ShellFoldersKey, AppDataValue, AppData},
    {"netscape6", HKEY_CURRENT_USER, UserShellFoldersKey, AppDataValue, AppData},
    {"mailer", HKEY_LOCAL_MACHINE, external_mailer::PluginKey, external_mailer::FolderValue, MailerFolder},
    {"mailer", HKEY_LOCAL_MACHINE, external_mailer::PluginKey, external_mailer::FileValue, PluginFile},
};

// The lines of preferences, with the given line end.
std::string Prefs(std::initializer_list<PrefLine> prefs, const char *lineEnd) {
  std::string lines;
  for (const PrefLine &pref : prefs) {
    lines += LineText(pref);
    lines.replace(lines.size() - 1, 1, lineEnd);
  }
  return lines;
}
const PrefLine OldStartPage = {nc::StartPagePref, QuotedPref("http://old.example/")};

struct SampleFile {
  const char *client; // empty: on every machine
  std::string path;
  std::string bytes;
};
const SampleFile Files[] = {
    {"oe", OutlookExpressProgram, std::string(sample_programs::outlook_express)},
    {"communicator", CommunicatorProgram, std::string(sample_programs::communicator)},
    {"communicator", PrefsPath(ProfileFolder),
     "// Netscape User Preferences\r\n// This is a generated file!  Do not edit.\r\n\r\n" +
         Prefs({OldStartPage,
                {nc::AddressPref, QuotedPref("yamada@company.example")},
                {nc::SenderPref, QuotedPref("山田 太郎")},
                {nc::UserPref, QuotedPref("yamada")}},
               "\r\n")},
    {"netscape6", Netscape6Program, std::string(sample_programs::netscape6)},
    {"netscape6", PrefsPath(MozillaProfile), "# Mozilla User Preferences\n\n" + Prefs({OldStartPage}, "\n")},
    {"mailer", Below(MailerFolder, external_mailer::SampleProgram), std::string(sample_programs::mailer)},
    {"", "C:\\Program Files\\Zuvio\\service.ini",
     "[MAIL_SERVER]\r\nserver_max=2\r\n"
     "disp1=mail.zuvio.example\r\npop1=pop.zuvio.example\r\nsmtp1=smtp.zuvio.example\r\n"
     "disp2=legacy.zuvio.example\r\npop2=pop.legacy.zuvio.example\r\nsmtp2=smtp.legacy.zuvio.example\r\n"
     "disp_mail=mail.zuvio.example\r\n\r\n"
     "[ADDMAIL_SERVER]\r\nserver_max=1\r\ndisp1=abc.mail.zuvio.example\r\n\r\n"
     "[NEWS_SERVER]\r\nnntp1=forum.zuvio.example\r\nnntp2=square.zuvio.example\r\n"
     "disp_nntp1=フォーラム会議室\r\ndisp_nntp2=カモメ（web会議室）\r\n"},
};

// A value that is there stays: the machine may be a Wine prefix that somebody uses.
bool EnterValue(const SampleValue &value) {
  if (ReadAnyValue(value.root, value.key.c_str(), value.name))
    return true;
  RegistryKey key;
  const auto write = [&](DWORD type, const void *data, size_t size) {
    return key.WriteValue(value.root, value.key.c_str(), value.name, type, data, static_cast<DWORD>(size)) != 0;
  };
  if (const auto *text = std::get_if<std::string>(&value.data))
    return write(REG_SZ, text->c_str(), text->size() + 1);
  return write(REG_DWORD, &std::get<DWORD>(value.data), sizeof(DWORD));
}

// A folder that isn't the same on every machine; a value tells it.
struct MachineFolder {
  const std::string &sample; // as it is in the samples' paths
  HKEY root;
  const char *key;
  const char *name;
  const std::string &fallback;
};
const MachineFolder MachineFolders[] = {
    {AppData, HKEY_CURRENT_USER, ShellFoldersKey, AppDataValue, AppData},
    {ProgramFiles, HKEY_LOCAL_MACHINE, WindowsKey, ProgramFilesValue, DefaultProgramFiles},
};

// Where the machine has what the samples have at a path.
std::string Placed(const std::string &path) {
  for (const MachineFolder &folder : MachineFolders)
    if (path.starts_with(folder.sample)) {
      std::string own;
      const bool found = ReadStringValue(folder.root, folder.key, folder.name, own) != 0;
      return (found ? own : folder.fallback) + path.substr(folder.sample.size());
    }
  return path;
}

// Makes the folders on the way. A backslash may be the second byte of a character.
void MakeFoldersAbove(const std::string &path) {
  for (size_t index = 3; index < path.size(); ++index) {
    if (IsDBCSLeadByte(static_cast<BYTE>(path[index])))
      ++index;
    else if (path[index] == '\\')
      CreateDirectoryA(path.substr(0, index).c_str(), nullptr);
  }
}

// A file that is there stays too.
bool EnterFile(const std::string &samplePath, const std::string &bytes) {
  const std::string path = Placed(samplePath);
  if (PathExists(path.c_str()))
    return true;
  MakeFoldersAbove(path);
  return WriteWholeFile(path.c_str(), GENERIC_WRITE, bytes);
}

// Whether an entry of the client is among what is wanted.
bool IsWanted(const std::string &client, const std::vector<std::string> &clients) {
  return std::ranges::any_of(clients, [&](const std::string &wanted) {
    return client.empty() || client == wanted || (client == "oe" && wanted.starts_with("oe"));
  });
}

std::string InstallPlugin() {
  const std::filesystem::path plugin = platform::SamplePlugin();
  std::ifstream file(plugin, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (bytes.empty())
    return plugin.string() + ": the sample plug-in can't be read";
  return EnterFile(Below(MailerFolder, PluginFile), bytes) ? "" : "the sample plug-in can't be written";
}

// A profile registry with one profile, in the order in which the client makes its entries. One that lists profiles
// already stays.
std::string InstallProfileRegistry() {
  const std::string path = Placed(n6::RegistryDatPath(AppData));
  ProfileRegistry registry;
  if (!EnterFile(path, NewRegistryDat()) || !registry.Open(path))
    return path + ": the profile registry can't be made";
  registry.Parse();
  if (registry.FindPath(n6::ProfilesPath, "") >= 0)
    return {};
  registry.AddKey(0, "Users");
  const int32_t profiles = registry.AddKey(registry.AddKey(0, n6::CommonKey), n6::ProfilesKey);
  registry.AddKey(0, "Version Registry");
  registry.AddKey(0, "Private Arenas");
  registry.SetValue(profiles, n6::CurrentProfileValue, "default");
  registry.SetValue(profiles, "Version", "1.0");
  registry.SetValue(profiles, "HavePregInfo", "no");
  const int32_t profile = registry.AddKey(profiles, "default");
  registry.SetValue(profile, n6::MigratedValue, "yes");
  registry.SetValue(profile, n6::DirectoryValue, Placed(MozillaProfile));
  std::string file;
  if (!registry.Save() ||
      !ReadWholeFile(OpenFileAlone(path.c_str(), GENERIC_READ, OPEN_EXISTING), registry.ImageLength(), file))
    return path + ": the profile registry can't be written";
  EnterLength(file);
  return WriteWholeFile(path.c_str(), GENERIC_WRITE, file) ? "" : path + ": the profile registry can't be written";
}

// The entry of a client that is on the machine already; empty if none is.
std::string EarlierClient() {
  for (const char *key : {nc::ProductKey, n6::ProductKey, oe::ProductKey, external_mailer::PluginKey})
    if (KeyReadable(HKEY_LOCAL_MACHINE, key))
      return key;
  return {};
}

} // namespace

std::string InstallSamples(const std::vector<std::string> &clients) {
  if (const std::string key = EarlierClient(); !key.empty())
    return platform::MachineName() + ": there is a client already, HKEY_LOCAL_MACHINE\\" + key;
  for (const SampleFile &file : Files)
    if (IsWanted(file.client, clients) && !EnterFile(file.path, file.bytes))
      return file.path + ": the file can't be written";
  std::string error = IsWanted("netscape6", clients) ? InstallProfileRegistry() : "";
  if (error.empty() && IsWanted("mailer", clients))
    error = InstallPlugin();
  // Last: what the registry names counts as installed, and a machine with clients can't become a sample machine.
  for (const SampleValue &value : Values)
    if (error.empty() && IsWanted(value.client, clients) && !EnterValue(value))
      error = value.key + ": the registry can't be written";
  return error;
}
