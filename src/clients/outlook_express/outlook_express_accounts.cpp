#include "clients/outlook_express/outlook_express_accounts.h"

#include "clients/registry_key.h"

#include <algorithm>
#include <cstdio>

namespace outlook_express {

const InstalledProgram Program = {"OutlookExpress (Microsoft)",
                                  "SOFTWARE\\Microsoft\\Outlook Express",
                                  "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\msimn.exe",
                                  nullptr,
                                  "SOFTWARE\\Microsoft\\Outlook Express",
                                  "MediaVer",
                                  "4.00.0"};

namespace {

constexpr const char *ManagerKey = "Software\\Microsoft\\Internet Account Manager";

// The number that the next new account takes: the first four bytes of the root key's `Account Name`.
DWORD NextAccountNumber() {
  RegistryKey key;
  DWORD number[RegistryTextSize / sizeof(DWORD)] = {};
  DWORD type = REG_NONE;
  DWORD size = sizeof number;
  return key.ReadValue(HKEY_CURRENT_USER, ManagerKey, "Account Name", type, number, size) ? number[0] : 1;
}

} // namespace

bool IsVersion4() {
  std::string version;
  ReadVersion(Program, version);
  return version.starts_with('4');
}

DWORD ConnectionType() { return IsVersion4() ? ConnectionOfVersion4 : ConnectionOfVersion5; }

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

bool HoldsText(const std::string &path, const char *valueName, const std::string &text) {
  std::string stored;
  return ReadText(HKEY_CURRENT_USER, path, valueName, stored) && stored == text;
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

bool TextsFit(std::initializer_list<std::string_view> texts) {
  return std::ranges::all_of(texts, [](std::string_view text) { return text.size() < RegistryTextSize; });
}

} // namespace outlook_express
