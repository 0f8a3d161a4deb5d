// Reads numbers one behind the other from bytes that may end too soon.
#pragma once

#include <cstddef>
#include <cstring>

namespace machine {

// The next boundary of four bytes.
constexpr size_t Aligned(size_t offset) { return (offset + 3) & ~size_t{3}; }

// Past the end everything is 0 and the reader has failed.
class Reader {
public:
  Reader(const char *bytes, size_t size) : bytes(bytes), size(size) {}

  bool Failed() const { return failed; }

  template <typename Number> Number Next() {
    Number number = 0;
    const size_t from = at;
    Skip(sizeof number);
    if (!failed)
      std::memcpy(&number, bytes + from, sizeof number);
    return number;
  }

  void Skip(size_t count) {
    failed = failed || size - at < count;
    at = failed ? size : at + count;
  }

  void Align() { Skip(Aligned(at) - at); }

private:
  const char *bytes;
  size_t size;
  size_t at = 0;
  bool failed = false;
};

} // namespace machine
