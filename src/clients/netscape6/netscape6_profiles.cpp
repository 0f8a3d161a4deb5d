#include "clients/netscape6/netscape6_profiles.h"

#include "clients/file_queries.h"
#include "clients/profile_prefs.h"
#include "clients/registry_key.h"
#include "stores/file_handle.h"
#include "stores/profile_registry.h"

namespace netscape6 {

const InstalledProgram Program = {"Netscape6 (Netscape)",
                                  "SOFTWARE\\Netscape\\Netscape 6",
                                  "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\Netscp6.exe",
                                  "6.",
                                  "SOFTWARE\\Netscape\\Netscape 6",
                                  "CurrentVersion",
                                  "X.00"};

namespace {

constexpr const char *FirstPrefs = "user_pref(\"prefs.converted-to-utf8\", true);\n";
constexpr const char *ShellFoldersKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
// The profile's directories are numbered up to this one.
constexpr int LastNumber = 65534;
constexpr size_t PathSize = 256;

bool OpenRegistry(ProfileRegistry &registry) {
  std::string path;
  if (!GetRegistryDatPath(path) || !registry.Open(path))
    return false;
  registry.Parse();
  return true;
}

// The first numbered directory below the folder whose prefs.js can't be read; empty if all are taken.
std::string FreeDirectory(const std::string &folder) {
  for (int number = 0; number <= LastNumber; ++number) {
    std::string directory = folder + "zuvio" + std::to_string(number) + ".slt";
    if (!CanReadFile(PrefsPath(directory).c_str()))
      return directory;
  }
  return {};
}

// Enters the profile and makes it the current one; false if there is no room.
bool Register(ProfileRegistry &registry, const std::string &name, const std::string &directory) {
  const int32_t profiles = registry.AddKey(registry.AddKey(0, "Common"), "Profiles");
  registry.SetValue(profiles, "CurrentProfile", name);
  const int32_t profile = registry.AddKey(profiles, name);
  return registry.SetValue(profile, "migrated", "yes") >= 0 && registry.SetValue(profile, "directory", directory) >= 0;
}

} // namespace

int32_t GetAppDataPath(std::string &path) {
  ITEMIDLIST *list = nullptr;
  char buffer[MAX_PATH] = "";
  if (SHGetSpecialFolderLocation(nullptr, CSIDL_APPDATA, &list) == S_OK) {
    const BOOL found = SHGetPathFromIDListA(list, buffer);
    CoTaskMemFree(list);
    path = buffer;
    if (found)
      return 1;
  }
  return ReadStringValue(HKEY_CURRENT_USER, ShellFoldersKey, "AppData", path);
}

int32_t GetRegistryDatPath(std::string &path) {
  if (!GetAppDataPath(path))
    return 0;
  path += "\\Mozilla\\registry.dat";
  return 1;
}

bool DirectoryFits(const std::string &directory) { return PrefsPath(directory).size() < PathSize; }

int32_t FindProfile(const std::string &name, std::string &key, std::string &message) {
  key.clear();
  ProfileRegistry registry;
  std::string directory;
  if (!OpenRegistry(registry) || !registry.GetValue("Common\\Profiles\\" + name, "directory", directory) ||
      directory.empty() || !CanReadFile(PrefsPath(directory).c_str()))
    return 0;
  key = directory;
  message = SameProfileQuestion(name);
  return 1;
}

int32_t MakeProfile(const std::string &name, std::string &key) {
  ProfileRegistry registry;
  std::string appData;
  if (name.empty() || !OpenRegistry(registry) || !GetAppDataPath(appData))
    return 0;
  const std::string folder = appData + "\\Mozilla\\Users50\\" + name + '\\';
  const std::string directory = FreeDirectory(folder);
  // What can't be read may be there all the same, and is then somebody's.
  if (directory.empty() || !DirectoryFits(directory) || PathExists(PrefsPath(directory).c_str()) ||
      !Register(registry, name, directory))
    return 0;

  CreateDirectoryA(folder.c_str(), nullptr);
  CreateDirectoryA(directory.c_str(), nullptr);
  if (!WriteWholeFile(PrefsPath(directory).c_str(), GENERIC_READ | GENERIC_WRITE, FirstPrefs) || !registry.Save())
    return 0;
  key = directory;
  return 1;
}

} // namespace netscape6
