// Compiled resources in the form that a resource compiler leaves for a linker (.res).
#pragma once

#include "win32/win32_ui.h"

#include <string>
#include <string_view>
#include <vector>

namespace machine {

// A resource's name or type: a number, or a text in capitals and then the number 0.
struct ResourceName {
  WORD id = 0;
  std::u16string text;

  bool operator==(const ResourceName &) const = default;
};

struct Resource {
  ResourceName type;
  ResourceName name;
  std::string_view data;
};

// The resources in a block, up to the first that doesn't fit into it.
std::vector<Resource> ReadResources(std::string_view block);

// How many bytes of a module's resource follow at an address; 0 outside of all resources.
size_t BytesOfResourceAt(const void *address);

} // namespace machine
