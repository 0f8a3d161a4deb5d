#include "accounts.h"

#include "clients/inspect/inspect.h"
#include "platform.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace {

using inspect::Client;
using inspect::Entry;
using inspect::Value;

// Whether the external mailer's plug-in is there and can't be loaded here, so that nobody knows what it would answer.
// Known once the clients have been asked.
bool IsUnknown(const Client &client) { return client.type == ClientExternalMailer && platform::HasNotice(); }

void PrintValues(const std::vector<Value> &values) {
  size_t width = 0;
  for (const Value &value : values)
    width = std::max(width, value.name.size());
  for (const Value &value : values)
    std::cout << "    " << value.name << std::string(value.name.empty() ? 0 : width + 2 - value.name.size(), ' ')
              << value.text << '\n';
}

void PrintText(const std::vector<Client> &clients) {
  for (const Client &client : clients) {
    std::cout << client.name << (client.version.empty() ? "" : " " + client.version)
              << (client.hasMail || IsUnknown(client) ? "" : ", not installed") << '\n';
    for (const Entry &entry : inspect::Entries(client.type)) {
      std::cout << "  " << entry.kind << (entry.name.empty() ? "" : " " + entry.name)
                << (entry.isDefault ? " (default)" : "") << "  [" << entry.where << "]\n";
      PrintValues(entry.values);
    }
    std::cout << '\n';
  }
}

using Json = nlohmann::ordered_json;

Json EntryJson(const Entry &entry) {
  Json values = Json::object();
  Json lines = Json::array();
  for (const Value &value : entry.values)
    if (value.name.empty())
      lines.push_back(value.text);
    else
      values[value.name] = value.text;
  return {{"kind", entry.kind},   {"name", entry.name}, {"default", entry.isDefault},
          {"where", entry.where}, {"values", values},   {"lines", lines}};
}

void PrintJson(const std::vector<Client> &clients) {
  Json document = Json::array();
  for (const Client &client : clients) {
    Json entries = Json::array();
    for (const Entry &entry : inspect::Entries(client.type))
      entries.push_back(EntryJson(entry));
    const Json installed = IsUnknown(client) ? Json() : Json(client.hasMail);
    document.push_back(
        {{"client", client.name}, {"version", client.version}, {"installed", installed}, {"entries", entries}});
  }
  std::cout << document.dump(2) << '\n';
}

void PrintRow(const std::string &client, const std::string &version, const std::string &mail, const std::string &news) {
  std::cout << client << std::string(24 - std::min<size_t>(client.size(), 23), ' ') << version
            << std::string(10 - std::min<size_t>(version.size(), 9), ' ') << mail << std::string(6 - mail.size(), ' ')
            << news << '\n';
}

const char *Answer(bool answer) { return answer ? "yes" : "no"; }

} // namespace

void PrintAccounts(bool asJson) {
  const std::vector<Client> clients = inspect::Clients();
  if (asJson)
    PrintJson(clients);
  else
    PrintText(clients);
}

void PrintStatus() {
  PrintRow("client", "version", "mail", "news");
  for (const Client &client : inspect::Clients())
    PrintRow(client.name, client.version, IsUnknown(client) ? "?" : Answer(client.hasMail), Answer(client.hasNews));
}
