#include "win32/linux/machine/change_store.h"

#include "win32/linux/machine/disk_file.h"
#include "win32/linux/machine/hive_file.h"
#include "win32/linux/machine/machine_folder.h"
#include "win32/linux/machine/machine_lock.h"
#include "win32/linux/machine/paths.h"
#include "win32/linux/machine/system_calls.h"
#include "win32/linux/machine/wine_server.h"
#include "win32/linux/public/machine.h"
#include "win32/linux/text/code_page.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <set>
#include <sys/random.h>
#include <unistd.h>

namespace machine {

namespace {

namespace fs = std::filesystem;

constexpr mode_t Permissions = 0777;
constexpr std::string_view ListName = "list";

std::string Line(const fs::path &path, int error) { return path.string() + ": " + std::strerror(error); }

bool Fail(const fs::path &path, int error) {
  RecordFault(Line(path, error));
  return false;
}

// What a right that is missing answers.
bool IsRefusal(int error) { return error == EACCES || error == EPERM || error == EROFS; }

bool IsSame(const struct stat &left, const struct stat &right) {
  return left.st_dev == right.st_dev && left.st_ino == right.st_ino && left.st_size == right.st_size &&
         left.st_mtim.tv_sec == right.st_mtim.tv_sec && left.st_mtim.tv_nsec == right.st_mtim.tv_nsec;
}

// Gives a file the mode and the owner of the one that it takes the place of. 0 or errno.
int TakeOver(const Descriptor &file, const struct stat &old) {
  struct stat made;
  if (fstat(file.Get(), &made) != 0)
    return errno;
  if ((made.st_uid != old.st_uid || made.st_gid != old.st_gid) &&
      sys::ChangeOwner(file.Get(), old.st_uid, old.st_gid) != 0)
    return errno;
  const mode_t mode = old.st_mode & Permissions;
  return (made.st_mode & Permissions) == mode || sys::ChangeMode(file.Get(), mode) == 0 ? 0 : errno;
}

// Keeps a file that is to be replaced: as it is, since only its name changes hands, or as a copy, where it can't have a
// second name or has one already. 0 or errno.
int KeepOld(const fs::path &target, const DiskFile &old, const fs::path &kept) {
  if (old.status.st_nlink == 1 && sys::Link(target.c_str(), kept.c_str()) == 0)
    return 0;
  Descriptor copy;
  return MakeDiskFile(kept, old.bytes, 0600, copy);
}

Content ContentOf(const DiskFile &file) { return file.Exists() ? Content(DigestOf(file.bytes)) : std::nullopt; }

// What stands at a path now. 0, or errno if that can't be told.
int ContentAt(const fs::path &target, Content &content) {
  const DiskFile found = ReadDiskFile(target);
  content = ContentOf(found);
  return found.error == ENOENT ? 0 : found.error;
}

// What a folder, a link or a pipe in a file's place answers, and what will not be otherwise when it is tried again.
bool IsNoFile(int error) { return error == EINVAL || error == ELOOP || error == EFBIG || error == ENOTDIR; }

std::vector<fs::path> Targets(const ChangeList &list) {
  std::vector<fs::path> targets;
  for (const ListedFile &file : list.files)
    if (!file.target.empty())
      targets.push_back(file.target);
  return targets;
}

// The folders around files, to be put on disk. They are opened beforehand, so that a lack of descriptors doesn't show
// in the middle of a change.
class FoldersAround {
public:
  explicit FoldersAround(const std::vector<fs::path> &paths) {
    std::set<fs::path> names;
    for (const fs::path &path : paths)
      names.insert(path.parent_path());
    for (const fs::path &name : names)
      if (error == 0)
        error = OpenFolder(name, folders.emplace_back());
  }

  // 0 or errno, also of the opening.
  int Sync() const {
    int result = error;
    for (const Descriptor &folder : folders)
      if (result == 0)
        result = SyncFolder(folder);
    return result;
  }

  int error = 0;

private:
  std::vector<Descriptor> folders;
};

// Removes folders that were made for nothing, the last one first.
void RemoveFolders(const std::vector<fs::path> &folders) {
  for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder)
    sys::RemoveFolder(folder->c_str());
}

std::string RandomToken() {
  uint64_t number = 0;
  if (getrandom(&number, sizeof number, 0) != sizeof number)
    number = static_cast<uint64_t>(getpid());
  return std::to_string(number);
}

// Whether a kept file is what was replaced, by another name, and no copy.
bool IsItself(const fs::path &kept, const struct stat &base) {
  struct stat status;
  return lstat(kept.c_str(), &status) == 0 && status.st_ino == base.st_ino && status.st_dev == base.st_dev;
}

// A file's number, and whether it is the new or the old one.
std::string StoredName(size_t number, const char *which) { return std::to_string(number) + which; }

// Where a file is written that can't come from the store by a new name, since it is to stand on another disk.
fs::path Beside(const ListedFile &file, const std::string &token) {
  return file.target.parent_path() / (".acctkit-" + token + '-' + file.stored);
}

void HideFromOthers(const fs::path &kept) {
  if (const Descriptor file(sys::Open(kept.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC)); file)
    sys::ChangeMode(file.Get(), 0600);
}

bool IsFolder(const fs::path &path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

ChangeStore::ChangeStore(const fs::path &folder)
    : machineFolder(folder), store(StoreFolder(folder)), staging(store / "staging"), commit(store / "commit"),
      last(store / "last") {}

DiskPath ChangeStore::TargetOf(const std::string &path) const {
  for (const char *hive : {"system.reg", "user.reg"})
    if (path == hive)
      return {.path = HivePlace(machineFolder / hive)};
  const std::optional<std::string> ansi = text::FromUtf8(path);
  return ansi ? FindOnDisk(ansi->c_str()) : DiskPath();
}

// ---- Commit ----

bool ChangeStore::Commit(std::vector<Change> &changes, const std::vector<StagedFolder> &folders, bool undoable) {
  ChangeList list;
  list.undoable = undoable;
  std::vector<fs::path> made;
  for (const StagedFolder &folder : folders) {
    if (sys::MakeFolder(folder.target.c_str(), Permissions) == 0) {
      made.push_back(folder.target);
      list.folders.push_back(folder.path);
    } else if (errno != EEXIST) {
      Fail(folder.target, errno);
      RemoveFolders(made);
      return false;
    }
  }
  if (const int error = FoldersAround(made).Sync(); error != 0)
    Fail(machineFolder, error);
  else if (changes.empty() || CommitList(changes, std::move(list)))
    return true;
  if (!HasBrokenOff()) // else whoever finishes it needs them
    RemoveFolders(made);
  return false;
}

bool ChangeStore::CommitList(std::vector<Change> &changes, ChangeList list) {
  list.token = RandomToken();
  if (!RemoveTree(staging) || sys::MakeFolder(staging.c_str(), 0700) != 0)
    return Fail(staging, errno);
  GiveToOwner(Descriptor(sys::Open(staging.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)), 0700, machineFolder);
  const bool isStaged = std::ranges::all_of(changes, [&](Change &change) { return Stage(change, list); });
  if (!isStaged || list.files.empty()) {
    RemoveTree(staging);
    return isStaged;
  }
  const FoldersAround folders(Targets(list));
  if (folders.error != 0)
    Fail(machineFolder, folders.error);
  if (folders.error != 0 || !Decide(list)) {
    RemoveTree(staging);
    return false;
  }
  size_t placed = 0;
  int error = 0;
  for (; placed < list.files.size() && error == 0; placed += error == 0)
    error = PlaceOne(commit / list.files[placed].stored, list.files[placed], list.token);
  if (error == 0)
    error = folders.Sync();
  if (error == 0) {
    Finish(list);
    return true;
  }
  Fail(list.files[std::min(placed, list.files.size() - 1)].target, error);
  RollBack(list, placed);
  return false;
}

bool ChangeStore::Stage(Change &change, ChangeList &list) {
  const auto refuse = [&](int error) {
    change.result = Change::Result::Refused;
    Fail(change.target, error);
    return list.undoable && IsRefusal(error); // a single call and an undo have nothing to go on with
  };
  if (faccessat(AT_FDCWD, change.target.parent_path().c_str(), W_OK | X_OK, AT_EACCESS) != 0)
    return refuse(errno);
  DiskFile old;
  if (!change.known.empty() && lstat(change.target.c_str(), &old.status) == 0 && IsSame(old.status, *change.base))
    old.bytes = change.known;
  else
    old = ReadDiskFile(change.target);
  if (!old.Exists() && old.error != ENOENT)
    return Fail(change.target, old.error);
  if (old.Exists() != change.base.has_value() || (old.Exists() && !IsSame(old.status, *change.base))) {
    RecordFault(change.target.string() + ": another program has changed it meanwhile");
    return false;
  }
  if (old.Exists() ? change.after == old.bytes : !change.after)
    return true;

  const size_t number = list.files.size();
  ListedFile file = {StoredName(number, ".new"), std::nullopt, std::nullopt, change.path, change.target, change.base};
  if (old.Exists()) {
    file.before = DigestOf(old.bytes);
    if (const int error = KeepOld(change.target, old, staging / StoredName(number, ".old")); error != 0)
      return Fail(change.target, error);
  }
  if (change.after) {
    file.after = DigestOf(*change.after);
    const fs::path stored = staging / file.stored;
    if (const int error = MakeDiskFile(stored, *change.after, old.Exists() ? 0600 : 0666, change.file); error != 0)
      return Fail(change.target, error);
    if (const int error = old.Exists() ? TakeOver(change.file, old.status) : 0; error != 0) {
      sys::Unlink(stored.c_str());
      sys::Unlink((staging / StoredName(number, ".old")).c_str());
      return refuse(error);
    }
    if (sys::Sync(change.file.Get()) != 0)
      return Fail(change.target, errno);
  }
  change.result = Change::Result::Placed;
  list.files.push_back(std::move(file));
  return true;
}

// From here on the change is to be finished. One file is replaced in one step: what is known of it needn't be on disk.
bool ChangeStore::Decide(const ChangeList &list) {
  Descriptor written;
  if (const int error = MakeDiskFile(staging / ListName, list.Text(), 0600, written); error != 0)
    return Fail(store, error);
  GiveToOwner(written, 0600, machineFolder);
  const bool needsSync = list.files.size() > 1;
  if (needsSync && (sys::Sync(written.Get()) != 0 || SyncFolderAt(staging) != 0))
    return Fail(store, errno);
  if (sys::Rename(staging.c_str(), commit.c_str()) != 0)
    return Fail(commit, errno);
  if (!needsSync || SyncFolderAt(store) == 0)
    return true;
  Fail(store, errno);
  Undecide();
  return false;
}

// Puts one file in place. 0 or errno.
int ChangeStore::PlaceOne(const fs::path &from, const ListedFile &file, const std::string &token) {
  if (!file.after)
    return sys::Unlink(file.target.c_str()) == 0 || errno == ENOENT ? 0 : errno;
  if (sys::Rename(from.c_str(), file.target.c_str()) == 0)
    return 0;
  if (errno != EXDEV)
    return errno;
  // The file is on another disk than the store.
  const DiskFile stored = ReadDiskFile(from);
  if (!stored.Exists())
    return stored.error;
  const fs::path beside = Beside(file, token);
  sys::Unlink(beside.c_str()); // of one who was killed here
  Descriptor copy;
  int error = MakeDiskFile(beside, stored.bytes, 0600, copy);
  if (error != 0)
    return error;
  error = TakeOver(copy, stored.status);
  if (error == 0 && (sys::Sync(copy.Get()) != 0 || sys::Rename(beside.c_str(), file.target.c_str()) != 0))
    error = errno;
  sys::Unlink(error == 0 ? from.c_str() : beside.c_str());
  return error;
}

// Turns a change round of which some files are in place: the list that is to be finished becomes one that leads back,
// in one step, so that a kill in between leads to one of both ends. If that fails, `commit` stays, for whoever comes
// next to finish.
void ChangeStore::RollBack(ChangeList list, size_t placed) {
  list.undoable = false;
  list.folders.clear();
  list.files.resize(placed);
  for (size_t number = 0; number < placed; ++number) {
    ListedFile &file = list.files[number];
    std::swap(file.before, file.after);
    file.stored = StoredName(number, ".old");
    if (!file.after || IsItself(commit / file.stored, *file.base))
      continue;
    const Descriptor copy(sys::Open((commit / file.stored).c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC));
    if (!copy || TakeOver(copy, *file.base) != 0 || sys::Sync(copy.Get()) != 0)
      return;
  }
  if (placed == 0)
    return Undecide();
  Descriptor written;
  const fs::path turned = commit / "turned";
  if (MakeDiskFile(turned, list.Text(), 0600, written) != 0 || sys::Sync(written.Get()) != 0 ||
      sys::Rename(turned.c_str(), (commit / ListName).c_str()) != 0 || SyncFolderAt(commit) != 0)
    return;
  for (const ListedFile &file : list.files)
    if (PlaceOne(commit / file.stored, file, list.token) != 0)
      return;
  if (FoldersAround(Targets(list)).Sync() == 0)
    RemoveTree(commit);
}

// Nothing is in place yet: the change goes back to where it isn't finished.
void ChangeStore::Undecide() { RemoveTree(sys::Rename(commit.c_str(), staging.c_str()) == 0 ? staging : commit); }

// The change is in place. Should this fail, whoever comes next does it.
void ChangeStore::Finish(const ChangeList &list) {
  if (!list.undoable) {
    RemoveTree(commit);
    return;
  }
  for (size_t number = 0; number < list.files.size(); ++number)
    if (list.files[number].before)
      HideFromOthers(commit / StoredName(number, ".old"));
  Keep();
}

// Where it can't take the place of `last`, it goes: else it would be finished again and again.
void ChangeStore::Keep() {
  if (!RemoveTree(last) || sys::Rename(commit.c_str(), last.c_str()) != 0)
    RemoveTree(commit);
}

// ---- Recovery ----

bool ChangeStore::HasBrokenOff() const { return IsFolder(commit); }

std::string ChangeStore::Recover() {
  RemoveTree(staging);
  if (!HasBrokenOff()) {
    RemoveTree(commit); // what isn't ours
    return {};
  }
  if (std::string fault = ServerFault(machineFolder); !fault.empty())
    return fault;
  const DiskFile text = ReadDiskFile(commit / ListName);
  ChangeList list;
  if (!text.Exists() && text.error != ENOENT && !IsNoFile(text.error))
    return Line(commit / ListName, text.error);
  switch (ReadChangeList(text.bytes, list)) {
  case ListState::Newer:
    return commit.string() + ": a later version of AcctKit has left a change unfinished, which it must finish";
  case ListState::Damaged:
    return Drop(list, "what is known of it is damaged");
  case ListState::Whole:
    return FinishBrokenOff(list);
  }
  return {};
}

std::string ChangeStore::Drop(const ChangeList &list, const std::string &why) {
  for (const ListedFile &file : list.files)
    if (!file.target.empty())
      sys::Unlink(Beside(file, list.token).c_str());
  RecordNotice(machineFolder.string() + ": a change was broken off and isn't finished: " + why);
  Keep(); // what it has replaced isn't lost
  return {};
}

std::string ChangeStore::FinishBrokenOff(ChangeList &list) {
  std::vector<const ListedFile *> missing;
  for (ListedFile &file : list.files) {
    const DiskPath target = TargetOf(file.path);
    file.target = target.path;
    if (target.path.empty() && target.missing && !file.after)
      continue; // the folder around it is gone, too
    if (target.path.empty())
      return Drop(list, "there is no " + file.path + " on this machine");
    Content now;
    Content stored;
    if (const int error = ContentAt(file.target, now); error != 0 && !IsNoFile(error))
      return Line(file.target, error);
    else if (error != 0 || (now != file.before && now != file.after))
      return Drop(list, file.path + " has been changed since");
    if (now == file.after)
      continue;
    if (const int error = file.after ? ContentAt(commit / file.stored, stored) : 0; error != 0)
      return Line(commit / file.stored, error);
    if (stored != file.after)
      return Drop(list, "the new " + file.path + " is damaged");
    missing.push_back(&file);
  }
  for (const ListedFile *file : missing)
    if (const int error = PlaceOne(commit / file->stored, *file, list.token); error != 0)
      return file->target.string() + ": a change that was broken off can't be finished: " + std::strerror(error);
  if (const int error = FoldersAround(Targets(list)).Sync(); error != 0)
    return Line(machineFolder, error);
  Finish(list);
  RecordNotice(machineFolder.string() + ": a change that was broken off has been finished");
  return {};
}

// ---- Undo ----

Undone ChangeStore::Undo() {
  const auto refusal = [](const std::string &why) { return Undone{why, {}}; };
  const DiskFile text = ReadDiskFile(last / ListName);
  ChangeList list;
  if (text.error == ENOENT)
    return refusal(machineFolder.string() + ": there is no change to take back");
  if (!text.Exists() || ReadChangeList(text.bytes, list) != ListState::Whole)
    return refusal((last / ListName).string() + ": it can't be read, is damaged, or comes from a later version");
  if (std::string fault = ServerFault(machineFolder); !fault.empty())
    return refusal(fault);
  std::vector<Change> changes;
  Undone undone;
  for (size_t number = 0; number < list.files.size(); ++number) {
    const ListedFile &file = list.files[number];
    Change &change = changes.emplace_back();
    change.path = file.path;
    change.target = TargetOf(file.path).path;
    const DiskFile now = ReadDiskFile(change.target);
    if ((!now.Exists() && now.error != ENOENT) || ContentOf(now) != file.after)
      return refusal(file.path + ": it has been changed since, so nothing is taken back");
    if (now.Exists())
      change.base = now.status;
    if (file.before) {
      DiskFile old = ReadDiskFile(last / StoredName(number, ".old"));
      if (ContentOf(old) != file.before)
        return refusal(file.path + ": what it was before isn't known any more");
      change.after = std::move(old.bytes);
    }
    undone.restored.push_back(file.path);
  }
  ChangeList back;
  back.undoable = false;
  if (!CommitList(changes, back))
    return refusal(TakeFault());
  RemoveTree(last);
  for (auto folder = list.folders.rbegin(); folder != list.folders.rend(); ++folder)
    if (const DiskPath target = TargetOf(*folder); target.IsFolder() && sys::RemoveFolder(target.path.c_str()) == 0)
      undone.restored.push_back(*folder + '\\');
  return undone;
}

} // namespace machine
