// What the parts of the layer tell and ask of the machine folder as a whole.
#pragma once

#include <filesystem>
#include <string>

namespace machine {

// Keeps one line for machine::TakeFault, unless one is kept already: the first is the cause of the others.
void RecordFault(const std::string &line);
// The same for machine::TakeNotice.
void RecordNotice(const std::string &line);

// Whether machine::Folder is that one.
bool IsFolder(const std::filesystem::path &folder);

// Why a folder is no machine, empty if it is one.
std::string FolderFault(const std::filesystem::path &folder);

// Says so if a Wine server runs on the folder, else empty. The server has the registry in its own memory and would
// write that over ours.
std::string ServerFault(const std::filesystem::path &folder);

// Lets the other processes have the machine as long as it lives, whatever locks this thread has: while a user thinks.
class LockPause {
public:
  LockPause();
  ~LockPause();
  LockPause(const LockPause &) = delete;
  LockPause &operator=(const LockPause &) = delete;

private:
  int held;
};

} // namespace machine
