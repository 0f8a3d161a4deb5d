// The file beside: locked, written, renamed.
#include "win32/linux/machine/replacement.h"
#include "win32/linux/machine/system_calls.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace machine {

namespace {

constexpr mode_t Permissions = 0777;

} // namespace

Replacement::Replacement(std::filesystem::path path)
    : target(std::move(path)),
      beside(target.parent_path() / std::string(".").append(target.filename()).append(".new")) {
  struct stat old;
  struct stat made;
  const bool replaces = stat(target.c_str(), &old) == 0;
  const mode_t mode = replaces ? old.st_mode & Permissions : 0644;
  do {
    file = Descriptor(sys::Open(beside.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!file)
      return;
    if (sys::Lock(file.Get(), LOCK_EX | LOCK_NB) != 0) { // somebody else's replacement of the same file is under way
      file = Descriptor();
      errno = EWOULDBLOCK;
      return;
    }
  } while (!IsStill(file, beside, made));
  pending = true;
  // Only what isn't so already: each call costs as much as writing a small file.
  const bool isEmpty = made.st_size == 0 || ftruncate(file.Get(), 0) == 0;
  const bool hasMode = !replaces || (made.st_mode & Permissions) == mode || sys::ChangeMode(file.Get(), mode) == 0;
  const bool hasOwner =
      !replaces || made.st_uid == old.st_uid || sys::ChangeOwner(file.Get(), old.st_uid, old.st_gid) == 0;
  if (!isEmpty || !hasMode || !hasOwner) {
    const int reason = errno;
    file = Descriptor();
    errno = reason;
  }
}

Replacement::~Replacement() {
  if (pending)
    sys::Unlink(beside.c_str());
}

Descriptor Replacement::TakeFile() {
  sys::Lock(file.Get(), LOCK_UN);
  return std::move(file);
}

bool Replacement::Commit() {
  if (sys::Rename(beside.c_str(), target.c_str()) != 0)
    return false;
  pending = false;
  return true;
}

} // namespace machine
