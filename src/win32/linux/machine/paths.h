// Where a path of the machine stands on disk.
#pragma once

#include "win32/win32.h"

#include <filesystem>
#include <string>
#include <sys/stat.h>

namespace machine {

// A file as the running transaction has it, or else as it is on disk.
struct DiskPath {
  // Also if there is no such file; empty if none can stand there. Of what nobody may look at, the nearest such folder
  // or file.
  std::filesystem::path path = {};
  bool exists = false;
  bool missing = false;    // for certain, since nothing kept us from looking
  struct stat status = {}; // of an existing one

  bool IsFolder() const { return exists && S_ISDIR(status.st_mode); }
  bool IsFile() const { return exists && S_ISREG(status.st_mode); }
  bool IsLink() const { return exists && S_ISLNK(status.st_mode); }
};

// A path of the calls with backslashes alone.
std::u16string WidePath(const char *path);

// The path with its drive and without parts that mean nothing, "C:\\A\\B", UTF-8.
std::string NameOnMachine(const char *path);

// Finds what a path names: case doesn't matter, `..` and links stay within the machine folder, but for what its
// dosdevices name. Relative paths begin in the folder of the running program.
DiskPath FindOnDisk(const char *path);

// The same for a file that is to be read: where it is, empty if there is none. A fault if something else is there, such
// as a pipe, which would keep its reader waiting, or if it can't be reached.
std::filesystem::path FindFile(const char *path);

// The entry of a folder that a pattern with wildcards matches, first in name order; empty if none does.
std::u16string FirstMatch(const std::filesystem::path &folder, std::u16string_view pattern);

// The path of the running program on the machine, with backslashes alone.
std::string ProgramPath();

} // namespace machine
