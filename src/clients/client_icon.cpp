// The icon of a client's program, the same for mail and news clients.
#include "clients/mail_client.h"
#include "clients/news_client.h"

namespace {

template <typename Client> HICON ProgramIcon(Client &client) {
  std::string path;
  if (client.GetClientPath(path) == 0)
    return nullptr;
  SHFILEINFOA info{};
  SHGetFileInfoA(path.c_str(), FILE_ATTRIBUTE_ARCHIVE, &info, sizeof info, SHGFI_ICON);
  return info.hIcon;
}

} // namespace

HICON MailClient::GetClientIcon() { return ProgramIcon(*this); }

HICON NewsClient::GetClientIcon() { return ProgramIcon(*this); }
