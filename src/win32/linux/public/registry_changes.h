// What edits changed in the registry, as a user knows it. All texts are UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>
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

// Compares two texts of a hive, either of which may be absent and must be sound otherwise. `file` is the hive's name in
// the machine folder, which tells its root. The keys that differ, by their paths; nothing for a name of no hive.
std::optional<std::vector<RegistryKeyChange>>
CompareHives(std::string_view file, const std::optional<std::string> &before, const std::optional<std::string> &after);

} // namespace machine
