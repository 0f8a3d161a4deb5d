// Where the server has its own folder, and the lock that it holds there.
#include "win32/linux/machine/wine_server.h"

#include "win32/linux/machine/descriptor.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <vector>

namespace machine {

namespace {

// The folders where a Wine server of the prefix may have its own: Wine has a fixed one for a user, Debian's Wine makes
// one up and leaves its name in the prefix.
std::vector<std::filesystem::path> ServerFolders(const std::filesystem::path &prefix, const struct stat &status) {
  std::vector<std::filesystem::path> folders = {"/tmp/.wine-" + std::to_string(status.st_uid)};
  std::string name;
  if (std::ifstream(prefix / "wineserver") >> name) {
    folders.push_back(std::filesystem::path("/tmp") / name);
    if (const char *const temporary = std::getenv("TMPDIR"); temporary != nullptr && *temporary != '\0')
      folders.push_back(std::filesystem::path(temporary) / name);
  }
  return folders;
}

// A server holds a file locked as long as it runs.
bool IsLocked(const std::filesystem::path &path) {
  const Descriptor file(open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
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
  for (const std::filesystem::path &above : ServerFolders(folder, status))
    if (IsLocked(above / name / "lock"))
      return folder.string() + ": a Wine server is running on this folder, stop it first (wineserver -k)";
  return {};
}

} // namespace machine
