#include "clients/outlook_express/outlook_express_accounts.h"

#include "clients/outlook_express/outlook_express_layout.h"
#include "clients/registry_key.h"

#include <algorithm>
#include <cstdio>

namespace outlook_express {

namespace {

// The number that the next new account takes: the first four bytes of the value.
DWORD NextAccountNumber() {
  RegistryKey key;
  DWORD number[RegistryTextSize / sizeof(DWORD)] = {};
  DWORD type = REG_NONE;
  DWORD size = sizeof number;
  return key.ReadValue(HKEY_CURRENT_USER, ManagerKey, AccountNameValue, type, number, size) ? number[0] : 1;
}

std::string EnterNewAccount(const std::string &title) {
  const DWORD number = NextAccountNumber();
  char name[16];
  std::snprintf(name, sizeof name, "%08x", static_cast<unsigned>(number));
  WriteValuesFullAccess(HKEY_CURRENT_USER, ManagerKey, {{AccountNameValue, number + 1}});
  WriteValuesFullAccess(HKEY_CURRENT_USER, AccountKey(name), {{AccountNameValue, title}});
  return name;
}

bool HasValidDefaultMailAccount() {
  std::string name;
  return ReadStringValue(HKEY_CURRENT_USER, ManagerKey, DefaultMailAccountValue, name) &&
         KeyReadable(HKEY_CURRENT_USER, AccountKey(name).c_str());
}

} // namespace

bool IsVersion4() {
  std::string version;
  ReadVersion(Program, version);
  return version.starts_with('4');
}

DWORD ConnectionType() { return IsVersion4() ? ConnectionOfVersion4 : ConnectionOfVersion5; }

std::optional<std::string> EnterAccount(const std::string &key, const std::string &title,
                                        const char *otherServerValue) {
  if (key.empty())
    return EnterNewAccount(title);
  return ReadTextFullAccess(HKEY_CURRENT_USER, AccountKey(key), otherServerValue) ? std::nullopt : std::optional(key);
}

std::optional<std::string> FindAccount(const std::function<bool(const std::string &accountKey)> &matches) {
  for (const std::string &name : SubkeyNames(HKEY_CURRENT_USER, AccountsKey))
    if (matches(AccountKey(name)))
      return name;
  return std::nullopt;
}

bool HoldsText(const std::string &accountKey, const char *valueName, const std::string &text) {
  return ReadTextFullAccess(HKEY_CURRENT_USER, accountKey, valueName) == text;
}

void EnsureDefaultMailAccount(const std::string &name) {
  if (!HasValidDefaultMailAccount())
    WriteStringValue(HKEY_CURRENT_USER, ManagerKey, DefaultMailAccountValue, name.c_str());
}

std::string DefaultIdentitySettings() {
  const auto identity = ReadTextFullAccess(HKEY_CURRENT_USER, IdentitiesKey, DefaultIdentityValue);
  return identity && !identity->empty() ? IdentitySettingsKey(*identity) : "";
}

bool TextsFit(std::initializer_list<std::string_view> texts) {
  return std::ranges::all_of(texts, [](std::string_view text) { return text.size() < RegistryTextSize; });
}

} // namespace outlook_express
