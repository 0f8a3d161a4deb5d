#include "hooks/system_calls_hook.h"

#include "win32/linux/machine/system_calls.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

struct SystemCalls {
  static inline WatchedCalls *watched = nullptr;

  // Whether a plan befalls the call that comes in.
  static bool Befalls(const std::string &name, const std::string &path = "") {
    if (watched == nullptr)
      return false;
    watched->all.push_back(path.empty() ? name : name + ' ' + path);
    const CallPlan &plan = watched->plan;
    return watched->isPlanned && (plan.name.empty() || plan.name == name) &&
           (++watched->planned == plan.number || plan.number == 0);
  }

  static int Fail() {
    const CallPlan &plan = watched->plan;
    for (const int file : watched->unsynced)
      if (plan.losesUnsynced && ftruncate(file, 0) != 0)
        std::perror("power cut");
    if (plan.error == 0)
      raise(SIGKILL);
    errno = plan.error;
    return -1;
  }

  static void NoteWritten(int file) {
    if (watched != nullptr)
      watched->unsynced.push_back(open(("/proc/self/fd/" + std::to_string(file)).c_str(), O_WRONLY | O_CLOEXEC));
  }
  static void NoteSynced(int file) {
    struct stat synced;
    struct stat written;
    if (watched != nullptr && fstat(file, &synced) == 0)
      std::erase_if(watched->unsynced, [&](int other) {
        return fstat(other, &written) == 0 && written.st_ino == synced.st_ino && close(other) == 0;
      });
  }

  static void Watch(WatchedCalls &calls) { watched = &calls; }
  static void EndWatch() {
    for (const int file : watched->unsynced)
      close(file);
    watched = nullptr;
  }
};

WatchedCalls::WatchedCalls() { SystemCalls::Watch(*this); }
WatchedCalls::WatchedCalls(const CallPlan &plan) : plan(plan), isPlanned(true) { SystemCalls::Watch(*this); }
WatchedCalls::~WatchedCalls() { SystemCalls::EndWatch(); }

namespace machine::sys {

namespace {

// Makes the call unless the plan befalls it.
template <typename Function> int Pass(bool isBefallen, Function function) {
  return isBefallen ? SystemCalls::Fail() : function();
}
bool Befalls(const char *name, const char *path = "") { return SystemCalls::Befalls(name, path); }

} // namespace

int Open(const char *path, int flags, mode_t mode) {
  return Pass(Befalls((flags & O_CREAT) != 0 ? "Create" : "Open", path), [=] { return open(path, flags, mode); });
}

ssize_t Read(int file, void *buffer, size_t size) {
  return Befalls("Read") ? SystemCalls::Fail() : read(file, buffer, size);
}

ssize_t Write(int file, const void *data, size_t size) {
  const bool isBefallen = Befalls("Write");
  const ssize_t written = write(file, data, isBefallen ? size / 2 : size);
  SystemCalls::NoteWritten(file);
  return isBefallen ? SystemCalls::Fail() : written;
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
    SystemCalls::NoteSynced(file);
    return fsync(file);
  });
}

void SyncAll() { sync(); }

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
  Pass(Befalls("Wait"), [] { return SystemCalls::watched == nullptr ? usleep(1000) : 0; });
}

} // namespace machine::sys
