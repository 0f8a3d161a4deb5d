#include "win32/linux/machine/descriptor.h"

#include "win32/linux/machine/system_calls.h"
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace machine {

Descriptor::Descriptor(int opened) : number(opened) {
  if (opened < 0 || opened > STDERR_FILENO)
    return;
  number = fcntl(opened, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  const int reason = errno;
  close(opened);
  errno = reason;
}

Descriptor::~Descriptor() {
  if (number >= 0)
    close(number);
}

bool WriteAll(int file, std::string_view data) {
  while (!data.empty()) {
    const ssize_t written = sys::Write(file, data.data(), data.size());
    if (written < 0 && errno != EINTR)
      return false;
    if (written > 0)
      data.remove_prefix(static_cast<size_t>(written));
  }
  return true;
}

bool ReadAll(int file, std::string &data) {
  size_t length = 0;
  for (;;) {
    if (length == data.size())
      data.resize(length + 4096);
    const ssize_t count = sys::Read(file, data.data() + length, data.size() - length);
    if (count < 0 && errno != EINTR)
      return false;
    if (count == 0)
      break;
    if (count > 0)
      length += static_cast<size_t>(count);
  }
  data.resize(length);
  return true;
}

bool IsStill(const Descriptor &file, const std::filesystem::path &path, struct stat &opened) {
  struct stat named;
  return fstat(file.Get(), &opened) == 0 && lstat(path.c_str(), &named) == 0 && opened.st_dev == named.st_dev &&
         opened.st_ino == named.st_ino;
}

bool IsWritable(mode_t mode) { return (mode & (S_IWUSR | S_IWGRP | S_IWOTH)) != 0; }

} // namespace machine
