#include "clients/outlook_express/account_store.h"

#include "clients/registry.h"

#include <cstdio>
#include <cstring>

namespace outlook_express {

namespace {

constexpr const char *ProductKey = "SOFTWARE\\Microsoft\\Outlook Express";
constexpr const char *ProgramKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\msimn.exe";
constexpr const char *ManagerKey = "Software\\Microsoft\\Internet Account Manager";
constexpr const char *AccountsKey = "Software\\Microsoft\\Internet Account Manager\\Accounts";

// The number that the next new account takes: the first four bytes of the root key's `Account Name`.
DWORD NextAccountNumber() {
  RegistryKey key;
  DWORD number[RegistryTextSize / sizeof(DWORD)] = {};
  DWORD type = REG_NONE;
  DWORD size = sizeof number;
  return key.ReadValue(HKEY_CURRENT_USER, ManagerKey, "Account Name", type, number, size) ? number[0] : 1;
}

} // namespace

int32_t IsInstalled() {
  RegistryKey key;
  std::string path;
  return key.KeyExists(HKEY_LOCAL_MACHINE, ProductKey) && key.KeyExists(HKEY_LOCAL_MACHINE, ProgramKey) &&
                 ReadPath(HKEY_LOCAL_MACHINE, ProgramKey, nullptr, path)
             ? 1
             : 0;
}

int32_t ReadName(std::string &name) {
  const int32_t installed = IsInstalled();
  name = installed ? "OutlookExpress (Microsoft)" : "";
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
  if (!ReadText(HKEY_LOCAL_MACHINE, ProductKey, "MediaVer", version))
    version = "4.00.0";
  return 1;
}

bool IsVersion4() {
  std::string version;
  ReadVersion(version);
  return version.starts_with('4');
}

DWORD ConnectionType() { return IsVersion4() ? 1 : 3; }

std::string AccountPath(const std::string &name) { return std::string(AccountsKey) + '\\' + name; }

std::string EnterAccount(const std::string &title) {
  const DWORD number = NextAccountNumber();
  char name[16];
  std::snprintf(name, sizeof name, "%08x", static_cast<unsigned>(number));
  WriteValues(HKEY_CURRENT_USER, ManagerKey, {{"Account Name", number + 1}});
  WriteValues(HKEY_CURRENT_USER, AccountPath(name), {{"Account Name", title}});
  return name;
}

bool FindAccount(const std::function<bool(const std::string &path)> &matches, std::string &name) {
  const ScopedKey accounts(HKEY_CURRENT_USER, AccountsKey);
  std::string candidate;
  for (DWORD index = 0; accounts && EnumSubkey(accounts.Get(), index, candidate); ++index)
    if (matches(AccountPath(candidate))) {
      name = candidate;
      return true;
    }
  return false;
}

bool HasText(const std::string &path, const char *valueName) {
  std::string text;
  return ReadText(HKEY_CURRENT_USER, path, valueName, text) != 0;
}

void EnsureDefaultMailAccount(const std::string &name) {
  std::string current;
  if (!ReadStringValue(HKEY_CURRENT_USER, ManagerKey, "Default Mail Account", current) ||
      !KeyReadable(HKEY_CURRENT_USER, AccountPath(current).c_str()))
    WriteStringValue(HKEY_CURRENT_USER, ManagerKey, "Default Mail Account", name.c_str());
}

std::string IdentitySettingsPath() {
  std::string identity;
  if (!ReadText(HKEY_CURRENT_USER, "Identities", "Default User ID", identity) || identity.empty())
    return {};
  return "Identities\\" + identity + "\\Software\\Microsoft\\Outlook Express\\5.0";
}

bool Fits(const std::string &text) { return text.size() < RegistryTextSize; }

} // namespace outlook_express
