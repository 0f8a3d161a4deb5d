// What tests see of a hive behind its interface.
#pragma once

#include "win32/linux/machine/hive.h"

#include <vector>

namespace machine {

struct HiveHooks {
  // All values of a key in the order of the file.
  static std::vector<HiveValue> Values(Hive &hive, const Hive::Key &key);
};

} // namespace machine
