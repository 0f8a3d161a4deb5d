// The plug-in of a sample mailer: it keeps the account that it is handed in a text file of its own.
#include "acctkit/acctkit.h"
#include "clients/external_mailer_layout.h"
#include "stores/file_handle.h"

#include <cstdio>
#include <string>
#include <utility>

namespace {

std::string PathOf(const char *file) { return std::string(external_mailer::SampleFolder) + '\\' + file; }

const std::string SettingsPath = PathOf(external_mailer::SampleSettings);

} // namespace

extern "C" {

ACCTKIT_API int32_t ACCTKIT_CALL GetMailerInfo(MailerInfo *info, int32_t size) {
  if (size != static_cast<int32_t>(sizeof *info))
    return 0;
  std::snprintf(info->name, sizeof info->name, "サンプルメーラー");
  std::snprintf(info->path, sizeof info->path, "%s", PathOf(external_mailer::SampleProgram).c_str());
  return 1;
}

ACCTKIT_API int32_t ACCTKIT_CALL SetMailEnvironment(const MailEnvironment *environment, int32_t size) {
  if (size != static_cast<int32_t>(sizeof *environment))
    return 0;
  const std::pair<const char *, const char *> fields[] = {
      {"serviceId", environment->serviceId},     {"connectionName", environment->connectionName},
      {"senderName", environment->senderName},   {"mailUser", environment->mailUser},
      {"mailAddress", environment->mailAddress}, {"popServer", environment->popServer},
      {"smtpServer", environment->smtpServer}};
  std::string text;
  for (const auto &[name, value] : fields)
    text.append(name).append("=").append(value).append("\r\n");
  return WriteWholeFile(SettingsPath.c_str(), GENERIC_WRITE, text) ? 1 : 0;
}

// 1 if an account has been handed over.
ACCTKIT_API int32_t ACCTKIT_CALL SetCompleteFlag(void) { return CanReadFile(SettingsPath.c_str()) ? 1 : 0; }

} // extern "C"
