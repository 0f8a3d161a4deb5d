// A file that is replaced whole: what is written stands beside it until it takes its place in one step. A process that
// is killed leaves the old file, and at most one file beside it, which the next replacement takes over.
#pragma once

#include "win32/linux/machine/descriptor.h"

#include <filesystem>
#include <sys/stat.h>

namespace machine {

class Replacement {
public:
  // Begins a replacement of the file, which may be missing. Mode and owner go over to the new one.
  explicit Replacement(std::filesystem::path target);
  // Leaves the old file as it is unless Commit was called.
  ~Replacement();
  Replacement(const Replacement &) = delete;
  Replacement &operator=(const Replacement &) = delete;

  // Null if the file beside couldn't be made; errno tells why.
  const Descriptor &File() const { return file; }

  // The new file, once it is in place.
  Descriptor TakeFile();

  // Puts the new file in place. There is no fsync: a sign-up replaces some thirty files, and what a power cut leaves is
  // the file system's affair, which orders the data before the rename. False with errno set, the old file then stands.
  bool Commit();

private:
  std::filesystem::path target;
  std::filesystem::path beside;
  Descriptor file;
  bool pending = false;
};

} // namespace machine
