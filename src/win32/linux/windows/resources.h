// A module's compiled resources, as a resource compiler leaves them for a linker (.res).
#pragma once

#include "win32/win32.h"

#include <string_view>

namespace machine {

// The dialog template with a number (as MAKEINTRESOURCEA gives it) in a module, or in the program for null. Empty if
// there is none. It stays valid as long as the module is loaded.
std::string_view DialogResource(HMODULE module, const char *name);

} // namespace machine
