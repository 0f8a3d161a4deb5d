// The two hives of the machine folder that was asked for last.
#pragma once

#include "win32/linux/machine/hive_file.h"

#include <filesystem>
#include <memory>

namespace machine {

struct Hives {
  std::filesystem::path folder;
  std::shared_ptr<HiveFile> localMachine;
  std::shared_ptr<HiveFile> currentUser;
};

// Of the current machine folder, which within a transaction is the one that it began with.
const Hives &CurrentHives();

} // namespace machine
