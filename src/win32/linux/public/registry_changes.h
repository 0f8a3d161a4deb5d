// What edits changed in the registry, as a user knows it. All texts are UTF-8.
#pragma once

#include "win32/linux/public/transaction.h"

#include <optional>
#include <string>
#include <vector>

namespace machine {

// A value's data: a text as it is, a number in decimal, anything else in hexadecimal and cut after 32 bytes.
struct RegistryData {
  enum class Kind { Text, Number, Bytes };
  Kind kind = Kind::Text;
  std::string shown;
};

struct RegistryValueChange {
  std::string name;                   // "(Default)" for the default value
  std::optional<RegistryData> before; // none if the value is new
  std::optional<RegistryData> after;  // none if it was removed
};

struct RegistryKeyChange {
  std::string path; // with its root, as in "HKEY_CURRENT_USER\Software"
  bool isNew = false;
  std::vector<RegistryValueChange> values; // by their names; a new key may have none
};

// The keys that differ, by their paths, in a change of a hive, both of whose texts must be sound; nothing for a change
// of another file.
std::optional<std::vector<RegistryKeyChange>> RegistryChanges(const FileChange &change);

} // namespace machine
