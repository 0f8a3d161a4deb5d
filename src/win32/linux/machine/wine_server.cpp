// Where the server has its own folder, and the lock that it holds there.
#include "win32/linux/machine/wine_server.h"

#include "win32/linux/machine/descriptor.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace machine {

namespace {

constexpr int Flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

// The name that Debian's Wine makes up for a prefix and leaves in it; empty without one.
std::string MadeUpName(const std::filesystem::path &prefix) {
  const Descriptor file(open((prefix / "wineserver").c_str(), Flags));
  struct stat status;
  std::array<char, NAME_MAX> text; // a longer one is no name
  if (!file || fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode))
    return {};
  const ssize_t size = read(file.Get(), text.data(), text.size());
  const std::string name(text.data(), static_cast<size_t>(std::max<ssize_t>(size, 0)));
  return name.find('/') == std::string::npos ? name : std::string();
}

// The folders where a Wine server of the prefix may have its own: Wine has a fixed one for a user, Debian's Wine the
// one of that name.
std::vector<std::filesystem::path> ServerFolders(const std::filesystem::path &prefix, uid_t owner) {
  std::vector<std::filesystem::path> folders = {"/tmp/.wine-" + std::to_string(owner)};
  if (const std::string name = MadeUpName(prefix); !name.empty()) {
    folders.push_back(std::filesystem::path("/tmp") / name);
    if (const char *const temporary = std::getenv("TMPDIR"); temporary != nullptr && *temporary != '\0')
      folders.push_back(std::filesystem::path(temporary) / name);
  }
  return folders;
}

// Opens what a name stands for in an open folder, if it is of that kind and its owner's alone. Wine makes it so and
// takes nothing else: what others may get at can be a server that somebody feigns to keep everybody from writing.
Descriptor OpenOwn(int folder, const char *name, mode_t kind, uid_t owner) {
  Descriptor file(openat(folder, name, Flags));
  struct stat status;
  const bool isOwn = file && fstat(file.Get(), &status) == 0 && status.st_uid == owner &&
                     (status.st_mode & (S_IFMT | S_IRWXG | S_IRWXO)) == kind;
  return isOwn ? std::move(file) : Descriptor();
}

// A server holds a file locked as long as it runs.
bool IsLocked(const Descriptor &file) {
  struct flock lock = {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return file && fcntl(file.Get(), F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

} // namespace

std::string ServerFault(const std::filesystem::path &folder) {
  struct stat status;
  if (stat(folder.c_str(), &status) != 0)
    return {};
  // The server's folder is named after the prefix's device and inode.
  char name[64];
  std::snprintf(name, sizeof name, "server-%llx-%llx", static_cast<unsigned long long>(status.st_dev),
                static_cast<unsigned long long>(status.st_ino));
  for (const std::filesystem::path &above : ServerFolders(folder, status.st_uid)) {
    const Descriptor outer = OpenOwn(AT_FDCWD, above.c_str(), S_IFDIR, status.st_uid);
    const Descriptor inner = OpenOwn(outer.Get(), name, S_IFDIR, status.st_uid);
    if (IsLocked(OpenOwn(inner.Get(), "lock", S_IFREG, status.st_uid)))
      return folder.string() + ": a Wine server is running on this folder, stop it first (wineserver -k)";
  }
  return {};
}

} // namespace machine
