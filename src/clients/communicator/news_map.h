// The map of a profile's news servers, the file `fat` in its news folder, and the newsrc file that each server has
// there. The map only grows: no record is removed or changed.
#pragma once

#include <string>

namespace communicator {

class NewsMap {
public:
  // Largest map that is kept, in bytes.
  static constexpr size_t Capacity = 10240;

  // The map below a profile's directory. Nothing is read or made yet.
  explicit NewsMap(const std::string &profileDirectory);

  // Whether the server can be entered: the host has a dot, which its newsrc file's name ends at, paths and record fit
  // their buffers of 256 bytes, and the map, if there is one, has room and is a text. A map that can't be opened counts
  // as having room: it stays as it is, and the account goes without it.
  bool CanEnter(const std::string &host) const;

  // Makes the news folder and enters the server with an empty newsrc file, emptying one of that name. Does nothing for
  // a host that stands anywhere in the map, or if the map can't be opened. If the map can't be written, no newsrc file
  // is made; on Windows, which empties a file before it writes it, the map may then be cut short.
  void Enter(const std::string &host) const;

private:
  std::string NewsrcPath(const std::string &host) const;
  std::string Record(const std::string &host) const;
  // The map with the server's record in a line of its own, also behind a last line that has no end.
  std::string WithServer(const std::string &map, const std::string &host) const;

  std::string folder;
  std::string path;
};

} // namespace communicator
