#include "support/client_machine.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace {

const std::string AppPaths = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\";

// Registers a program as installed, and makes its file.
void InstallProgram(const std::string &name) {
  const std::string path = std::string(ScratchFolder) + "\\" + name;
  PutFile(path, "program");
  PutString(HKEY_LOCAL_MACHINE, AppPaths + name, nullptr, path);
}

// The file in which this process's plug-ins store the account that they get; removed at the end of the process.
struct KeptFile {
  const std::filesystem::path path =
      std::filesystem::temp_directory_path() / ("acctkit-plugin-kept-" + std::to_string(getpid()));

  void Remove() const {
    std::error_code missing;
    std::filesystem::remove(path, missing);
  }
  ~KeptFile() { Remove(); }
};

} // namespace

std::string CommunicatorFolder() { return std::string(ScratchFolder) + "\\Communicator"; }

std::string MozillaFolder() { return std::string(ScratchFolder) + "\\AppData\\Mozilla"; }

std::string PrefsPathOf(const std::string &profile) {
  return CommunicatorFolder() + "\\Users\\" + profile + "\\prefs.js";
}

void ClientTest::InstallOutlookExpress(const char *mediaVersion) {
  InstallProgram("msimn.exe");
  MakeKey(HKEY_LOCAL_MACHINE, OutlookKey);
  if (mediaVersion != nullptr)
    PutString(HKEY_LOCAL_MACHINE, OutlookKey, "MediaVer", mediaVersion);
}

void ClientTest::InstallCommunicator(const char *version) {
  InstallProgram("NETSCAPE.EXE");
  MakeFolders(CommunicatorFolder());
  MakeKey(HKEY_LOCAL_MACHINE, NavigatorKey);
  if (version != nullptr)
    PutString(HKEY_LOCAL_MACHINE, NavigatorKey, "CurrentVersion", version);
  PutString(HKEY_CURRENT_USER, "Software\\Netscape\\Netscape Navigator\\Main", "Install Directory",
            CommunicatorFolder());
}

void ClientTest::InstallNetscape6(const char *version) {
  InstallProgram("Netscp6.exe");
  MakeKey(HKEY_LOCAL_MACHINE, Netscape6Key);
  if (version != nullptr)
    PutString(HKEY_LOCAL_MACHINE, Netscape6Key, "CurrentVersion", version);
  // Windows uses the second key and keeps the first equal to it.
  for (const char *key : {"Shell Folders", "User Shell Folders"})
    PutString(HKEY_CURRENT_USER, std::string("Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\") + key,
              "AppData", std::string(ScratchFolder) + "\\AppData");
  MakeFolders(MozillaFolder() + "\\Users50");
  CopyOntoMachine(SAMPLE_DIR "/profiles-small.dat", MozillaFolder() + "\\registry.dat");
}

std::string ClientTest::InstallPlugin(const std::string &plugin) {
  const std::string folder =
      std::string(ScratchFolder) + "\\\x95\x5c"; // a folder whose name ends in the byte of the backslash
  MakeFolders(folder);
  CopyOntoMachine(std::string(PLUGIN_DIR) + "/" + plugin + ".dll", folder + "\\plugin.dll");
  PutString(HKEY_LOCAL_MACHINE, PluginKey, "InstPath", folder);
  PutString(HKEY_LOCAL_MACHINE, PluginKey, "ProgramName", "plugin.dll");

  const std::string mailer = folder + "\\mailer.exe";
  CopyOntoMachine(std::string(PLUGIN_DIR) + "/versioned.exe", mailer);
  static const KeptFile file;
  file.Remove();
  const std::string kept = file.path.string();
  SetEnvironment("ACCTKIT_PLUGIN_NAME", "Mailer");
  SetEnvironment("ACCTKIT_PLUGIN_PATH", mailer);
  SetEnvironment("ACCTKIT_PLUGIN_KEEP", kept);
  SetEnvironment("ACCTKIT_PLUGIN_FLAG", "7");
  return kept;
}

std::string ClientTest::Kept(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

MailAccountSpec SampleMailSpec() {
  MailAccountSpec spec;
  spec.userId = "ABC01234";
  spec.senderName = "山田 太郎";
  spec.accountName = "@zuvio(ABC01234)";
  spec.smtpServer = "smtp.example";
  spec.popServer = "pop.example";
  spec.mailAddress = "taro@zuvio.example";
  spec.connectionName = "dialer";
  return spec;
}

NewsAccountSpec SampleNewsSpec(int32_t serverIndex) {
  NewsAccountSpec spec;
  spec.userId = "ABC01234";
  spec.senderName = "山田 太郎";
  spec.accountName = "@zuvio(ABC01234)";
  spec.newsHosts = {"forum-nntp.example", "square.example"};
  spec.newsServerNames = {"フォーラム会議室", "カモメ"};
  spec.mailAddress = "taro@zuvio.example";
  spec.newsServerOn = {1, 1};
  spec.serverIndex = serverIndex;
  return spec;
}
