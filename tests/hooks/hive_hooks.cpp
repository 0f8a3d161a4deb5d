#include "hooks/hive_hooks.h"

namespace machine {

std::vector<HiveValue> HiveHooks::Values(Hive &hive, const Hive::Key &key) {
  std::vector<HiveValue> values;
  for (const uint32_t number : key.sections)
    for (const Hive::Line &line : hive.LinesOf(hive.sections[number]))
      if (HiveValue value; line.valueName && hive.ReadValue(key, *line.valueName, value) == Hive::Found::Yes)
        values.push_back(std::move(value));
  return values;
}

} // namespace machine
