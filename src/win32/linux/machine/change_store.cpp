#include "win32/linux/machine/change_store.h"

#include "win32/linux/machine/disk_file.h"
#include "win32/linux/machine/hive_file.h"
#include "win32/linux/machine/machine_folder.h"
#include "win32/linux/machine/machine_lock.h"
#include "win32/linux/machine/paths.h"
#include "win32/linux/machine/system_calls.h"
#include "win32/linux/public/machine.h"
#include "win32/linux/text/code_page.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <ranges>
#include <set>
#include <sys/random.h>
#include <unistd.h>

namespace machine {

namespace {

namespace fs = std::filesystem;

constexpr mode_t Permissions = 0777;
constexpr std::string_view ListName = "list";
// A list begins so; a later version of the program would have another number.
constexpr std::string_view Heading = "acctkit changes ";
constexpr std::string_view Version = "1 ";

bool Fail(const fs::path &path, int error) {
  RecordFault(path.string() + ": " + std::strerror(error));
  return false;
}

// What a right that is missing answers.
bool IsRefusal(int error) { return error == EACCES || error == EPERM || error == EROFS; }

// Eight bytes at a time: hives have megabytes.
Digest DigestOf(std::string_view bytes) {
  uint64_t hash = 0x9E3779B97F4A7C15;
  for (size_t at = 0; at < bytes.size(); at += sizeof(uint64_t)) {
    uint64_t block = 0;
    std::memcpy(&block, bytes.data() + at, std::min(sizeof block, bytes.size() - at));
    hash = std::rotl((hash ^ block) * 0xFF51AFD7ED558CCD, 31);
  }
  return {bytes.size(), hash};
}

std::string Hex(uint64_t number) {
  char digits[16];
  return {digits, std::to_chars(digits, digits + sizeof digits, number, 16).ptr};
}

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

// What stands at a path now. False if that can't be told.
bool ContentAt(const fs::path &target, Content &content) {
  const DiskFile found = ReadDiskFile(target);
  content = found.Exists() ? Content(DigestOf(found.bytes)) : std::nullopt;
  return found.Exists() || found.error == ENOENT;
}

std::string TextOf(const Content &content) {
  return content ? std::to_string(content->size) + ':' + Hex(content->hash) : "-";
}

bool ReadNumber(std::string_view text, int base, uint64_t &number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  return error == std::errc() && end == text.data() + text.size();
}

bool ReadContent(std::string_view text, Content &content) {
  const size_t colon = text.find(':');
  Digest digest{};
  if (text == "-")
    return true;
  if (colon == std::string_view::npos || !ReadNumber(text.substr(0, colon), 10, digest.size) ||
      !ReadNumber(text.substr(colon + 1), 16, digest.hash))
    return false;
  content = digest;
  return true;
}

// Takes the text before a separator off another one; all of it if there is none.
std::string_view TakeText(std::string_view &rest, char separator) {
  const size_t end = std::min(rest.find(separator), rest.size());
  const std::string_view taken = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return taken;
}

std::string RandomToken() {
  uint64_t number = 0;
  if (getrandom(&number, sizeof number, 0) != sizeof number)
    number = static_cast<uint64_t>(getpid());
  return Hex(number);
}

// A file's number, and whether it is the new or the old one.
std::string Form(size_t number, const char *which) { return std::to_string(number) + which; }

bool Exists(const fs::path &path) { return access(path.c_str(), F_OK) == 0; }

} // namespace

ChangeStore::ChangeStore(const fs::path &folder)
    : machineFolder(folder), store(StoreFolder(folder)), staging(store / "staging"), commit(store / "commit"),
      last(store / "last") {}

// ---- Lists ----

std::string ChangeStore::TextOf(const List &list) {
  std::string text =
      std::string(Heading).append(Version).append(list.undoable ? "undoable " : "final ").append(list.token) + '\n';
  for (const Entry &entry : list.entries)
    text += "file " + entry.form + ' ' + machine::TextOf(entry.before) + ' ' + machine::TextOf(entry.after) + ' ' +
            entry.path + '\n';
  for (const std::string &folder : list.folders)
    text += "folder " + folder + '\n';
  return text + "end\n";
}

ChangeStore::Read ChangeStore::ReadList(const fs::path &folder, List &list) {
  const DiskFile found = ReadDiskFile(folder / ListName);
  std::string_view rest = found.bytes;
  if (!found.Exists() || !rest.starts_with(Heading))
    return Read::Damaged;
  rest.remove_prefix(Heading.size());
  if (!rest.starts_with(Version))
    return Read::Newer;
  rest.remove_prefix(Version.size());
  std::string_view heading = TakeText(rest, '\n');
  list.undoable = TakeText(heading, ' ') == "undoable";
  list.token = heading;
  if (list.token.find('/') != std::string::npos)
    return Read::Damaged;
  while (!rest.empty()) {
    std::string_view line = TakeText(rest, '\n');
    const std::string_view kind = TakeText(line, ' ');
    if (kind == "end")
      return Read::Whole;
    if (kind == "folder") {
      list.folders.emplace_back(line);
      continue;
    }
    Entry &entry = list.entries.emplace_back();
    entry.form = TakeText(line, ' ');
    const bool isSound = kind == "file" && entry.form.find('/') == std::string::npos &&
                         ReadContent(TakeText(line, ' '), entry.before) &&
                         ReadContent(TakeText(line, ' '), entry.after);
    entry.path = line;
    if (!isSound)
      return Read::Damaged;
  }
  return Read::Damaged; // it has no end
}

fs::path ChangeStore::TargetOf(const std::string &path) const {
  for (const char *hive : {"system.reg", "user.reg"})
    if (path == hive)
      return HivePlace(machineFolder / hive);
  const std::optional<std::string> ansi = text::FromUtf8(path);
  return ansi ? FindOnDisk(ansi->c_str()).path : fs::path();
}

// ---- Commit ----

bool ChangeStore::Commit(std::vector<Change> &changes, const std::vector<StagedFolder> &folders) {
  List list;
  std::vector<fs::path> made;
  for (const StagedFolder &folder : folders) {
    if (sys::MakeFolder(folder.target.c_str(), Permissions) == 0) {
      made.push_back(folder.target);
      list.folders.push_back(folder.path);
    } else if (const int error = errno; error != EEXIST && !IsRefusal(error)) {
      for (const fs::path &unwanted : std::views::reverse(made))
        sys::RemoveFolder(unwanted.c_str());
      return Fail(folder.target, error);
    } else if (error != EEXIST) {
      Fail(folder.target, error);
    }
  }
  if (changes.empty() || CommitList(changes, std::move(list)))
    return true;
  for (const fs::path &unwanted : std::views::reverse(made))
    sys::RemoveFolder(unwanted.c_str());
  return false;
}

bool ChangeStore::CommitList(std::vector<Change> &changes, List list) {
  list.token = RandomToken();
  if (!RemoveFolderOfFiles(staging) || sys::MakeFolder(staging.c_str(), 0700) != 0)
    return Fail(staging, errno);
  const bool isStaged = Stage(changes, list);
  if (!isStaged || list.entries.empty()) {
    RemoveFolderOfFiles(staging);
    return isStaged;
  }
  if (!Decide(list, list.entries.size())) {
    RemoveFolderOfFiles(staging);
    return false;
  }
  if (!Place(list))
    return false;
  Finish(list);
  return true;
}

bool ChangeStore::Stage(std::vector<Change> &changes, List &list) {
  return std::ranges::all_of(changes, [&](Change &change) { return StageOne(change, list); });
}

bool ChangeStore::StageOne(Change &change, List &list) {
  const auto refuse = [&](int error) {
    change.result = Change::Result::Refused;
    Fail(change.target, error);
    return list.undoable && IsRefusal(error); // an undo is whole or not at all
  };
  if (faccessat(AT_FDCWD, change.target.parent_path().c_str(), W_OK | X_OK, AT_EACCESS) != 0)
    return refuse(errno);
  const DiskFile old = ReadDiskFile(change.target);
  if (!old.Exists() && old.error != ENOENT)
    return Fail(change.target, old.error);
  if (old.Exists() != change.base.has_value() || (old.Exists() && !IsSame(old.status, *change.base))) {
    RecordFault(change.target.string() + ": another program has changed it meanwhile");
    return false;
  }
  if (old.Exists() ? change.after == old.bytes : !change.after)
    return true;

  const size_t number = list.entries.size();
  Entry entry = {Form(number, ".new"), std::nullopt, std::nullopt, change.path, change.target, change.base};
  if (old.Exists()) {
    entry.before = DigestOf(old.bytes);
    Descriptor kept;
    if (const int error = MakeDiskFile(staging / Form(number, ".old"), old.bytes, 0600, kept); error != 0)
      return Fail(change.target, error);
  }
  if (change.after) {
    entry.after = DigestOf(*change.after);
    const fs::path form = staging / entry.form;
    if (const int error = MakeDiskFile(form, *change.after, old.Exists() ? 0600 : 0666, change.file); error != 0)
      return Fail(change.target, error);
    if (const int error = old.Exists() ? TakeOver(change.file, old.status) : 0; error != 0) {
      sys::Unlink(form.c_str());
      sys::Unlink((staging / Form(number, ".old")).c_str());
      return refuse(error);
    }
    if (sys::Sync(change.file.Get()) != 0)
      return Fail(change.target, errno);
  }
  change.result = Change::Result::Placed;
  list.entries.push_back(std::move(entry));
  return true;
}

// From here on the change is to be finished. One file is replaced in one step: what is known of it needn't be on disk.
bool ChangeStore::Decide(const List &list, size_t count) {
  Descriptor written;
  if (const int error = MakeDiskFile(staging / ListName, TextOf(list), 0600, written); error != 0)
    return Fail(store, error);
  const bool needsSync = count > 1;
  if (needsSync && (sys::Sync(written.Get()) != 0 || SyncFolder(staging) != 0))
    return Fail(store, errno);
  if (sys::Rename(staging.c_str(), commit.c_str()) != 0)
    return Fail(store, errno);
  if (!needsSync || SyncFolder(store) == 0)
    return true;
  const int error = errno;
  sys::Rename(commit.c_str(), staging.c_str());
  return Fail(store, error);
}

// Puts one file in place. 0 or errno.
int ChangeStore::PlaceOne(const fs::path &from, const Entry &entry, const std::string &token) {
  if (!entry.after)
    return sys::Unlink(entry.target.c_str()) == 0 || errno == ENOENT ? 0 : errno;
  if (sys::Rename(from.c_str(), entry.target.c_str()) == 0)
    return 0;
  if (errno != EXDEV)
    return errno;
  // The file is on another disk than the store.
  const DiskFile form = ReadDiskFile(from);
  if (!form.Exists())
    return form.error;
  const fs::path beside = entry.target.parent_path() / (".acctkit-" + token + '-' + entry.form);
  sys::Unlink(beside.c_str()); // of one who was killed here
  Descriptor copy;
  int error = MakeDiskFile(beside, form.bytes, 0600, copy);
  if (error != 0)
    return error;
  error = TakeOver(copy, form.status);
  if (error == 0 && (sys::Sync(copy.Get()) != 0 || sys::Rename(beside.c_str(), entry.target.c_str()) != 0))
    error = errno;
  sys::Unlink(error == 0 ? from.c_str() : beside.c_str());
  return error;
}

bool ChangeStore::Place(const List &list) {
  size_t placed = 0;
  int error = 0;
  std::set<fs::path> folders;
  for (; placed < list.entries.size() && error == 0; ++placed) {
    const Entry &entry = list.entries[placed];
    error = PlaceOne(commit / entry.form, entry, list.token);
    folders.insert(entry.target.parent_path());
  }
  for (auto folder = folders.begin(); folder != folders.end() && error == 0; ++folder)
    error = SyncFolder(*folder);
  if (error == 0)
    return true;
  Fail(list.entries[placed - 1].target, error);
  RollBack(list, placed);
  return false;
}

// Turns the change round: the list that is to be finished becomes one that leads back, in one step, so that a kill in
// between leads to one of both ends.
void ChangeStore::RollBack(List list, size_t placed) {
  list.undoable = false;
  list.folders.clear();
  list.entries.resize(placed);
  for (size_t number = 0; number < placed; ++number) {
    Entry &entry = list.entries[number];
    std::swap(entry.before, entry.after);
    entry.form = Form(number, ".old");
    if (!entry.after)
      continue;
    const Descriptor old(sys::Open((commit / entry.form).c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC));
    if (!old || TakeOver(old, *entry.base) != 0 || sys::Sync(old.Get()) != 0)
      return; // `commit` stays, for whoever comes next to finish
  }
  Descriptor written;
  const fs::path turned = commit / "turned";
  if (MakeDiskFile(turned, TextOf(list), 0600, written) != 0 || sys::Sync(written.Get()) != 0 ||
      sys::Rename(turned.c_str(), (commit / ListName).c_str()) != 0)
    return;
  std::set<fs::path> folders;
  for (const Entry &entry : list.entries) {
    if (PlaceOne(commit / entry.form, entry, list.token) != 0)
      return;
    folders.insert(entry.target.parent_path());
  }
  for (const fs::path &folder : folders)
    SyncFolder(folder);
  RemoveFolderOfFiles(commit);
}

// The change is in place. Should this fail, whoever comes next does it.
void ChangeStore::Finish(const List &list) {
  RemoveFolderOfFiles(last);
  if (list.undoable)
    sys::Rename(commit.c_str(), last.c_str());
  else
    RemoveFolderOfFiles(commit);
}

// ---- Recovery ----

bool ChangeStore::NeedsRecovery() const { return Exists(commit) || Exists(staging); }

std::string ChangeStore::Recover() {
  const auto drop = [&](const std::string &why) {
    RecordNotice(machineFolder.string() + ": a change was broken off and isn't finished: " + why);
    return RemoveFolderOfFiles(commit) ? std::string() : commit.string() + ": " + std::strerror(errno);
  };
  RemoveFolderOfFiles(staging);
  if (!Exists(commit))
    return {};
  List list;
  switch (ReadList(commit, list)) {
  case Read::Newer:
    return commit.string() + ": a later version of AcctKit has left a change unfinished, which it must finish";
  case Read::Damaged:
    return drop("what is known of it is damaged");
  case Read::Whole:
    break;
  }
  if (std::string fault = ServerFault(machineFolder); !fault.empty())
    return fault;
  List rest = list;
  rest.entries.clear();
  for (Entry &entry : list.entries) {
    entry.target = TargetOf(entry.path);
    if (entry.target.empty())
      return drop("there is no " + entry.path + " on this machine");
    Content now;
    if (!ContentAt(entry.target, now) || (now != entry.before && now != entry.after))
      return drop(entry.path + " has been changed since");
    Content form;
    if (now == entry.after)
      continue;
    if (entry.after && (!ContentAt(commit / entry.form, form) || form != entry.after))
      return drop("the new " + entry.path + " is damaged");
    rest.entries.push_back(entry);
  }
  std::set<fs::path> folders;
  for (const Entry &entry : rest.entries)
    if (const int error = PlaceOne(commit / entry.form, entry, list.token); error != 0)
      return entry.target.string() + ": a change that was broken off can't be finished: " + std::strerror(error);
  for (const Entry &entry : list.entries)
    folders.insert(entry.target.parent_path());
  for (const fs::path &folder : folders)
    if (const int error = SyncFolder(folder); error != 0)
      return folder.string() + ": " + std::strerror(error);
  Finish(list);
  RecordNotice(machineFolder.string() + ": a change that was broken off has been finished");
  return {};
}

// ---- Undo ----

Undone ChangeStore::Undo() {
  List list;
  if (!Exists(last) || ReadList(last, list) != Read::Whole)
    return {machineFolder.string() + ": there is no change to take back", {}};
  if (std::string fault = ServerFault(machineFolder); !fault.empty())
    return {fault, {}};
  std::vector<Change> changes;
  List back;
  back.undoable = false;
  Undone undone;
  for (size_t number = 0; number < list.entries.size(); ++number) {
    const Entry &entry = list.entries[number];
    Change &change = changes.emplace_back();
    change.path = entry.path;
    change.target = TargetOf(entry.path);
    const DiskFile now = ReadDiskFile(change.target);
    if (change.target.empty() || (!now.Exists() && now.error != ENOENT) ||
        (now.Exists() ? Content(DigestOf(now.bytes)) : std::nullopt) != entry.after)
      return {entry.path + ": it has been changed since, so nothing is taken back", {}};
    if (now.Exists())
      change.base = now.status;
    if (entry.before) {
      DiskFile old = ReadDiskFile(last / Form(number, ".old"));
      if (!old.Exists() || DigestOf(old.bytes) != entry.before)
        return {entry.path + ": what it was before isn't known any more", {}};
      change.after = std::move(old.bytes);
    }
    undone.restored.push_back(entry.path);
  }
  if (!CommitList(changes, back)) {
    undone.restored.clear();
    undone.refusal = TakeFault();
    return undone;
  }
  const auto isRefused = [](const Change &change) { return change.result == Change::Result::Refused; };
  if (std::ranges::any_of(changes, isRefused))
    undone.refusal = TakeFault();
  for (const std::string &folder : std::views::reverse(list.folders))
    if (const fs::path target = TargetOf(folder); !target.empty() && sys::RemoveFolder(target.c_str()) == 0)
      undone.restored.push_back(folder + '\\');
  return undone;
}

} // namespace machine
