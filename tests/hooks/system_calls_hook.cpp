#include "hooks/system_calls_hook.h"

#include "win32/linux/machine/system_calls.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <mutex>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::mutex guard;
WatchedCalls *watched = nullptr;

} // namespace

// One call as it comes in.
class Call {
public:
  explicit Call(std::string_view name, const char *path = nullptr) {
    const std::lock_guard lock(guard);
    isWatched = watched != nullptr;
    if (!isWatched)
      return;
    watched->all.push_back(std::string(name) + (path != nullptr ? std::string(" ") + path : ""));
    if (const auto &plan = watched->plan; plan && (plan->name.empty() || plan->name == name)) {
      const size_t number = ++watched->planned;
      befallen = plan->number == 0 || plan->number == number;
      error = plan->error;
    }
  }

  bool IsWatched() const { return isWatched; }
  bool IsBefallen() const { return befallen; }
  int Fail() const {
    if (error == 0)
      raise(SIGKILL);
    errno = error;
    return -1;
  }

private:
  bool isWatched;
  bool befallen = false;
  int error = 0;
};

WatchedCalls::WatchedCalls(std::optional<CallPlan> plan) : plan(plan) {
  const std::lock_guard lock(guard);
  watched = this;
}

WatchedCalls::~WatchedCalls() {
  const std::lock_guard lock(guard);
  watched = nullptr;
}

size_t WatchedCalls::Count(std::string_view name) const {
  return static_cast<size_t>(
      std::ranges::count_if(all, [&](std::string_view call) { return call.substr(0, call.find(' ')) == name; }));
}

namespace machine::sys {

namespace {

// Makes the call unless a plan befalls it.
template <typename Function> int Pass(const Call &call, Function function) {
  return call.IsBefallen() ? call.Fail() : function();
}

} // namespace

int Open(const char *path, int flags, mode_t mode) {
  return Pass(Call("Open", path), [=] { return open(path, flags, mode); });
}

ssize_t Read(int file, void *buffer, size_t size) {
  const Call call("Read");
  return call.IsBefallen() ? call.Fail() : read(file, buffer, size);
}

ssize_t Write(int file, const void *data, size_t size) {
  const Call call("Write");
  const ssize_t written = write(file, data, call.IsBefallen() ? size / 2 : size);
  return call.IsBefallen() ? call.Fail() : written;
}

int ChangeMode(int file, mode_t mode) {
  return Pass(Call("ChangeMode"), [=] { return fchmod(file, mode); });
}

int ChangeOwner(int file, uid_t user, gid_t group) {
  return Pass(Call("ChangeOwner"), [=] { return fchown(file, user, group); });
}

int Lock(int file, int operation) {
  return Pass(Call("Lock"), [=] { return flock(file, operation); });
}

int Sync(int file) {
  return Pass(Call("Sync"), [=] { return fsync(file); });
}

int Rename(const char *from, const char *to) {
  return Pass(Call("Rename", to), [=] { return rename(from, to); });
}

int Unlink(const char *path) {
  return Pass(Call("Unlink", path), [=] { return unlink(path); });
}

int MakeFolder(const char *path, mode_t mode) {
  return Pass(Call("MakeFolder", path), [=] { return mkdir(path, mode); });
}

int RemoveFolder(const char *path) {
  return Pass(Call("RemoveFolder", path), [=] { return rmdir(path); });
}

void Wait() {
  const Call call("Wait");
  Pass(call, [&] { return call.IsWatched() ? 0 : usleep(1000); });
}

} // namespace machine::sys
