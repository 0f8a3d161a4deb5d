#include "clients/netscape6/netscape6_profiles.h"

#include "clients/file_queries.h"
#include "clients/netscape6/netscape6_layout.h"
#include "clients/profile_prefs.h"
#include "clients/registry_key.h"
#include "clients/windows_layout.h"
#include "stores/file_handle.h"
#include "stores/profile_registry.h"

namespace netscape6 {

namespace {

// The profile's directories are numbered up to this one.
constexpr int LastNumber = 65534;

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
    std::string directory = NumberedDirectory(folder, number);
    if (!CanReadFile(PrefsPath(directory).c_str()))
      return directory;
  }
  return {};
}

// Enters the profile and makes it the current one; false if there is no room.
bool Register(ProfileRegistry &registry, const std::string &name, const std::string &directory) {
  const int32_t profiles = registry.AddKey(registry.AddKey(0, CommonKey), ProfilesKey);
  registry.SetValue(profiles, CurrentProfileValue, name);
  const int32_t profile = registry.AddKey(profiles, name);
  return registry.SetValue(profile, MigratedValue, "yes") >= 0 &&
         registry.SetValue(profile, DirectoryValue, directory) >= 0;
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
  return ReadStringValue(HKEY_CURRENT_USER, ShellFoldersKey, AppDataValue, path);
}

int32_t GetRegistryDatPath(std::string &path) {
  if (!GetAppDataPath(path))
    return 0;
  path = RegistryDatPath(path);
  return 1;
}

std::optional<std::string> FindProfile(const std::string &name) {
  ProfileRegistry registry;
  std::string directory;
  if (!OpenRegistry(registry) || !registry.GetValue(ProfilePath(name), DirectoryValue, directory) ||
      directory.empty() || !CanReadFile(PrefsPath(directory).c_str()))
    return std::nullopt;
  return directory;
}

bool EnsureProfile(const std::string &name, std::string &key) {
  if (!key.empty())
    return PrefsPathFits(key);
  ProfileRegistry registry;
  std::string appData;
  if (name.empty() || !OpenRegistry(registry) || !GetAppDataPath(appData))
    return false;
  const std::string folder = ProfileFolder(appData, name);
  const std::string directory = FreeDirectory(folder);
  // A prefs.js that can't be read may still be there, and then belongs to somebody.
  if (directory.empty() || !PrefsPathFits(directory) || PathExists(PrefsPath(directory).c_str()) ||
      !Register(registry, name, directory))
    return false;

  CreateDirectoryA(folder.c_str(), nullptr);
  CreateDirectoryA(directory.c_str(), nullptr);
  if (!WriteWholeFile(PrefsPath(directory).c_str(), GENERIC_READ | GENERIC_WRITE, LineText({ConvertedPref, "true"})) ||
      !registry.Save())
    return false;
  key = directory;
  return true;
}

} // namespace netscape6
