// Reads the clients of the machine and their accounts, for a report. Nothing is changed. All texts are UTF-8.
//
//   for (const inspect::Client &client : inspect::Clients())
//     for (const inspect::Entry &entry : inspect::Entries(client.type))
//       std::cout << client.name << ": " << entry.kind << ' ' << entry.name << '\n';
#pragma once

#include "clients/client_type.h"

#include <string>
#include <vector>

namespace inspect {

// A client and whether it is installed.
struct Client {
  ClientType type;
  std::string name;
  std::string version; // empty if it isn't installed
  bool hasMail;        // installed as a mail client
  bool hasNews;
};

// Every client, in the order of their types. The external mailer's plug-in is loaded for it.
std::vector<Client> Clients();

// A registry value with its name, or a line of a file without one. A text is as it stands, a number in decimal, other
// data in hexadecimal.
struct Value {
  std::string name;
  std::string text;
};

// An account, a profile, or another key or file in which values of a client stand.
struct Entry {
  std::string kind; // as in "mail account"
  std::string name; // empty if there is only one of the kind
  bool isDefault = false;
  std::string where; // a key's path with its root, or a file's
  std::vector<Value> values;
};

// The entries of a client, whether it is installed or not.
std::vector<Entry> Entries(ClientType type);

} // namespace inspect
