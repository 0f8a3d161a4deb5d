// Whole files on disk.
#pragma once

#include "win32/linux/machine/descriptor.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace machine {

// Whether the system fails, and not the file: what was found before isn't the whole then, and no call may go on with
// it.
bool IsSystemFailure(int error);

// Larger files are none of a client's, and would be no good in memory.
constexpr off_t LargestFile = off_t{256} << 20;

// A file as it stands on disk.
struct DiskFile {
  int error = 0; // ENOENT if there is none, EFBIG if it is too large, EINVAL if it is a folder, device or pipe
  Descriptor file;
  struct stat status = {};
  std::string bytes;

  bool Exists() const { return error == 0; }
};
DiskFile ReadDiskFile(const std::filesystem::path &path);

// Makes a file that isn't there and leaves it open. 0 or errno; a file that couldn't be written whole is removed.
int MakeDiskFile(const std::filesystem::path &path, std::string_view bytes, mode_t mode, Descriptor &file);

// Removes what is at a path, a folder with all that is in it; links aren't followed. False with errno set if something
// stays.
bool RemoveTree(const std::filesystem::path &path);

// Opens a folder whose entries are to be put on disk. 0 or errno. One that may not be listed can't be opened, and is
// none.
int OpenFolder(const std::filesystem::path &folder, Descriptor &opened);
// 0 or errno. With a folder that is none all is put on disk that waits.
int SyncFolder(const Descriptor &folder);
int SyncFolderAt(const std::filesystem::path &folder);

} // namespace machine
