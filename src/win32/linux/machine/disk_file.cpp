#include "win32/linux/machine/disk_file.h"

#include "win32/linux/machine/system_calls.h"

#include <cerrno>
#include <fcntl.h>

namespace machine {

bool IsSystemFailure(int error) {
  return error == EIO || error == EMFILE || error == ENFILE || error == ENOMEM || error == ENOSPC || error == EDQUOT;
}

DiskFile ReadDiskFile(const std::filesystem::path &path) {
  DiskFile found;
  found.file = Descriptor(sys::Open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!found.file || fstat(found.file.Get(), &found.status) != 0)
    found.error = errno;
  else if (!S_ISREG(found.status.st_mode))
    found.error = EINVAL;
  else if (found.status.st_size > LargestFile)
    found.error = EFBIG;
  if (found.error != 0)
    return found;
  found.bytes.resize(static_cast<size_t>(found.status.st_size) + 1); // one more, so that the end is seen at once
  if (!ReadAll(found.file.Get(), found.bytes))
    found.error = errno;
  return found;
}

int MakeDiskFile(const std::filesystem::path &path, std::string_view bytes, mode_t mode, Descriptor &file) {
  file = Descriptor(sys::Open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
  if (!file)
    return errno;
  if (WriteAll(file.Get(), bytes))
    return 0;
  const int error = errno;
  file = Descriptor();
  sys::Unlink(path.c_str());
  return error;
}

bool RemoveTree(const std::filesystem::path &path) {
  struct stat status;
  if (lstat(path.c_str(), &status) != 0)
    return errno == ENOENT;
  if (!S_ISDIR(status.st_mode))
    return sys::Unlink(path.c_str()) == 0;
  std::error_code error;
  std::filesystem::directory_iterator entries(path, error);
  for (const std::filesystem::directory_iterator end; !error && entries != end; entries.increment(error))
    RemoveTree(entries->path());
  return sys::RemoveFolder(path.c_str()) == 0;
}

int OpenFolder(const std::filesystem::path &folder, Descriptor &opened) {
  opened = Descriptor(sys::Open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return opened || errno == EACCES ? 0 : errno;
}

int SyncFolder(const Descriptor &folder) {
  if (folder && sys::Sync(folder.Get()) == 0)
    return 0;
  if (folder && errno != EINVAL && errno != ENOTSUP)
    return errno;
  sys::SyncAll(); // of a file system that has no such call, too
  return 0;
}

int SyncFolderAt(const std::filesystem::path &folder) {
  Descriptor opened;
  const int error = OpenFolder(folder, opened);
  return error == 0 ? SyncFolder(opened) : error;
}

} // namespace machine
