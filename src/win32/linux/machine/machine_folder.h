// The machine folder as a whole, for the other parts of the layer.
#pragma once

#include <filesystem>
#include <string>

namespace machine {

// Keeps a line for machine::TakeFault, unless one is kept already: the first is the cause of the others.
void RecordFault(const std::string &line);
// The same for machine::TakeNotice.
void RecordNotice(const std::string &line);

// Whether `folder` is the current machine folder.
bool IsCurrentFolder(const std::filesystem::path &folder);

// Why a folder is no machine, empty if it is one.
std::string FolderFault(const std::filesystem::path &folder);

} // namespace machine
