// The shorthand exports: they add the service's own titles and servers to the host's values, and call the plain
// exports.
#include "acctkit/acctkit.h"

#include "clients/guarded.h"
#include "clients/service_constants.h"
#include "clients/service_names.h"

#include <array>

namespace {

// The array for a plain export: eight texts, and the integer that only the search reads.
using SpecArray = std::array<const char *, 9>;

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

// Calls the operation with the array for the server whose number, from 1, is at position 3; 0 for any other number.
template <typename Operation> int32_t WithChosenServer(const char *const *values, Operation operation) {
  const auto number = static_cast<int32_t>(reinterpret_cast<intptr_t>(values[3]));
  if (number != 1 && number != 2)
    return 0;
  return AsOneCall([&] {
    const NewsServer &server = NewsServers[number - 1];
    const std::string title = ServiceTitle(values[0]);
    return operation(SpecArray{values[0], values[1], title.c_str(), "", server.host, server.name, values[2],
                               ServiceConnectionName, nullptr});
  });
}

} // namespace

int32_t IsExistZuvioMailAccount(int32_t client, const char *const *values, char *key, char *message) {
  return AsOneCall([=] {
    const std::string title = ServiceTitle(values[0]);
    return IsExistMailAccount(client, ZuvioMailSpec(values, title).data(), key, message);
  });
}

int32_t SetupZuvioMailAccount(int32_t client, const char *const *values, const char *key) {
  return AsOneCall([=] {
    const std::string title = ServiceTitle(values[0]);
    return SetupMailAccount(client, ZuvioMailSpec(values, title).data(), key);
  });
}

int32_t IsExistZuvioNewsAccount(int32_t client, const char *const *values, char *key, char *message) {
  return WithChosenServer(values,
                          [=](const SpecArray &spec) { return IsExistNewsAccount(client, spec.data(), key, message); });
}

int32_t SetupZuvioNewsAccount(int32_t client, const char *const *values, const char *key) {
  return WithChosenServer(values, [=](const SpecArray &spec) { return SetupNewsAccount(client, spec.data(), key); });
}

int32_t IsExistKERMMailAccount(int32_t client, const char *const *values, char *key, char *message) {
  return IsExistMailAccount(client, KermMailSpec(values).data(), key, message);
}

int32_t SetupKERMMailAccount(int32_t client, const char *const *values, const char *key) {
  return SetupMailAccount(client, KermMailSpec(values).data(), key);
}
