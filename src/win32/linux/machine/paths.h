// Where a path of the machine stands on disk.
#pragma once

#include "win32/win32.h"

#include <filesystem>
#include <string>
#include <sys/stat.h>

namespace machine {

struct DiskPath {
  std::filesystem::path path = {}; // also if there is no such file; empty if none can stand there
  bool exists = false;
  bool missing = false;    // for certain, since nothing kept us from looking
  struct stat status = {}; // of an existing one

  bool IsFolder() const { return exists && S_ISDIR(status.st_mode); }
  bool IsFile() const { return exists && S_ISREG(status.st_mode); }
  bool IsLink() const { return exists && S_ISLNK(status.st_mode); }
};

// A path of the calls with backslashes alone.
std::u16string WidePath(const char *path);

// Finds what a path names: case doesn't matter, `..` and links stay within the machine folder, but for what its
// dosdevices name. Relative paths begin in the folder of the running program.
DiskPath FindOnDisk(const char *path);

// The entry of a folder that a pattern with wildcards matches, first in name order; empty if none does.
std::string FirstMatch(const std::filesystem::path &folder, std::u16string_view pattern);

// The path of the running program on the machine, with backslashes alone.
std::string ProgramPath();

} // namespace machine
