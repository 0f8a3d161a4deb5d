// Opens, makes and enumerates keys in all the ways in which a 64-bit system answers a 32-bit process differently, so
// that the results on both platforms can be compared. Prints each result.
#include "win32/win32.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

// Keys, as paths below a root or below a key that was opened first. Each is opened, made, marked and opened again, in
// this order, so later ones see what earlier ones made.
struct Cases {
  const char *opened;
  const char *above; // the beginning of the paths
  std::vector<const char *> below;
};
#define CURRENT "Software\\Microsoft\\Windows\\CurrentVersion"
#define NT_CURRENT "Software\\Microsoft\\Windows NT\\CurrentVersion"
const std::vector<Cases> LocalMachine = {
    {"", "", {"Software\\Microsoft\\Outlook Express", "SOFTWARE\\NETSCAPE\\Netscape Navigator\\Users\\x"}},
    {"", "", {"software\\Harveld\\@zuvioSetup", CURRENT}},
    {"", CURRENT, {"\\App Paths\\a.exe", "\\app paths\\b.exe\\below", "\\App Pathsx\\c.exe", "\\App Path\\c.exe"}},
    {"Software", "", {"Microsoft\\Windows\\CurrentVersion\\App Paths\\d.exe"}},
    {CURRENT, "", {"App Paths\\e.exe"}},
    {CURRENT "\\App Paths", "", {"f.exe"}},
    {"Software", "", {"Unrelated\\Below", "Wow6432Node\\Below"}},
    {"", "Software\\", {"Wow6432Node", "Wow6432Node\\New", "WOW6432node\\Microsoft\\New"}},
    {"Software\\Wow6432Node", "", {"New2"}},
    {"", "Software\\Wow6432Node\\", {"Microsoft\\Windows\\CurrentVersion\\App Paths\\g.exe"}},
    {"Software\\Wow6432Node", "", {"Microsoft\\Windows\\CurrentVersion\\App Paths\\h.exe"}},
    {"", "Software", {"\\Wow6432NodeX\\New", "\\Wow6432Nod\\New", "x\\New"}},
    {"", "", {"System\\CurrentControlSet\\New"}},
    {"", "Software\\Other\\", {"Wow6432Node\\Below", "Beside"}},
    {"Software\\Other", "", {"Beside2"}},
    {"", "Software\\", {"Other\\Wow6432Node\\Below2", "Classes", "Classes\\.new\\Below", "Classes\\CLSID\\{new}"}},
    {"", "Software\\", {"classes\\interface\\{new}\\Below", "Classes\\AppID\\{new}", "Classes\\TypeLib\\{new}"}},
    {"", "Software\\Classes\\", {"Wow6432Node\\New", "Wow6432Node\\CLSID\\{new2}"}},
    {"", "Software\\Wow6432Node\\Classes\\", {"New2", "CLSID\\{new3}"}},
    {"Software", "", {"Classes\\CLSID\\{new4}"}},
    {"Software\\Classes", "", {"CLSID\\{new5}", "New3"}},
    {"Software\\Classes\\CLSID", "", {"{new6}"}},
    {"", "Software\\", {"Clients\\Mail\\New", "Policies\\New", "RegisteredApplications", "Registered Applications"}},
    {"", "Software\\Microsoft\\", {"Clients", "COM3\\New", "CTF\\TIP", "Cryptography\\Services\\New"}},
    {"", "Software\\Microsoft\\", {"Cryptography\\New", "EventSystem", "Notepad\\DefaultFonts", "OLE", "RPC\\New"}},
    {"", "Software\\Microsoft\\", {"SystemCertificates\\New", "Shared Tools\\MSInfo"}},
    {"", CURRENT "\\", {"Explorer\\DriveIcons", "Explorer\\Other", "Group Policy", "Policies\\New", "Run"}},
    {"", CURRENT "\\", {"Setup\\New", "Telephony\\Locations", "Uninstall\\New"}},
    {"", NT_CURRENT, {"", "\\Fonts", "\\Image File Execution Options\\New", "\\ProfileList\\New", "\\Winlogon"}},
};
const std::vector<Cases> CurrentUser = {
    {"", "", {"Identities\\New", "Software\\New", "Software\\Classes\\CLSID\\{new}", CURRENT "\\App Paths\\a.exe"}},
    {"Software", "", {"Microsoft\\Internet Account Manager\\New"}},
    {"", "Software\\", {"Wow6432NodeX\\New", "Wow6432Node\\New", "Microsoft\\Behind"}},
    {"Software", "", {"Behind"}},
};

// The values with which the key has been marked, or the error of opening it.
std::string Marks(HKEY from, const std::string &path) {
  HKEY key = nullptr;
  const LSTATUS opened = RegOpenKeyExA(from, path.c_str(), 0, KEY_READ, &key);
  if (opened != ERROR_SUCCESS)
    return "error " + std::to_string(opened);
  char mark[512] = "";
  DWORD size = sizeof mark;
  RegQueryValueExA(key, "Mark", nullptr, nullptr, reinterpret_cast<BYTE *>(mark), &size);
  RegCloseKey(key);
  return '"' + std::string(mark) + '"';
}

std::string Make(HKEY from, const std::string &path, const std::string &mark) {
  HKEY key = nullptr;
  DWORD disposition = 0;
  const LSTATUS made = RegCreateKeyExA(from, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, &disposition);
  if (made != ERROR_SUCCESS)
    return "error " + std::to_string(made);
  RegSetValueExA(key, "Mark", 0, REG_SZ, reinterpret_cast<const BYTE *>(mark.c_str()),
                 static_cast<DWORD>(mark.size() + 1));
  RegCloseKey(key);
  return disposition == REG_CREATED_NEW_KEY ? "made" : "there";
}

void PrintSubkeys(HKEY root, const char *path) {
  HKEY key = nullptr;
  RegOpenKeyExA(root, path, 0, KEY_READ, &key);
  char name[512];
  for (DWORD index = 0; RegEnumKeyA(key, index, name, sizeof name) == ERROR_SUCCESS; ++index)
    std::printf("%s has %s\n", path, name);
  RegCloseKey(key);
}

template <typename Function> void ForEach(const std::vector<Cases> &groups, Function function) {
  for (const Cases &group : groups)
    for (const char *below : group.below)
      function(std::string(group.opened), std::string(group.above) + below);
}

void Run(HKEY root, const std::vector<Cases> &groups) {
  ForEach(groups, [root](const std::string &opened, const std::string &path) {
    HKEY from = root;
    if (!opened.empty() && RegOpenKeyExA(root, opened.c_str(), 0, KEY_READ, &from) != ERROR_SUCCESS)
      return;
    const std::string name = opened + " | " + path;
    const std::string before = Marks(from, path);
    const std::string made = Make(from, path, name);
    std::printf("%s: %s, %s, %s\n", name.c_str(), before.c_str(), made.c_str(), Marks(from, path).c_str());
    if (from != root)
      RegCloseKey(from);
  });
  ForEach(groups, [root](const std::string &opened, const std::string &path) {
    const std::string whole = opened.empty() ? path : opened + '\\' + path;
    std::printf("%s: %s\n", whole.c_str(), Marks(root, whole).c_str());
  });
}

} // namespace

int main() {
  Run(HKEY_LOCAL_MACHINE, LocalMachine);
  Run(HKEY_CURRENT_USER, CurrentUser);
  for (const char *path : {"Software", "Software\\Netscape", "Software\\Wow6432Node", CURRENT "\\App Paths",
                           "Software\\Other", "Software\\Classes\\Interface"})
    PrintSubkeys(HKEY_LOCAL_MACHINE, path);
}
