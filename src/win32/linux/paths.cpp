#include "win32/linux/paths.h"

#include "win32/linux/hive.h"
#include "win32/linux/machine.h"
#include "win32/linux/text.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <dirent.h>
#include <memory>
#include <vector>

namespace machine {

namespace {

namespace fs = std::filesystem;

constexpr LONG BadNetPath = 53;
constexpr LONG FileNameTooLong = 206;

DiskPath Failure(LONG error) {
  DiskPath failure;
  failure.error = error;
  return failure;
}

struct CloseFolder {
  void operator()(DIR *folder) const { closedir(folder); }
};

// Calls `take` with the name of each entry of a folder until it answers true.
template <typename Take> void ForEachEntry(const fs::path &folder, Take take) {
  const std::unique_ptr<DIR, CloseFolder> opened(opendir(folder.c_str()));
  while (const dirent *const entry = opened ? readdir(opened.get()) : nullptr)
    if (take(static_cast<const char *>(entry->d_name)))
      return;
}

// The entry of a folder with that name, in whatever case it is; the name itself if there is none.
std::string NameOnDisk(const fs::path &folder, std::u16string_view name) {
  std::string exact = text::WideToUtf8(name);
  struct stat status;
  if (lstat((folder / exact).c_str(), &status) == 0)
    return exact;
  ForEachEntry(folder, [&](const std::string &entry) {
    std::u16string wide;
    if (!text::Utf8ToWide(entry, wide) || !SameName(wide, name))
      return false;
    exact = entry;
    return true;
  });
  return exact;
}

bool IsWithin(const fs::path &path, const fs::path &folder) {
  const auto [end, ignored] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
  return end == folder.end();
}

// A link may lead to wherever it likes within the machine, or within the drive that a dosdevices entry names.
bool FollowLink(fs::path &path, const fs::path &drive) {
  std::error_code error;
  const fs::path target = fs::canonical(path, error);
  if (error || !(IsWithin(target, fs::canonical(Folder(), error)) || IsWithin(target, fs::canonical(drive, error))))
    return false;
  path = target;
  return true;
}

// The folder of a drive; empty if the machine has no such drive.
fs::path DriveFolder(char16_t letter) {
  const char lower = static_cast<char>(letter | 0x20);
  const fs::path folder = Folder();
  const fs::path devices = folder / "dosdevices";
  std::error_code error;
  if (fs::exists(devices, error))
    return fs::canonical(devices / std::string{lower, ':'}, error);
  if (lower != 'c')
    return {};
  const fs::path drive = folder / "drive_c";
  return fs::is_symlink(drive, error) ? fs::canonical(drive, error) : drive;
}

bool IsForbidden(char16_t unit) {
  return unit < 0x20 || std::u16string_view(u"<>:\"|?*").find(unit) != std::u16string_view::npos;
}

// Splits what stands behind the drive into names, with "." and ".." worked out; false for a name that can't be.
bool SplitNames(std::u16string_view path, std::vector<std::u16string> &names) {
  while (!path.empty()) {
    std::u16string_view name = path.substr(0, path.find(u'\\'));
    path.remove_prefix(std::min(name.size() + 1, path.size()));
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

bool IsLetter(char16_t unit) { return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z'; }

} // namespace

std::string ProgramPath() {
  const char *const named = std::getenv("ACCTKIT_PROGRAM");
  if (named != nullptr && *named != '\0')
    return text::FromUtf8(named).value_or(named);
  return "C:\\Program Files\\Zuvio\\acctkit.exe";
}

DiskPath FindOnDisk(const char *path) {
  std::u16string wide = text::ToWide(path);
  std::ranges::replace(wide, u'/', u'\\');
  if (wide.empty())
    return Failure(ERROR_PATH_NOT_FOUND);
  if (wide.size() >= MAX_PATH)
    return Failure(FileNameTooLong);
  if (wide.starts_with(u"\\\\"))
    return Failure(BadNetPath);
  if (wide.size() < 2 || wide[1] != u':') {
    const std::u16string program = text::ToWide(ProgramPath());
    wide = program.substr(0, wide[0] == u'\\' ? 2 : program.rfind(u'\\') + 1) + wide;
  }
  if (wide.size() < 2 || wide[1] != u':' || !IsLetter(wide[0]))
    return Failure(ERROR_PATH_NOT_FOUND);

  std::vector<std::u16string> names;
  if (!SplitNames(std::u16string_view(wide).substr(2), names))
    return Failure(ERROR_INVALID_NAME);
  const fs::path drive = DriveFolder(wide[0]);
  DiskPath found;
  found.path = drive;
  found.exists = !drive.empty() && lstat(drive.c_str(), &found.status) == 0;
  for (const std::u16string &name : names) {
    if (!found.exists || !S_ISDIR(found.status.st_mode))
      return Failure(ERROR_PATH_NOT_FOUND);
    found.path /= NameOnDisk(found.path, name);
    found.exists = lstat(found.path.c_str(), &found.status) == 0;
    if (found.exists && S_ISLNK(found.status.st_mode)) {
      if (!FollowLink(found.path, drive))
        return Failure(ERROR_ACCESS_DENIED);
      found.exists = lstat(found.path.c_str(), &found.status) == 0;
    }
  }
  return drive.empty() ? Failure(ERROR_PATH_NOT_FOUND) : found;
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

std::string FirstMatch(const fs::path &folder, std::u16string_view pattern) {
  // "*.*" is how the system has always said all names.
  const std::u16string_view effective = pattern == u"*.*" ? u"*" : pattern;
  std::string first;
  ForEachEntry(folder, [&](const std::string &entry) {
    std::u16string wide;
    if (text::Utf8ToWide(entry, wide) && Matches(wide, effective) && (first.empty() || entry < first))
      first = entry;
    return false;
  });
  return first;
}

} // namespace machine
