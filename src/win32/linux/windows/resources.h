// A module's compiled resources, as a resource compiler leaves them for a linker (.res).
#pragma once

#include "win32/win32.h"

#include <string_view>

namespace machine {

// The dialog template of a number, given as MAKEINTRESOURCEA makes it, that a module has, the program for null; empty
// if there is none. It is there as long as the module.
std::string_view DialogResource(HMODULE module, const char *name);

} // namespace machine
