// From a path of the calls down to the file on disk, name by name, without leaving the machine.
#include "win32/linux/machine/paths.h"

#include "win32/linux/machine/disk_file.h"
#include "win32/linux/machine/hives.h"
#include "win32/linux/machine/machine_folder.h"
#include "win32/linux/machine/running_transaction.h"
#include "win32/linux/public/machine.h"
#include "win32/linux/text/code_page.h"
#include "win32/linux/text/names.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <vector>

namespace machine {

namespace {

namespace fs = std::filesystem;

struct CloseFolder {
  void operator()(DIR *folder) const { closedir(folder); }
};

// Ends the running transaction if the system has failed to look.
void CheckSystem(const fs::path &path) {
  if (IsSystemFailure(errno))
    FailTransaction(path.string() + ": " + std::strerror(errno));
}

// Calls `take` with the name of each entry of a folder until it returns true. False for a folder that can't be listed.
template <typename Take> bool ForEachEntry(const fs::path &folder, Take take) {
  for (const std::string &name : Staged().NamesIn(folder))
    if (take(name))
      return true;
  if (Staged().HasFolder(folder))
    return true;
  const std::unique_ptr<DIR, CloseFolder> opened(opendir(folder.c_str()));
  if (opened == nullptr)
    CheckSystem(folder);
  for (;;) {
    errno = 0;
    const dirent *const entry = opened ? readdir(opened.get()) : nullptr;
    if (entry == nullptr)
      break;
    if (take(std::string(entry->d_name)))
      return true;
  }
  CheckSystem(folder);
  return opened != nullptr && errno == 0;
}

DiskPath Look(const fs::path &path) {
  DiskPath found = {.path = path};
  if (Staged().IsKnownFolder(path)) {
    found.exists = true;
    found.status.st_mode = S_IFDIR | 0777;
    return found;
  }
  found.exists = lstat(path.c_str(), &found.status) == 0;
  found.missing = !found.exists && (errno == ENOENT || errno == ENOTDIR);
  if (!found.exists)
    CheckSystem(path);
  if (const StagedFile *const staged = Staged().Find(path)) {
    found.exists = true;
    found.status.st_mode = S_IFREG | (staged->base ? staged->base->st_mode : 0666);
    found.status.st_size = static_cast<off_t>(staged->content.size());
  } else if (found.IsFolder() && TransactionNumber() != 0) {
    Staged().KnowFolder(path);
  }
  return found;
}

// The entry of a folder with that name, in any case. If there is none, the path with the name as given.
DiskPath LookFor(const fs::path &folder, std::u16string_view name) {
  DiskPath found = Look(folder / text::WideToUtf8(name));
  if (found.exists)
    return found;
  const bool listed = ForEachEntry(folder, [&](const std::string &entry) {
    std::u16string wide;
    if (!text::Utf8ToWide(entry, wide) || !text::SameName(wide, name))
      return false;
    found = Look(folder / entry);
    return true;
  });
  found.missing = !found.exists && found.missing && listed; // else it may be there in another case
  return found;
}

// Of the running transaction, else of now.
const fs::path &MachineFolder() { return CurrentHives().folder; }

bool IsWithin(const fs::path &path, const fs::path &folder) {
  const auto [end, ignored] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
  return end == folder.end();
}

// A link may lead to wherever it likes within the machine, or within the drive that a dosdevices entry names. Empty for
// one that leads out, or nowhere. A file of the machine folder has one path, with links or without.
fs::path LinkTarget(const fs::path &link, const fs::path &drive) {
  std::error_code error;
  fs::path target = fs::canonical(link, error);
  if (error)
    return {};
  const fs::path &folder = MachineFolder();
  if (const fs::path whole = fs::canonical(folder, error); !error && IsWithin(target, whole))
    return target == whole ? folder : folder / target.lexically_relative(whole);
  if (error || !IsWithin(target, fs::canonical(drive, error)))
    return {};
  return target;
}

// The folder of a drive, or a link to it; empty if the machine has no such drive.
fs::path DriveFolder(char16_t letter) {
  const char lower = static_cast<char>(letter | 0x20);
  const fs::path &folder = MachineFolder();
  const fs::path devices = folder / "dosdevices";
  std::error_code error;
  if (fs::exists(devices, error))
    return fs::canonical(devices / std::string{lower, ':'}, error);
  return lower == 'c' ? folder / "drive_c" : fs::path();
}

bool IsForbidden(char16_t unit) {
  return unit < 0x20 || std::u16string_view(u"<>:\"|?*").find(unit) != std::u16string_view::npos;
}

// Splits what stands behind the drive into names, with "." and ".." worked out; false for a name that can't be.
bool SplitNames(std::u16string_view path, std::vector<std::u16string> &names) {
  for (auto name = text::TakeName(path); !name.empty(); name = text::TakeName(path)) {
    if (name == u"..") {
      if (!names.empty())
        names.pop_back();
      continue;
    }
    name = name.substr(0, name.find_last_not_of(u". ") + 1); // dots and blanks at its end are no part of a name
    if (std::ranges::any_of(name, IsForbidden))
      return false;
    if (!name.empty())
      names.emplace_back(name);
  }
  return true;
}

bool HasDrive(std::u16string_view path) { return path.size() >= 2 && path[1] == u':'; }

bool IsLetter(char16_t unit) { return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z'; }

// A path with its drive: one without begins in the program's folder or, with a backslash, on the program's drive.
std::u16string Absolute(const std::u16string &path) {
  if (HasDrive(path))
    return path;
  const std::u16string program = text::ToWide(ProgramPath());
  return program.substr(0, path.starts_with(u'\\') ? 2 : program.rfind(u'\\') + 1) + path;
}

// Goes down from a drive's folder by one name after the other.
DiskPath Descend(const fs::path &drive, const std::vector<std::u16string> &names) {
  std::error_code error;
  DiskPath found = Look(drive);
  if (found.IsLink())
    found = Look(fs::canonical(drive, error));
  for (const std::u16string &name : names) {
    if (!found.exists && !found.missing)
      return found; // nobody may look there
    if (!found.IsFolder())
      return {.missing = true};
    found = LookFor(found.path, name);
    if (found.IsLink()) {
      const fs::path target = LinkTarget(found.path, drive);
      if (target.empty())
        return {};
      found = Look(target);
    }
  }
  return found;
}

} // namespace

std::string ProgramPath() {
  const char *const named = std::getenv("ACCTKIT_PROGRAM");
  if (named != nullptr && *named != '\0') {
    std::string path = text::FromUtf8(named).value_or(named);
    std::ranges::replace(path, '/', '\\'); // no second byte of a character is a slash
    return path;
  }
  return "C:\\Program Files\\Zuvio\\acctkit.exe";
}

std::u16string WidePath(const char *path) {
  std::u16string wide = text::ToWide(path);
  std::ranges::replace(wide, u'/', u'\\');
  return wide;
}

std::string NameOnMachine(const char *path) {
  const std::u16string absolute = Absolute(WidePath(path));
  std::vector<std::u16string> names;
  if (!HasDrive(absolute) || !SplitNames(std::u16string_view(absolute).substr(2), names))
    return text::WideToUtf8(absolute);
  std::u16string whole = absolute.substr(0, 2);
  for (const std::u16string &name : names)
    whole.append(1, u'\\').append(name);
  return text::WideToUtf8(whole);
}

DiskPath FindOnDisk(const char *path) {
  const ThreadGuard threads;
  const std::u16string given = WidePath(path);
  if (given.size() >= MAX_PATH || given.starts_with(u"\\\\"))
    return {};
  const std::u16string absolute = Absolute(given);
  if (given.empty() || !HasDrive(absolute) || !IsLetter(absolute[0]))
    return {.missing = true};
  std::vector<std::u16string> names;
  if (!SplitNames(std::u16string_view(absolute).substr(2), names))
    return {};
  const fs::path drive = DriveFolder(absolute[0]);
  return drive.empty() ? DiskPath{.missing = true} : Descend(drive, names);
}

fs::path FindFile(const char *path) {
  const DiskPath found = FindOnDisk(path);
  if (found.IsFile())
    return found.path;
  if (!found.missing)
    RecordFault(NameOnMachine(path) + ": this is no file of the machine");
  return {};
}

namespace {

// Whether a name matches a pattern with * and ?.
bool Matches(std::u16string_view name, std::u16string_view pattern) {
  size_t at = 0;
  size_t in = 0;
  size_t star = std::u16string_view::npos;
  size_t retry = 0;
  while (at < name.size()) {
    if (in < pattern.size() && pattern[in] == u'*') {
      star = in++;
      retry = at;
    } else if (in < pattern.size() && (pattern[in] == u'?' || text::Upper(pattern[in]) == text::Upper(name[at]))) {
      ++at;
      ++in;
    } else if (star != std::u16string_view::npos) {
      in = star + 1;
      at = ++retry;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(u'*', in) == std::u16string_view::npos;
}

} // namespace

std::u16string FirstMatch(const fs::path &folder, std::u16string_view pattern) {
  // "*.*" is how the system has always said all names.
  const std::u16string_view effective = pattern == u"*.*" ? u"*" : pattern;
  std::u16string first;
  ForEachEntry(folder, [&](const std::string &entry) {
    std::u16string wide;
    if (text::Utf8ToWide(entry, wide) && Matches(wide, effective) && (first.empty() || wide < first))
      first = wide;
    return false;
  });
  return first;
}

} // namespace machine
