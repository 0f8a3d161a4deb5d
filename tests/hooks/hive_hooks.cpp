#include "hooks/hive_hooks.h"

namespace machine {

std::vector<HiveValue> HiveHooks::Values(Hive &hive, const Hive::Key &key) {
  std::vector<HiveValue> values;
  for (const Hive::Section *const section : key.sections)
    for (std::string_view rest = section->text; !rest.empty();) {
      if (!IsValueLine(rest)) {
        TakeLine(rest);
        continue;
      }
      std::string_view lines = TakeValue(rest);
      std::u16string name;
      HiveValue value;
      if (ReadName(lines, name) && hive.ReadValue(key, name, value) == Hive::Found::Yes)
        values.push_back(std::move(value));
    }
  return values;
}

} // namespace machine
