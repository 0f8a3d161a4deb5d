#include "clients/external_mailer.h"

#include "clients/external_mailer_layout.h"
#include "clients/file_queries.h"
#include "clients/format.h"
#include "clients/guarded.h"
#include "clients/registry_key.h"
#include "clients/service_names.h"

#include <cstddef>
#include <cstring>

// The plug-in agrees with us on the records byte for byte.
static_assert(sizeof(MailerInfo) == 312 && offsetof(MailerInfo, path) == 51);
static_assert(sizeof(MailEnvironment) == 1808);
static_assert(offsetof(MailEnvironment, connectionName) == 9 && offsetof(MailEnvironment, senderName) == 266);
static_assert(offsetof(MailEnvironment, mailUser) == 523 && offsetof(MailEnvironment, reservedText) == 780);
static_assert(offsetof(MailEnvironment, mailAddress) == 1037 && offsetof(MailEnvironment, popServer) == 1294);
static_assert(offsetof(MailEnvironment, smtpServer) == 1551);

namespace {

// Copies a text into a zeroed field; false if it doesn't fit with its terminator.
template <size_t Size> bool Fill(char (&field)[Size], const std::string &text) {
  if (text.size() >= Size)
    return false;
  std::memcpy(field, text.data(), text.size());
  return true;
}

bool FillEnvironment(MailEnvironment &environment, const MailAccountSpec &spec) {
  const bool ownId = spec.secondAccount != 1 && spec.originalDomain != 1;
  return Fill(environment.serviceId, ownId ? spec.userId : std::string()) &&
         Fill(environment.connectionName, ServiceConnectionName) && Fill(environment.senderName, spec.senderName) &&
         Fill(environment.mailUser, spec.userId) && Fill(environment.mailAddress, spec.mailAddress) &&
         Fill(environment.popServer, spec.popServer) && Fill(environment.smtpServer, spec.smtpServer);
}

template <typename Entry> Entry Resolve(HMODULE module, const char *name) {
  return reinterpret_cast<Entry>(reinterpret_cast<void *>(GetProcAddress(module, name)));
}

} // namespace

ExternalMailer::~ExternalMailer() { FreeMailerLibrary(); }

int32_t ExternalMailer::LoadMailerLibrary() {
  if (module != nullptr)
    return 0;
  std::string folder;
  std::string file;
  if (!ReadStringValue(HKEY_LOCAL_MACHINE, external_mailer::PluginKey, external_mailer::FolderValue, folder) ||
      !ReadStringValue(HKEY_LOCAL_MACHINE, external_mailer::PluginKey, external_mailer::FileValue, file))
    return 0;
  pause.emplace();
  module = LoadLibraryA(Below(folder, file).c_str());
  if (module == nullptr) {
    pause.reset();
    return 0;
  }
  getMailerInfo = Resolve<GetMailerInfoEntry>(module, "GetMailerInfo");
  setMailEnvironment = Resolve<SetMailEnvironmentEntry>(module, "SetMailEnvironment");
  setCompleteFlag = Resolve<SetCompleteFlagEntry>(module, "SetCompleteFlag");
  const bool isWhole = getMailerInfo != nullptr && setMailEnvironment != nullptr && setCompleteFlag != nullptr;
  if (!isWhole)
    pause.reset(); // nothing of it is called
  return isWhole;
}

int32_t ExternalMailer::FreeMailerLibrary() {
  if (module == nullptr)
    return 0;
  FreeLibrary(module);
  pause.reset();
  module = nullptr;
  getMailerInfo = nullptr;
  setMailEnvironment = nullptr;
  setCompleteFlag = nullptr;
  return 1;
}

int32_t ExternalMailer::SetMailEnvironment(const MailEnvironment &environment) const {
  return Guarded([&] { return setMailEnvironment(&environment, sizeof environment); });
}

int32_t ExternalMailer::SetCompleteFlag() const { return Guarded(setCompleteFlag); }

std::optional<MailerInfo> ExternalMailer::ReadMailerInfo() {
  if (!LoadMailerLibrary())
    return std::nullopt;
  MailerInfo info;
  const int32_t answer = Guarded([&] { return getMailerInfo(&info, sizeof info); });
  FreeMailerLibrary();
  // Whatever the plug-in left there, the texts end within their fields.
  info.name[sizeof info.name - 1] = '\0';
  info.path[sizeof info.path - 1] = '\0';
  return answer == 1 ? std::optional(info) : std::nullopt;
}

int32_t ExternalMailer::IsInstall() {
  const auto info = ReadMailerInfo();
  return info && PathExists(info->path);
}

int32_t ExternalMailer::SetupAccount(const MailAccountSpec &spec, std::string &) {
  MailEnvironment environment{};
  if (!FillEnvironment(environment, spec) || !LoadMailerLibrary())
    return 0;
  const int32_t answer = SetMailEnvironment(environment);
  FreeMailerLibrary();
  return answer == 1;
}

int32_t ExternalMailer::GetClientName(std::string &name) {
  const auto info = ReadMailerInfo();
  if (info)
    name = info->name;
  return info.has_value();
}

int32_t ExternalMailer::GetClientPath(std::string &path) {
  const auto info = ReadMailerInfo();
  if (info)
    path = info->path;
  return info.has_value();
}

int32_t ExternalMailer::GetClientVersion(std::string &version) {
  const auto info = ReadMailerInfo();
  if (info)
    GetProductVersion(info->path, version);
  return info.has_value();
}
