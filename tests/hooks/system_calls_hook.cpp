#include "hooks/system_calls_hook.h"

#include "win32/linux/machine/system_calls.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct Watch {
  std::optional<CallPlan> plan;
  size_t planned = 0; // calls that the plan is for, so far
  std::vector<std::string> all;
  std::vector<int> unsynced; // files with such data, opened once more
};
std::optional<Watch> watch;

// Whether the plan befalls the call that comes in.
bool Befalls(std::string_view name, const char *path = nullptr) {
  if (!watch)
    return false;
  watch->all.push_back(std::string(name) + (path != nullptr ? std::string(" ") + path : ""));
  const auto &plan = watch->plan;
  if (!plan || (plan->name.empty() ? plan->error == 0 && !IsChange(name) : plan->name != name))
    return false;
  return ++watch->planned == plan->number || plan->number == 0;
}

int Fail() {
  for (const int file : watch->unsynced)
    if (watch->plan->losesUnsynced && ftruncate(file, 0) != 0)
      std::perror("power cut");
  if (watch->plan->error == 0)
    raise(SIGKILL);
  errno = watch->plan->error;
  return -1;
}

// Makes the call unless the plan befalls it.
template <typename Function> int Pass(bool isBefallen, Function function) { return isBefallen ? Fail() : function(); }

void NoteWritten(int file) {
  if (watch)
    watch->unsynced.push_back(open(("/proc/self/fd/" + std::to_string(file)).c_str(), O_WRONLY | O_CLOEXEC));
}

// Of one file, or of all for -1.
void NoteSynced(int file) {
  struct stat synced;
  struct stat written;
  if (watch)
    std::erase_if(watch->unsynced, [&](int other) {
      const bool isSame =
          file == -1 || (fstat(file, &synced) == 0 && fstat(other, &written) == 0 && synced.st_ino == written.st_ino);
      return isSame && close(other) == 0;
    });
}

} // namespace

bool IsChange(std::string_view name) {
  return std::ranges::none_of(std::array{"Open", "Read", "Lock", "Sync", "Wait"},
                              [&](std::string_view other) { return name == other; });
}

WatchedCalls::WatchedCalls(const std::optional<CallPlan> &plan) { watch.emplace().plan = plan; }

WatchedCalls::~WatchedCalls() {
  NoteSynced(-1);
  watch.reset();
}

const std::vector<std::string> &WatchedCalls::All() { return watch->all; }

namespace machine::sys {

int Open(const char *path, int flags, mode_t mode) {
  return Pass(Befalls((flags & O_CREAT) != 0 ? "Create" : "Open", path), [=] { return open(path, flags, mode); });
}

ssize_t Read(int file, void *buffer, size_t size) { return Befalls("Read") ? Fail() : read(file, buffer, size); }

ssize_t Write(int file, const void *data, size_t size) {
  const bool isBefallen = Befalls("Write");
  const ssize_t written = write(file, data, isBefallen ? size / 2 : size);
  NoteWritten(file);
  return isBefallen ? Fail() : written;
}

int ChangeMode(int file, mode_t mode) {
  return Pass(Befalls("ChangeMode"), [=] { return fchmod(file, mode); });
}

int ChangeOwner(int file, uid_t user, gid_t group) {
  return Pass(Befalls("ChangeOwner"), [=] { return fchown(file, user, group); });
}

int Lock(int file, int operation) {
  return Pass(Befalls("Lock"), [=] { return flock(file, operation); });
}

int Sync(int file) {
  return Pass(Befalls("Sync"), [=] {
    NoteSynced(file);
    return fsync(file);
  });
}

// Other programs' data would take its time.
void SyncAll() { NoteSynced(-1); }

int Link(const char *from, const char *to) {
  return Pass(Befalls("Link", to), [=] { return link(from, to); });
}

int Rename(const char *from, const char *to) {
  return Pass(Befalls("Rename", to), [=] { return rename(from, to); });
}

int Unlink(const char *path) {
  return Pass(Befalls("Unlink", path), [=] { return unlink(path); });
}

int MakeFolder(const char *path, mode_t mode) {
  return Pass(Befalls("MakeFolder", path), [=] { return mkdir(path, mode); });
}

int RemoveFolder(const char *path) {
  return Pass(Befalls("RemoveFolder", path), [=] { return rmdir(path); });
}

void Wait() {
  Pass(Befalls("Wait"), [] { return watch ? 0 : usleep(1000); });
}

} // namespace machine::sys
