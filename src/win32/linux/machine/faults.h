// How the layer's parts tell what went wrong beneath a call, and what they ask of the machine folder.
#pragma once

#include <filesystem>
#include <string>

namespace machine {

// Keeps one line (UTF-8, no line feed) for machine::TakeFault, unless one is kept already: the first is the cause.
void RecordFault(const std::string &line);
// The same for machine::TakeNotice.
void RecordNotice(const std::string &line);

// Whether machine::Folder is that one.
bool IsFolder(const std::filesystem::path &folder);

// One line that says why a folder is no machine, empty if it is one.
std::string FolderProblem(const std::filesystem::path &folder);

// One line if a Wine server runs on the folder. It holds the registry in its own memory and would write that over ours.
std::string ServerProblem(const std::filesystem::path &folder);

} // namespace machine
