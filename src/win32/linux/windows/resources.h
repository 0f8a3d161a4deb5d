// Compiled resources in the form that a resource compiler leaves for a linker (.res). The library's own stand between
// two symbols, if it has any.
#pragma once

#include "win32/win32_ui.h"

#include <string_view>
#include <vector>

namespace machine {

struct Resource {
  WORD type; // 0 for one that is named by a text, and the same for the name
  WORD name;
  std::string_view data;
};

// The resources in a block, up to the first that doesn't fit into it.
std::vector<Resource> ReadResources(std::string_view block);

// The library's dialog template of a number, given as MAKEINTRESOURCEA makes it; empty if there is none.
std::string_view DialogResource(const char *name);

} // namespace machine
