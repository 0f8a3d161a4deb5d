// What is set besides the accounts: the browser's start page, and that Outlook Express accounts no longer use the
// service's dial-up connection.
#include "acctkit/acctkit.h"

#include "clients/communicator/communicator_layout.h"
#include "clients/communicator/communicator_mail.h"
#include "clients/format.h"
#include "clients/guarded.h"
#include "clients/outlook_express/outlook_express_layout.h"
#include "clients/registry_key.h"
#include "clients/service_names.h"

#include <string>
#include <vector>

namespace {

int32_t SetCommunicatorStartPage(const char *profile, const char *url) {
  std::string directory;
  if (!ReadStringValue(HKEY_CURRENT_USER, communicator::MainKey, communicator::InstallDirectoryValue, directory) ||
      directory.empty())
    return 0;
  CreateDirectoryA(communicator::ProfilesFolder(directory).c_str(), nullptr);
  CommunicatorMail().SetStartPage(communicator::ProfileDirectory(directory, profile), url);
  return 1;
}

bool UsesServiceConnection(const char *account) {
  DWORD type = 0;
  std::string connection;
  return ReadDwordValue(HKEY_CURRENT_USER, account, outlook_express::ConnectionTypeValue, type) &&
         ReadStringValue(HKEY_CURRENT_USER, account, outlook_express::ConnectoidValue, connection) &&
         type == outlook_express::DialUpConnection && SameIgnoringCase(connection, ServiceConnectionName);
}

} // namespace

int32_t SetBrowserStartPage(int32_t client, const char *profile, const char *url) {
  return AsOneCall([=]() -> int32_t {
    switch (client) {
    case 0:
      return WriteStringValue(HKEY_CURRENT_USER, outlook_express::BrowserKey, outlook_express::StartPageValue, url);
    case 1:
      return SetCommunicatorStartPage(profile, url);
    default:
      return 0;
    }
  });
}

int32_t OutlookDisable(void) {
  return AsOneCall([]() -> int32_t {
    std::vector<std::string> accounts;
    CollectSubkeys(HKEY_CURRENT_USER, outlook_express::AccountsKey, accounts);
    int32_t major = 0;
    int32_t minor = 0;
    if (!GetMailVersion(0, &major, &minor))
      return 0;
    const DWORD replacement = major > 4 ? outlook_express::ConnectionOfVersion5 : outlook_express::ConnectionOfVersion4;
    for (const std::string &account : accounts)
      if (UsesServiceConnection(account.c_str())) {
        WriteDwordValue(HKEY_CURRENT_USER, account.c_str(), outlook_express::ConnectionTypeValue, replacement);
        DeleteNamedValue(HKEY_CURRENT_USER, account.c_str(), outlook_express::ConnectoidValue);
      }
    return 1;
  });
}
