// The machine folder as a whole: which it is, faults and notices.
#include "win32/linux/public/machine.h"

#include "win32/linux/machine/hives.h"
#include "win32/linux/machine/machine_folder.h"
#include "win32/linux/machine/running_transaction.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

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
bool IsCurrentFolder(const std::filesystem::path &folder) {
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

std::string FindFault(bool forWriting) {
  const ThreadGuard threads;
  const std::filesystem::path folder = Folder();
  if (std::string fault = FolderFault(folder); !fault.empty())
    return fault;
  if (!WriteRefusal().empty())
    return WriteRefusal();
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
