#include "sample_machine.h"

#include "clients/file_queries.h"
#include "clients/registry_key.h"
#include "platform.h"
#include "registry_view.h"
#include "samples/programs.h"
#include "stores/file_handle.h"
#include "stores/profile_registry.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string_view>

const std::vector<std::string> SampleClients = {"oe4", "oe5", "communicator", "netscape6", "mailer"};

namespace {

// A value of the sample machine, entered with one of the clients; a null text is a number.
struct SampleValue {
  const char *client;
  HKEY root;
  const char *key;
  const char *name;
  const char *text;
  DWORD number;
};

#define ACCOUNT_MANAGER "Software\\Microsoft\\Internet Account Manager"
#define ACCOUNT ACCOUNT_MANAGER "\\Accounts\\00000001"
#define NAVIGATOR "Software\\Netscape\\Netscape Navigator"
#define CURRENT_VERSION "SOFTWARE\\Microsoft\\Windows\\CurrentVersion"
#define APP_PATHS CURRENT_VERSION "\\App Paths\\"
#define PROGRAM_FILES "%ProgramFiles%"
#define DEFAULT_PROGRAM_FILES "C:\\Program Files"
#define COMMUNICATOR_FOLDER "C:\\Program Files\\Netscape\\Communicator"
#define PROFILE_FOLDER COMMUNICATOR_FOLDER "\\Users\\home"
#define APP_DATA "C:\\WINDOWS\\Application Data"
#define MOZILLA APP_DATA "\\Mozilla"
#define MOZILLA_PROFILE MOZILLA "\\Users50\\default\\4x7q2k1m.slt"
#define MAILER_FOLDER "C:\\Program Files\\Harveld\\SampleMailer"
#define NETSCAPE6_PROGRAM "C:\\Program Files\\Netscape\\Netscape 6\\Netscp6.exe"
#define SHELL_FOLDERS "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\"
#define IDENTITY "{5B8E2F40-1C11-4D5A-9E0B-7A6D3C2F1E00}"

const SampleValue Values[] = {
    {"oe4", HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Outlook Express", "MediaVer", "4,72,3110,0", 0},
    {"oe5", HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Outlook Express", "MediaVer", "5,50,4522,1200", 0},
    {"oe5", HKEY_CURRENT_USER, "Identities", "Default User ID", IDENTITY, 0},
    {"oe", HKEY_LOCAL_MACHINE, APP_PATHS "msimn.exe", nullptr, PROGRAM_FILES "\\Outlook Express\\msimn.exe", 0},
    {"oe", HKEY_LOCAL_MACHINE, CURRENT_VERSION, "ProgramFilesDir", DEFAULT_PROGRAM_FILES, 0},
    {"oe", HKEY_CURRENT_USER, "Software\\Microsoft\\Internet Explorer\\Main", "Start Page", "http://old.example/", 0},
    {"oe", HKEY_CURRENT_USER, ACCOUNT_MANAGER, "Account Name", nullptr, 2},
    {"oe", HKEY_CURRENT_USER, ACCOUNT_MANAGER, "Default Mail Account", "00000001", 0},
    {"oe", HKEY_CURRENT_USER, ACCOUNT, "Account Name", "会社のメール", 0},
    {"oe", HKEY_CURRENT_USER, ACCOUNT, "POP3 Server", "pop.company.example", 0},
    {"oe", HKEY_CURRENT_USER, ACCOUNT, "POP3 User Name", "yamada", 0},
    {"oe", HKEY_CURRENT_USER, ACCOUNT, "SMTP Server", "smtp.company.example", 0},
    {"oe", HKEY_CURRENT_USER, ACCOUNT, "SMTP Email Address", "yamada@company.example", 0},
    {"oe", HKEY_CURRENT_USER, ACCOUNT, "SMTP Display Name", "山田 太郎", 0},
    {"oe", HKEY_CURRENT_USER, ACCOUNT, "Connection Type", nullptr, 2},
    {"oe", HKEY_CURRENT_USER, ACCOUNT, "Connectoid", "@zuvioダイヤラ", 0},
    {"communicator", HKEY_LOCAL_MACHINE, NAVIGATOR, "CurrentVersion", "4.75", 0},
    {"communicator", HKEY_LOCAL_MACHINE, "SOFTWARE\\Netscape\\Conference", "CurrentVersion", "4.75 [ja]", 0},
    {"communicator", HKEY_LOCAL_MACHINE, APP_PATHS "NETSCAPE.EXE", nullptr,
     COMMUNICATOR_FOLDER "\\Program\\NETSCAPE.EXE", 0},
    {"communicator", HKEY_CURRENT_USER, NAVIGATOR "\\Main", "Install Directory", COMMUNICATOR_FOLDER, 0},
    {"communicator", HKEY_LOCAL_MACHINE, NAVIGATOR "\\Users\\home", "DirRoot", PROFILE_FOLDER, 0},
    {"communicator", HKEY_LOCAL_MACHINE, NAVIGATOR "\\Users\\home", "EmailAddr", "yamada@company.example", 0},
    {"communicator", HKEY_LOCAL_MACHINE, NAVIGATOR "\\Users\\home", "UserName", "山田 太郎", 0},
    {"communicator", HKEY_CURRENT_USER, NAVIGATOR "\\biff\\users\\home", "defaultServer", "pop.company.example", 0},
    {"communicator", HKEY_CURRENT_USER, NAVIGATOR "\\biff\\users\\home\\servers\\pop.company.example", "popstatePath",
     PROFILE_FOLDER "\\mail\\popstate.dat", 0},
    {"netscape6", HKEY_LOCAL_MACHINE, "SOFTWARE\\Netscape\\Netscape 6", "CurrentVersion", "6.2 (ja)", 0},
    {"netscape6", HKEY_LOCAL_MACHINE, APP_PATHS "Netscp6.exe", nullptr, NETSCAPE6_PROGRAM, 0},
    {"netscape6", HKEY_CURRENT_USER, SHELL_FOLDERS "Shell Folders", "AppData", APP_DATA, 0},
    {"netscape6", HKEY_CURRENT_USER, SHELL_FOLDERS "User Shell Folders", "AppData", APP_DATA, 0},
    {"mailer", HKEY_LOCAL_MACHINE, "SOFTWARE\\Harveld\\@zuvioSetup", "InstPath", MAILER_FOLDER, 0},
    {"mailer", HKEY_LOCAL_MACHINE, "SOFTWARE\\Harveld\\@zuvioSetup", "ProgramName", "sample_mailer.dll", 0},
};

struct SampleFile {
  const char *client; // empty: on every machine
  const char *path;
  std::string_view bytes;
};
const SampleFile Files[] = {
    {"oe", PROGRAM_FILES "\\Outlook Express\\msimn.exe", sample_programs::outlook_express},
    {"communicator", COMMUNICATOR_FOLDER "\\Program\\NETSCAPE.EXE", sample_programs::communicator},
    {"communicator", PROFILE_FOLDER "\\prefs.js",
     "// Netscape User Preferences\r\n// This is a generated file!  Do not edit.\r\n\r\n"
     "user_pref(\"browser.startup.homepage\", \"http://old.example/\");\r\n"
     "user_pref(\"mail.identity.useremail\", \"yamada@company.example\");\r\n"
     "user_pref(\"mail.identity.username\", \"山田 太郎\");\r\n"
     "user_pref(\"mail.pop_name\", \"yamada\");\r\n"},
    {"netscape6", NETSCAPE6_PROGRAM, sample_programs::netscape6},
    {"netscape6", MOZILLA_PROFILE "\\prefs.js",
     "# Mozilla User Preferences\n\nuser_pref(\"browser.startup.homepage\", \"http://old.example/\");\n"},
    {"mailer", MAILER_FOLDER "\\mailer.exe", sample_programs::mailer},
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
  if (ShownValue(value.root, value.key, value.name))
    return true;
  RegistryKey key;
  const int32_t entered = value.text != nullptr ? key.WriteValue(value.root, value.key, value.name, REG_SZ, value.text,
                                                                 static_cast<DWORD>(std::strlen(value.text) + 1))
                                                : key.WriteValue(value.root, value.key, value.name, REG_DWORD,
                                                                 &value.number, sizeof value.number);
  return entered != 0;
}

// A folder that each machine has in a place of its own, which a value tells.
struct MachineFolder {
  std::string_view sample; // as it is in the samples' paths
  HKEY root;
  const char *key;
  const char *name;
  const char *fallback;
};
const MachineFolder MachineFolders[] = {
    {APP_DATA, HKEY_CURRENT_USER, SHELL_FOLDERS "Shell Folders", "AppData", APP_DATA},
    {PROGRAM_FILES, HKEY_LOCAL_MACHINE, CURRENT_VERSION, "ProgramFilesDir", DEFAULT_PROGRAM_FILES},
};

// Where the machine has what the samples have at a path.
std::string Placed(const std::string &path) {
  for (const MachineFolder &folder : MachineFolders)
    if (path.starts_with(folder.sample))
      return ShownValue(folder.root, folder.key, folder.name).value_or(folder.fallback) +
             path.substr(folder.sample.size());
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

// Whether the entry belongs to one of the clients; "oe" stands for either version.
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
  return EnterFile(MAILER_FOLDER "\\sample_mailer.dll", bytes) ? "" : "the sample plug-in can't be written";
}

// A profile registry with one profile, in the order in which the client makes its entries. One that lists profiles
// already stays.
std::string InstallProfileRegistry() {
  constexpr size_t LengthOffset = 8;
  const std::string path = Placed(MOZILLA "\\registry.dat");
  // Magic number, version 1.2, the file's length, the root's offset; the root's name, and the root itself.
  std::string file("ADdv\1\0\2\0\0\0\0\0\x82\0\0\0", 16);
  file.resize(128);
  file.append("/\0\x82\0\0\0\x80\0\0\0\2\0\1\0", 14).resize(162);

  ProfileRegistry registry;
  if (!EnterFile(path, file) || !registry.Open(path))
    return path + ": the profile registry can't be made";
  registry.Parse();
  if (registry.FindPath("Common\\Profiles", "") >= 0)
    return {};
  registry.AddKey(0, "Users");
  const int32_t profiles = registry.AddKey(registry.AddKey(0, "Common"), "Profiles");
  registry.AddKey(0, "Version Registry");
  registry.AddKey(0, "Private Arenas");
  registry.SetValue(profiles, "CurrentProfile", "default");
  registry.SetValue(profiles, "Version", "1.0");
  registry.SetValue(profiles, "HavePregInfo", "no");
  const int32_t profile = registry.AddKey(profiles, "default");
  registry.SetValue(profile, "migrated", "yes");
  registry.SetValue(profile, "directory", Placed(MOZILLA_PROFILE));
  const uint32_t length = registry.ImageLength();
  const auto saved = registry.Save() ? FileBytes(path) : std::nullopt;
  if (!saved)
    return path + ": the profile registry can't be written";
  file = *saved;
  std::memcpy(&file[LengthOffset], &length, sizeof length);
  return WriteWholeFile(path.c_str(), GENERIC_WRITE, file) ? "" : path + ": the profile registry can't be written";
}

// The entry of a client that is on the machine already; empty if none is.
std::string EarlierClient() {
  for (const char *key : {"SOFTWARE\\Netscape\\Netscape Navigator", "SOFTWARE\\Netscape\\Netscape 6",
                          "SOFTWARE\\Microsoft\\Outlook Express", "SOFTWARE\\Harveld\\@zuvioSetup"})
    if (KeyReadable(HKEY_LOCAL_MACHINE, key))
      return key;
  return {};
}

} // namespace

std::string InstallSamples(const std::vector<std::string> &clients) {
  if (const std::string key = EarlierClient(); !key.empty())
    return platform::MachineName() + ": there is a client already, HKEY_LOCAL_MACHINE\\" + key;
  for (const SampleFile &file : Files)
    if (IsWanted(file.client, clients) && !EnterFile(file.path, std::string(file.bytes)))
      return std::string(file.path) + ": the file can't be written";
  std::string problem = IsWanted("netscape6", clients) ? InstallProfileRegistry() : "";
  if (problem.empty() && IsWanted("mailer", clients))
    problem = InstallPlugin();
  // Last, since what the registry names counts as installed, and as no place for a sample machine.
  for (const SampleValue &value : Values)
    if (problem.empty() && IsWanted(value.client, clients) && !EnterValue(value))
      problem = std::string(value.key) + ": the registry can't be written";
  return problem;
}
