// The shorthand exports: complete what a host knows of a subscriber with the service's own titles and servers, and call
// the plain export.
#include "acctkit/acctkit.h"

#include "clients/external_mailer.h"
#include "clients/service_constants.h"
#include "clients/text.h"

#include <array>
#include <optional>

namespace {

// A plain export's spec array: eight texts, and the integer that its search reads.
using SpecArray = std::array<const char *, 9>;

// The title "@zuvio(ID)" passes through a buffer of 512 bytes; an ID that doesn't fit is refused further on, by the
// adapter's own bounds on titles.
std::string ServiceTitle(const char *id) { return Format("@zuvio(%s)", std::string(id)); }

SpecArray ZuvioMailSpec(const char *const *values, const std::string &title) {
  return {values[0], values[1], title.c_str(), "", IspSmtpHost, IspPopHost, values[2], ServiceConnectionName, nullptr};
}

SpecArray KermMailSpec(const char *const *values) {
  const auto originalDomain = reinterpret_cast<const char *>(intptr_t{1});
  return {values[0], values[1], values[2], "", values[3], values[4], values[2], ServiceConnectionName, originalDomain};
}

struct NewsServer {
  const char *host;
  const char *name;
};
constexpr NewsServer NewsServers[] = {
    {IspForumNewsHostLegacy, "@zuvio(QZX00000) フォーラム会議室"},
    {IspSquareNewsHostLegacy, "@zuvio(QZX00000) カモメ（web会議室）"},
};

// The server that position 3 numbers from 1; null for any other number.
const NewsServer *ChosenServer(const char *const *values) {
  const auto number = static_cast<int32_t>(reinterpret_cast<intptr_t>(values[3]));
  return number == 1 || number == 2 ? &NewsServers[number - 1] : nullptr;
}

SpecArray ZuvioNewsSpec(const char *const *values, const std::string &title, const NewsServer &server) {
  return {values[0], values[1], title.c_str(), "", server.host, server.name, values[2], ServiceConnectionName, nullptr};
}

} // namespace

int32_t IsExistZuvioMailAccount(int32_t client, const char *const *values, char *key, char *message) {
  const std::string title = ServiceTitle(values[0]);
  return IsExistMailAccount(client, ZuvioMailSpec(values, title).data(), key, message);
}

int32_t SetupZuvioMailAccount(int32_t client, const char *const *values, const char *key) {
  const std::string title = ServiceTitle(values[0]);
  return SetupMailAccount(client, ZuvioMailSpec(values, title).data(), key);
}

int32_t IsExistZuvioNewsAccount(int32_t client, const char *const *values, char *key, char *message) {
  const NewsServer *const server = ChosenServer(values);
  if (server == nullptr)
    return 0;
  const std::string title = ServiceTitle(values[0]);
  return IsExistNewsAccount(client, ZuvioNewsSpec(values, title, *server).data(), key, message);
}

int32_t SetupZuvioNewsAccount(int32_t client, const char *const *values, const char *key) {
  const NewsServer *const server = ChosenServer(values);
  if (server == nullptr)
    return 0;
  const std::string title = ServiceTitle(values[0]);
  return SetupNewsAccount(client, ZuvioNewsSpec(values, title, *server).data(), key);
}

int32_t IsExistKERMMailAccount(int32_t client, const char *const *values, char *key, char *message) {
  return IsExistMailAccount(client, KermMailSpec(values).data(), key, message);
}

int32_t SetupKERMMailAccount(int32_t client, const char *const *values, const char *key) {
  return SetupMailAccount(client, KermMailSpec(values).data(), key);
}
