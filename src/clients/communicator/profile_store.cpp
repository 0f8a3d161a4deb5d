#include "clients/communicator/profile_store.h"

#include "clients/files.h"
#include "clients/registry.h"
#include "stores/file_handle.h"

namespace communicator {

const char *const MainKey = "Software\\Netscape\\Netscape Navigator\\Main";

namespace {

constexpr const char *ProductKey = "SOFTWARE\\Netscape\\Netscape Navigator";
constexpr const char *ProgramKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\NETSCAPE.EXE";
constexpr const char *BiffKey = "Software\\Netscape\\Netscape Navigator\\biff\\users";
constexpr const char *MailboxState = "\\mail\\popstate.dat";
constexpr size_t NameSize = 256;

// A version 4.x. The test is for "4." anywhere up to the first dot.
bool IsVersion4(const std::string &version) {
  const size_t dot = version.find('.');
  return dot != std::string::npos && version.substr(0, dot + 1).find("4.") != std::string::npos;
}

// The directory of a listed profile, told by where the state of its POP mailbox is kept; empty if that can't be told.
std::string ListedDirectory(const std::string &profile) {
  std::string server;
  std::string state;
  if (!ReadText(HKEY_CURRENT_USER, BiffPath(profile), "defaultServer", server) ||
      !ReadText(HKEY_CURRENT_USER, BiffServerPath(profile, server), "popstatePath", state))
    return {};
  const size_t place = state.find(MailboxState);
  return place == std::string::npos ? std::string() : state.substr(0, place);
}

bool CanOpenPrefs(const std::string &directory) {
  return static_cast<bool>(FileHandle(CreateFileA(PrefsPath(directory).c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                                  nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)));
}

} // namespace

int32_t IsInstalled() {
  RegistryKey key;
  std::string path;
  if (!key.KeyExists(HKEY_LOCAL_MACHINE, ProductKey) || !key.KeyExists(HKEY_LOCAL_MACHINE, ProgramKey) ||
      !ReadPath(HKEY_LOCAL_MACHINE, ProgramKey, nullptr, path))
    return 0;
  std::string version;
  if (!ReadText(HKEY_LOCAL_MACHINE, ProductKey, "CurrentVersion", version))
    version = "X.00";
  return IsVersion4(version) ? 1 : 0;
}

int32_t ReadName(std::string &name) {
  const int32_t installed = IsInstalled();
  name = installed ? "NetscapeCommunicator (Netscape)" : "";
  return installed;
}

int32_t ReadProgramPath(std::string &path) {
  path.clear();
  return IsInstalled() ? ReadPath(HKEY_LOCAL_MACHINE, ProgramKey, nullptr, path) : 0;
}

int32_t ReadVersion(std::string &version) {
  version.clear();
  if (!IsInstalled())
    return 0;
  if (!ReadText(HKEY_LOCAL_MACHINE, "SOFTWARE\\Netscape\\Conference", "CurrentVersion", version))
    version = "4.xx";
  return 1;
}

std::string InstallDirectory() {
  std::string path;
  ReadPath(HKEY_CURRENT_USER, MainKey, "Install Directory", path);
  return path;
}

std::string ProfileDirectory(const std::string &installDirectory, const std::string &profile) {
  return installDirectory + "\\Users\\" + profile;
}

std::string PrefsPath(const std::string &directory) { return directory + "\\prefs.js"; }

std::string UserPath(const std::string &profile) { return std::string(ProductKey) + "\\Users\\" + profile; }

std::string BiffPath(const std::string &profile) { return std::string(BiffKey) + '\\' + profile; }

std::string BiffServerPath(const std::string &profile, const std::string &server) {
  return BiffPath(profile) + "\\servers\\" + server;
}

bool FindProfile(const std::string &profile) {
  const ScopedKey profiles(HKEY_CURRENT_USER, BiffKey);
  std::string listed;
  for (DWORD index = 0; profiles && EnumSubkey(profiles.Get(), index, listed); ++index) {
    if (listed != profile)
      continue;
    const std::string directory = ListedDirectory(profile);
    if (!directory.empty() && CanOpenPrefs(directory))
      return true;
  }
  return false;
}

bool ProfileFits(const std::string &profile, const std::string &directory) {
  return profile.size() < NameSize && PrefsPath(directory).size() < NameSize;
}

bool PrefsTake(const std::string &directory, std::span<const PrefLine> lines) {
  if (!PrefLinesFit(lines))
    return false;
  const std::string path = PrefsPath(directory);
  if (!PathExists(path.c_str()))
    return true;
  PrefsText prefs;
  LoadPrefsText(path.c_str(), prefs);
  const bool read = prefs.whole || prefs.length > 0;
  ReplacePrefs(prefs, lines);
  return prefs.whole || !read;
}

void WritePrefs(const std::string &directory, std::span<const PrefLine> lines) {
  const std::string path = PrefsPath(directory);
  PrefsText prefs;
  LoadPrefsText(path.c_str(), prefs);
  ReplacePrefs(prefs, lines);
  SavePrefsText(path.c_str(), prefs);
}

} // namespace communicator
