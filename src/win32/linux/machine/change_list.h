// The list of a change's files as it stands in the store: text, UTF-8, a file a line.
//
//   acctkit changes 1 undoable 5572261458133904252
//   file 0.new 4120:f30e7d3175e12b84 4385:1b84f30e7d3175e2 user.reg
//   file 1.new - 185:7d3175e12b84f30e C:\Netscape\Users\home\prefs.js
//   folder C:\Netscape\Users\home
//   end
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace machine {

// What tells one content of a file from another.
struct Digest {
  uint64_t size;
  uint64_t hash;
  bool operator==(const Digest &) const = default;
};
Digest DigestOf(std::string_view bytes);
using Content = std::optional<Digest>; // none of a file that isn't there

struct ListedFile {
  std::string stored; // the file beside the list that is to stand at the path
  Content before;
  Content after;
  std::string path; // on the machine
  // Not in the text: where the path leads on disk, and the file there before.
  std::filesystem::path target = {};
  std::optional<struct stat> base = {};
};

struct ChangeList {
  bool undoable = true;
  std::string token; // a part of names that nobody else chose
  std::vector<ListedFile> files;
  std::vector<std::string> folders; // that were made

  std::string Text() const;
};

// Reads a list that anybody may have written. Newer is one of a later version of the program.
enum class ListState { Whole, Damaged, Newer };
ListState ReadChangeList(std::string_view text, ChangeList &list);

} // namespace machine
