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

bool RemoveFolderOfFiles(const std::filesystem::path &folder) {
  std::error_code error;
  std::filesystem::directory_iterator entries(folder, error);
  for (const std::filesystem::directory_iterator end; !error && entries != end; entries.increment(error))
    sys::Unlink(entries->path().c_str());
  return sys::RemoveFolder(folder.c_str()) == 0 || errno == ENOENT;
}

int OpenFolder(const std::filesystem::path &folder, Descriptor &opened) {
  opened = Descriptor(sys::Open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return opened || errno == EACCES ? 0 : errno;
}

int SyncFolder(const Descriptor &folder) {
  if (folder)
    return sys::Sync(folder.Get()) == 0 ? 0 : errno;
  sys::SyncAll();
  return 0;
}

int SyncFolderAt(const std::filesystem::path &folder) {
  Descriptor opened;
  const int error = OpenFolder(folder, opened);
  return error == 0 ? SyncFolder(opened) : error;
}

} // namespace machine
