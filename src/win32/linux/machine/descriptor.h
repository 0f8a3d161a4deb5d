// Owns a file descriptor, and writes and reads all that is asked for.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <utility>

namespace machine {

class Descriptor {
public:
  Descriptor() = default;
  // Takes a file that was just opened; errno stays. Where the process has closed its standard streams, the file would
  // get one of their numbers, and what the process prints would go into it: it gets another.
  explicit Descriptor(int opened);
  ~Descriptor();
  Descriptor(Descriptor &&other) noexcept : number(std::exchange(other.number, -1)) {}
  Descriptor &operator=(Descriptor &&other) noexcept {
    std::swap(number, other.number);
    return *this;
  }
  Descriptor(const Descriptor &) = delete;
  Descriptor &operator=(const Descriptor &) = delete;

  explicit operator bool() const { return number >= 0; }
  int Get() const { return number; }

private:
  int number = -1;
};

// Both go on after interruptions; false with errno set.
bool WriteAll(int file, std::string_view data);
bool ReadAll(int file, std::string &data);

// Whether the open file, whose state is handed out, is what the path names now; another process may have replaced it
// meanwhile.
bool IsStill(const Descriptor &file, const std::filesystem::path &path, struct stat &opened);

// Whether a mode lets anybody write. Files are replaced and not written to, so the system doesn't ask; the mode binds
// the superuser too.
bool IsWritable(mode_t mode);

} // namespace machine
