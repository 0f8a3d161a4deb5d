// How a transaction gets to the disk whole, and what is kept of it. In the store folder of a machine stand:
//
//   staging  while the new files are written: whoever finds it removes it
//   commit   once all of them are on disk: whoever finds it puts them in place
//   last     what the last change replaced, for an undo
//
// Each is a folder with the new files (0.new, 1.new, ...), the old ones (0.old, ...) and a list of them; one becomes
// the next by its name. All calls are made with the machine's lock held alone.
#pragma once

#include "win32/linux/machine/change_list.h"
#include "win32/linux/machine/descriptor.h"
#include "win32/linux/machine/paths.h"
#include "win32/linux/machine/staged_files.h"
#include "win32/linux/public/transaction.h"

#include <filesystem>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace machine {

// A file to be replaced, made or removed.
struct Change {
  std::string path;                 // on the machine, UTF-8; of a hive, its file's name
  std::filesystem::path target;     // on disk
  std::optional<struct stat> base;  // the file as it was read; none if there was none
  std::optional<std::string> after; // none: it is removed
  std::string_view known = {};      // the bytes of the base, if they are in memory

  enum class Result { Unchanged, Refused, Placed };
  Result result = Result::Unchanged;
  Descriptor file; // of a placed one
};

class ChangeStore {
public:
  explicit ChangeStore(const std::filesystem::path &machineFolder);

  // Whether a change was broken off that is to be finished.
  bool HasBrokenOff() const;
  // Finishes it if each file is as it was before or as it is to be, else leaves all as it is; a notice says which. The
  // fault if the machine can't be written before that has been done.
  std::string Recover();

  // Makes the folders and puts all changes in place. What the user has no right to is refused for itself, with a fault.
  // False with a fault recorded if nothing is in place. An undoable one becomes `last`.
  bool Commit(std::vector<Change> &changes, const std::vector<StagedFolder> &folders, bool undoable);

  // Puts back what `last` says.
  Undone Undo();

private:
  DiskPath TargetOf(const std::string &path) const;

  // The steps of a commit. False with a fault recorded.
  bool CommitList(std::vector<Change> &changes, ChangeList list);
  bool Stage(Change &change, ChangeList &list);
  bool Decide(const ChangeList &list);
  int PlaceOne(const std::filesystem::path &from, const ListedFile &file, const std::string &token);
  void RollBack(ChangeList list, size_t placed);
  void Undecide();
  void Finish(const ChangeList &list);
  void Keep();

  std::string FinishBrokenOff(ChangeList &list);
  std::string Drop(const ChangeList &list, const std::string &why);

  std::filesystem::path machineFolder;
  std::filesystem::path store;
  std::filesystem::path staging;
  std::filesystem::path commit;
  std::filesystem::path last;
};

} // namespace machine
