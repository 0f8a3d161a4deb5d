// The files and folders that a transaction has written and that aren't on disk yet, and the folders that it has seen.
#pragma once

#include "win32/linux/machine/descriptor.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unordered_set>
#include <vector>

namespace machine {

struct StagedFile {
  std::string path;                // on the machine, UTF-8
  std::optional<struct stat> base; // the file that it takes the place of, as it was opened
  std::string content;
  Descriptor held; // the old file, which stays locked
};

struct StagedFolder {
  std::string path; // on the machine, UTF-8, without a backslash at its end
  std::filesystem::path target;
};

class StagedFiles {
public:
  using Files = std::map<std::filesystem::path, StagedFile>; // by their places on disk

  const StagedFile *Find(const std::filesystem::path &target) const;
  // A file written again keeps what was there before the transaction.
  void Put(const std::filesystem::path &target, StagedFile file);

  bool HasFolder(const std::filesystem::path &target) const;
  void AddFolder(StagedFolder folder);

  // Folders that are on disk or here needn't be looked for again.
  bool IsKnownFolder(const std::filesystem::path &target) const { return known.contains(target.native()); }
  void KnowFolder(const std::filesystem::path &target) { known.insert(target.native()); }

  // The names of all entries of a folder that are here.
  std::vector<std::string> NamesIn(const std::filesystem::path &folder) const;

  const Files &All() const { return files; }
  const std::vector<StagedFolder> &Folders() const { return folders; } // in the order in which they were made

private:
  Files files;
  std::vector<StagedFolder> folders;
  std::unordered_set<std::string> known;
};

} // namespace machine
