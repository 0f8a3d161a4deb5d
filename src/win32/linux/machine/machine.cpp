// The machine folder as a whole: which it is, faults and notices, a Wine server at work on it.
#include "win32/linux/public/machine.h"

#include "win32/linux/machine/descriptor.h"
#include "win32/linux/machine/hives.h"
#include "win32/linux/machine/machine_folder.h"
#include "win32/linux/machine/running_transaction.h"
#include "win32/linux/machine/system_calls.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <mutex>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace machine {

namespace {

// The first of several lines, which is the cause of the others, until it is taken.
class FirstLine {
public:
  void Record(const std::string &another) {
    const std::lock_guard lock(guard);
    if (line.empty())
      line = another;
  }
  std::string Take() {
    const std::lock_guard lock(guard);
    return std::exchange(line, {});
  }
  bool IsRecorded() {
    const std::lock_guard lock(guard);
    return !line.empty();
  }

private:
  std::mutex guard;
  std::string line;
};

FirstLine faults;
FirstLine notices;

std::filesystem::path Environment(const char *name) {
  const char *const value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::filesystem::path Home() {
  if (auto named = Environment("HOME"); named.is_absolute())
    return named;
  const passwd *const user = getpwuid(geteuid());
  return user != nullptr ? user->pw_dir : "/";
}

} // namespace

std::filesystem::path Folder() {
  if (auto named = Environment("ACCTKIT_MACHINE"); !named.empty())
    return named;
  if (const auto data = Environment("XDG_DATA_HOME"); data.is_absolute())
    return data / "acctkit/machine";
  return Home() / ".local/share/acctkit/machine";
}

// Every registry call asks this, and a path is slow to make.
bool IsFolder(const std::filesystem::path &folder) {
  const char *const named = std::getenv("ACCTKIT_MACHINE");
  return named != nullptr && *named != '\0' ? folder.native() == named : folder == Folder();
}

void RecordFault(const std::string &line) { faults.Record(line); }

std::string TakeFault() { return faults.Take(); }

void RecordNotice(const std::string &line) { notices.Record(line); }

std::string TakeNotice() { return notices.Take(); }

bool HasNotice() { return notices.IsRecorded(); }

std::string FolderFault(const std::filesystem::path &folder) {
  struct stat status;
  if (stat(folder.c_str(), &status) != 0)
    return folder.string() + ": " + std::strerror(errno);
  if (!S_ISDIR(status.st_mode))
    return folder.string() + ": this is no folder";
  for (const char *part : {"drive_c", "system.reg", "user.reg"})
    if (stat((folder / part).c_str(), &status) == 0)
      return {};
    else if (errno != ENOENT)
      return folder.string() + ": " + std::strerror(errno);
  return folder.string() + ": this is no machine folder, it has neither drive_c nor a registry";
}

namespace {

// The folders where a Wine server of the prefix may have its own: Wine has a fixed one for a user, Debian's Wine makes
// one up and leaves its name in the prefix.
std::vector<std::filesystem::path> ServerFolders(const std::filesystem::path &prefix, const struct stat &status) {
  std::vector<std::filesystem::path> folders = {"/tmp/.wine-" + std::to_string(status.st_uid)};
  std::string name;
  if (std::ifstream(prefix / "wineserver") >> name) {
    folders.push_back(std::filesystem::path("/tmp") / name);
    if (const auto temporary = Environment("TMPDIR"); !temporary.empty())
      folders.push_back(temporary / name);
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

std::string FindFault(bool forWriting) {
  const ThreadGuard threads;
  const std::filesystem::path folder = Folder();
  if (std::string fault = FolderFault(folder); !fault.empty())
    return fault;
  const Hives &hives = CurrentHives();
  for (HiveFile *hive : {hives.localMachine.get(), hives.currentUser.get()}) {
    if (hive->Refresh() != ERROR_SUCCESS) {
      TakeFault(); // which is the result here
      return hive->Fault();
    }
    if (std::string fault = forWriting ? hive->WriteFault() : std::string(); !fault.empty())
      return fault;
  }
  return {};
}

} // namespace machine
