#include "win32/linux/machine/machine_lock.h"

#include "win32/linux/machine/disk_file.h"
#include "win32/linux/machine/system_calls.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace machine {

namespace {

constexpr int LongestWait = 20000; // milliseconds
constexpr int Flags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;

std::string Fault(const std::filesystem::path &path, const char *why) { return path.string() + ": " + why; }

// Makes the lock and the folder around it. 0 or errno.
int MakeLock(const std::filesystem::path &folder, const std::filesystem::path &path) {
  if (sys::MakeFolder(path.parent_path().c_str(), 0700) == 0) {
    GiveToOwner(Descriptor(sys::Open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | Flags)), 0700, folder);
    if (const int error = SyncFolderAt(folder); error != 0)
      return error;
  } else if (errno != EEXIST) {
    return errno;
  }
  const Descriptor made(sys::Open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | Flags, 0600));
  if (!made)
    return errno == EEXIST ? 0 : errno;
  GiveToOwner(made, 0600, folder);
  return 0;
}

} // namespace

std::filesystem::path StoreFolder(const std::filesystem::path &folder) { return folder / ".acctkit"; }

std::string StoreFault(const std::filesystem::path &folder) {
  const std::filesystem::path store = StoreFolder(folder);
  struct stat above;
  struct stat status;
  if (stat(folder.c_str(), &above) != 0 || lstat(store.c_str(), &status) != 0)
    return {};
  if (!S_ISDIR(status.st_mode))
    return Fault(store, "this is no folder");
  const bool isShared = (above.st_mode & (S_IWGRP | S_IWOTH)) != 0; // whoever may write the one may write the other
  if (!isShared && status.st_uid != above.st_uid && status.st_uid != geteuid() && status.st_uid != 0)
    return Fault(store, "this folder belongs to another user");
  return {};
}

void GiveToOwner(const Descriptor &made, mode_t mode, const std::filesystem::path &folder) {
  struct stat status;
  struct stat now;
  if (stat(folder.c_str(), &status) != 0 || fstat(made.Get(), &now) != 0)
    return;
  if ((status.st_mode & S_IWGRP) != 0)
    mode |= (mode & S_IRWXU) >> 3;
  if ((status.st_mode & S_IWOTH) != 0)
    mode |= (mode & S_IRWXU) >> 6;
  // If one of these fails, it is as its maker's other files.
  if ((now.st_mode & 0777) != mode)
    sys::ChangeMode(made.Get(), mode);
  if (now.st_uid != status.st_uid || now.st_gid != status.st_gid)
    sys::ChangeOwner(made.Get(), status.st_uid, status.st_gid);
}

std::string MachineLock::Take(const std::filesystem::path &path, int flags, int operation) {
  for (int waited = 0;;) {
    file = Descriptor(sys::Open(path.c_str(), flags | Flags));
    while (file && sys::Lock(file.Get(), operation | LOCK_NB) != 0) {
      if (errno == EWOULDBLOCK && waited++ < LongestWait) {
        sys::Wait();
      } else if (errno != EINTR) {
        const bool isBusy = errno == EWOULDBLOCK;
        const std::string why =
            isBusy ? "another program has had the machine locked for too long" : std::strerror(errno);
        file = Descriptor();
        return Fault(path, why.c_str());
      }
    }
    struct stat opened;
    if (!file)
      return Fault(path, std::strerror(errno));
    if (IsStill(file, path, opened)) // else it was removed between opening and locking
      return {};
  }
}

std::string MachineLock::TakeAlone(const std::filesystem::path &folder) {
  const std::filesystem::path path = StoreFolder(folder) / "lock";
  if (std::string fault = StoreFault(folder); !fault.empty())
    return fault;
  if (access(path.c_str(), F_OK) != 0)
    if (const int error = MakeLock(folder, path); error != 0)
      return Fault(path, std::strerror(error));
  return Take(path, O_RDWR, LOCK_EX);
}

std::string MachineLock::TakeShared(const std::filesystem::path &folder) {
  const std::filesystem::path path = StoreFolder(folder) / "lock";
  std::string fault = StoreFault(folder);
  if (fault.empty() && access(path.c_str(), R_OK) == 0)
    fault = Take(path, O_RDONLY, LOCK_SH);
  return fault;
}

} // namespace machine
