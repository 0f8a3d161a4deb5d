// The library's compiled resources, as a resource compiler leaves them for a linker (.res).
#pragma once

#include <string_view>

namespace machine {

// The dialog template of a number, given as MAKEINTRESOURCEA makes it; empty if there is none.
std::string_view DialogResource(const char *name);

} // namespace machine
