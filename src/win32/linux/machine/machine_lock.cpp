#include "win32/linux/machine/machine_lock.h"

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

// Gives a new file or folder of the store to those who may write the machine folder, also when root made it.
void GiveAway(const Descriptor &made, mode_t mode, const struct stat &folder) {
  if ((folder.st_mode & S_IWGRP) != 0)
    mode |= (mode & S_IRWXU) >> 3;
  if ((folder.st_mode & S_IWOTH) != 0)
    mode |= (mode & S_IRWXU) >> 6;
  // If one of these fails, the file is as its maker's other files.
  sys::ChangeMode(made.Get(), mode);
  if (folder.st_uid != geteuid() || folder.st_gid != getegid())
    sys::ChangeOwner(made.Get(), folder.st_uid, folder.st_gid);
}

// Makes the lock and the folder around it. 0 or errno.
int MakeLock(const std::filesystem::path &folder, const std::filesystem::path &path) {
  struct stat status;
  if (stat(folder.c_str(), &status) != 0)
    return errno;
  if (sys::MakeFolder(path.parent_path().c_str(), 0700) == 0)
    GiveAway(Descriptor(sys::Open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | Flags)), 0700, status);
  else if (errno != EEXIST)
    return errno;
  const Descriptor made(sys::Open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | Flags, 0600));
  if (made)
    GiveAway(made, 0600, status);
  return made || errno == EEXIST ? 0 : errno;
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
  if (status.st_uid != above.st_uid && status.st_uid != geteuid() && status.st_uid != 0)
    return Fault(store, "this folder belongs to another user");
  return {};
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
