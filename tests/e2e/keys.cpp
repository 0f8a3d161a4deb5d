// Opens, makes and enumerates keys in all the ways that a 64-bit system answers a 32-bit process differently in, for
// comparing what both platforms make of it. Prints each result.
#include "win32/win32.h"

#include <cstdio>
#include <cstring>
#include <string>

namespace {

// A key, as a path below a root or below a key opened for itself. Each is looked for, made, marked and looked for
// again, in this order: later ones meet what earlier ones made.
struct Case {
  const char *opened;
  const char *path;
};
#define CURRENT "Software\\Microsoft\\Windows\\CurrentVersion"
#define NT_CURRENT "Software\\Microsoft\\Windows NT\\CurrentVersion"
const Case LocalMachine[] = {
    {"", "Software\\Microsoft\\Outlook Express"},
    {"", "SOFTWARE\\NETSCAPE\\Netscape Navigator\\Users\\x"},
    {"", "software\\Harveld\\@zuvioSetup"},
    {"", CURRENT},
    {"", CURRENT "\\App Paths\\a.exe"},
    {"", CURRENT "\\app paths\\b.exe\\below"},
    {"", CURRENT "\\App Pathsx\\c.exe"},
    {"", CURRENT "\\App Path\\c.exe"},
    {"Software", "Microsoft\\Windows\\CurrentVersion\\App Paths\\d.exe"},
    {CURRENT, "App Paths\\e.exe"},
    {CURRENT "\\App Paths", "f.exe"},
    {"Software", "Unrelated\\Below"},
    {"Software", "Wow6432Node\\Below"},
    {"", "Software\\Wow6432Node"},
    {"", "Software\\Wow6432Node\\New"},
    {"", "Software\\WOW6432node\\Microsoft\\New"},
    {"Software\\Wow6432Node", "New2"},
    {"", "Software\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\App Paths\\g.exe"},
    {"Software\\Wow6432Node", "Microsoft\\Windows\\CurrentVersion\\App Paths\\h.exe"},
    {"", "Software\\Wow6432NodeX\\New"},
    {"", "Software\\Wow6432Nod\\New"},
    {"", "Softwarex\\New"},
    {"", "System\\CurrentControlSet\\New"},
    {"", "Software\\Other\\Wow6432Node\\Below"},
    {"", "Software\\Other\\Beside"},
    {"Software\\Other", "Beside2"},
    {"", "Software\\Other\\Wow6432Node\\Below2"},
    {"", "Software\\Classes"},
    {"", "Software\\Classes\\.new\\Below"},
    {"", "Software\\Classes\\CLSID\\{new}"},
    {"", "Software\\classes\\interface\\{new}\\Below"},
    {"", "Software\\Classes\\AppID\\{new}"},
    {"", "Software\\Classes\\TypeLib\\{new}"},
    {"", "Software\\Classes\\Wow6432Node\\New"},
    {"", "Software\\Classes\\Wow6432Node\\CLSID\\{new2}"},
    {"", "Software\\Wow6432Node\\Classes\\New2"},
    {"", "Software\\Wow6432Node\\Classes\\CLSID\\{new3}"},
    {"Software", "Classes\\CLSID\\{new4}"},
    {"Software\\Classes", "CLSID\\{new5}"},
    {"Software\\Classes", "New3"},
    {"Software\\Classes\\CLSID", "{new6}"},
    {"", "Software\\Clients\\Mail\\New"},
    {"", "Software\\Policies\\New"},
    {"", "Software\\RegisteredApplications"},
    {"", "Software\\Registered Applications"},
    {"", "Software\\Microsoft\\Clients"},
    {"", "Software\\Microsoft\\COM3\\New"},
    {"", "Software\\Microsoft\\CTF\\TIP"},
    {"", "Software\\Microsoft\\Cryptography\\Services\\New"},
    {"", "Software\\Microsoft\\Cryptography\\New"},
    {"", "Software\\Microsoft\\EventSystem"},
    {"", "Software\\Microsoft\\Notepad\\DefaultFonts"},
    {"", "Software\\Microsoft\\OLE"},
    {"", "Software\\Microsoft\\RPC\\New"},
    {"", "Software\\Microsoft\\SystemCertificates\\New"},
    {"", "Software\\Microsoft\\Shared Tools\\MSInfo"},
    {"", CURRENT "\\Explorer\\DriveIcons"},
    {"", CURRENT "\\Explorer\\Other"},
    {"", CURRENT "\\Group Policy"},
    {"", CURRENT "\\Policies\\New"},
    {"", CURRENT "\\Run"},
    {"", CURRENT "\\Setup\\New"},
    {"", CURRENT "\\Telephony\\Locations"},
    {"", CURRENT "\\Uninstall\\New"},
    {"", NT_CURRENT},
    {"", NT_CURRENT "\\Fonts"},
    {"", NT_CURRENT "\\Image File Execution Options\\New"},
    {"", NT_CURRENT "\\ProfileList\\New"},
    {"", NT_CURRENT "\\Winlogon"},
};
const Case CurrentUser[] = {
    {"", "Identities\\New"},
    {"", "Software\\New"},
    {"", "Software\\Classes\\CLSID\\{new}"},
    {"", CURRENT "\\App Paths\\a.exe"},
    {"Software", "Microsoft\\Internet Account Manager\\New"},
    {"", "Software\\Wow6432NodeX\\New"},
    {"", "Software\\Wow6432Node\\New"},
    {"", "Software\\Microsoft\\Behind"},
    {"Software", "Behind"},
};

// The values that the key has been marked with, or what kept it from being opened.
std::string Marks(HKEY from, const char *path) {
  HKEY key = nullptr;
  const LSTATUS opened = RegOpenKeyExA(from, path, 0, KEY_READ, &key);
  if (opened != ERROR_SUCCESS)
    return "error " + std::to_string(opened);
  char mark[512] = "";
  DWORD size = sizeof mark;
  RegQueryValueExA(key, "Mark", nullptr, nullptr, reinterpret_cast<BYTE *>(mark), &size);
  RegCloseKey(key);
  return '"' + std::string(mark) + '"';
}

std::string Make(HKEY from, const char *path, const std::string &mark) {
  HKEY key = nullptr;
  DWORD disposition = 0;
  const LSTATUS made = RegCreateKeyExA(from, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, &disposition);
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

template <size_t Count> void Run(HKEY root, const Case (&cases)[Count]) {
  for (const Case &tried : cases) {
    HKEY from = root;
    if (*tried.opened != '\0' && RegOpenKeyExA(root, tried.opened, 0, KEY_READ, &from) != ERROR_SUCCESS)
      continue;
    const std::string name = std::string(tried.opened) + " | " + tried.path;
    const std::string before = Marks(from, tried.path);
    const std::string made = Make(from, tried.path, name);
    std::printf("%s: %s, %s, %s\n", name.c_str(), before.c_str(), made.c_str(), Marks(from, tried.path).c_str());
    if (from != root)
      RegCloseKey(from);
  }
  for (const Case &tried : cases)
    std::printf("%s\\%s: %s\n", tried.opened, tried.path,
                Marks(root, (std::string(tried.opened) + '\\' + tried.path).c_str() + (*tried.opened == '\0')).c_str());
}

} // namespace

int main() {
  Run(HKEY_LOCAL_MACHINE, LocalMachine);
  Run(HKEY_CURRENT_USER, CurrentUser);
  for (const char *path : {"Software", "Software\\Netscape", "Software\\Wow6432Node", CURRENT "\\App Paths",
                           "Software\\Other", "Software\\Classes\\Interface"})
    PrintSubkeys(HKEY_LOCAL_MACHINE, path);
}
