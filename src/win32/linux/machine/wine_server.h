// A Wine server at work on the machine folder.
#pragma once

#include <filesystem>
#include <string>

namespace machine {

// Says so if a Wine server runs on the folder, else empty. The server has the registry in its own memory and would
// write that over ours.
std::string ServerFault(const std::filesystem::path &folder);

} // namespace machine
