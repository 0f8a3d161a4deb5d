// The registry as a 32-bit process sees it, which AcctKit is on Windows. A 64-bit Windows keeps the keys of 32-bit and
// of 64-bit programs apart; a hive that says `#arch=win64` is one of such a system.
#pragma once

#include "win32/linux/machine/hive_file.h"

namespace machine {

// How far a path leads.
struct Reached {
  Hive::Key *key;
  std::u16string_view rest; // the names that aren't there
};

// Follows a path below a key, and its links. On a 64-bit system, as in Wine, a key with a subkey `Wow6432Node` is
// replaced by that subkey, unless the path names it itself.
Reached Reach(HiveFile &file, Hive::Key &from, std::u16string_view path);

} // namespace machine
