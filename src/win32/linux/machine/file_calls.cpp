// The calls for files and folders: opening with share modes, reading, writing, replacing; searches; making folders.
#include "win32/win32.h"

#include "win32/linux/machine/descriptor.h"
#include "win32/linux/machine/disk_file.h"
#include "win32/linux/machine/handle_table.h"
#include "win32/linux/machine/machine_folder.h"
#include "win32/linux/machine/paths.h"
#include "win32/linux/machine/running_transaction.h"
#include "win32/linux/machine/system_calls.h"
#include "win32/linux/text/code_page.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <sys/file.h>
#include <unistd.h>

namespace {

using machine::Descriptor;
using machine::DiskPath;
using machine::FindOnDisk;
using machine::ThreadGuard;

// An open file. What is written is held here until it is closed.
struct OpenFile {
  DWORD access;
  std::string name; // on the machine
  std::filesystem::path path;
  Descriptor file;                    // of one that is on disk, locked
  std::optional<struct stat> base;    // its state when it was opened
  std::optional<std::string> content; // of one that isn't on disk, or is written to
  size_t position = 0;                // in the content
  bool written = false;
};

// A search finds one entry and has nothing to go on with.
struct Search {};

machine::HandleTable<HANDLE, OpenFile> openFiles{0x4000000};
machine::HandleTable<HANDLE, Search> searches{0x5000000};

thread_local DWORD lastError = ERROR_SUCCESS;

// Records the reason as a fault; 0 for something that is there and is no file, or can't be reached.
BOOL Failed(const std::filesystem::path &path, int error) {
  const std::string fault = path.string() + ": " +
                            (error == 0             ? "this is no file of the machine"
                             : error == EWOULDBLOCK ? "another program has it open"
                                                    : std::strerror(error));
  if (machine::IsSystemFailure(error))
    machine::FailTransaction(fault);
  else
    machine::RecordFault(fault);
  return FALSE;
}

HANDLE NotOpened(const std::filesystem::path &path, int error) {
  Failed(path, error);
  return INVALID_HANDLE_VALUE;
}

// Opens and locks a file: share mode 0 keeps every other open out, any other mode keeps share mode 0 out. 0 or errno,
// EWOULDBLOCK if another open keeps this one out.
int OpenLocked(const std::filesystem::path &path, int flags, DWORD share, Descriptor &file) {
  for (;;) {
    file = Descriptor(machine::sys::Open(path.c_str(), flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0666));
    if (!file || machine::sys::Lock(file.Get(), (share == 0 ? LOCK_EX : LOCK_SH) | LOCK_NB) != 0)
      return errno;
    struct stat status;
    if (machine::IsStill(file, path, status)) // else it was replaced between opening and locking
      return S_ISREG(status.st_mode) ? 0 : EACCES;
  }
}

// Whether a file can be made or replaced in the folder of a path, for all that the system tells before it is tried. A
// folder that is only staged can be written.
bool CanReplace(const std::filesystem::path &path) {
  const std::filesystem::path folder = path.parent_path();
  return machine::Staged().HasFolder(folder) || faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

// Puts a file's content where the running transaction has what it writes.
void Stage(OpenFile &opened) {
  machine::Staged().Put(opened.path, {opened.name, opened.base, *opened.content, std::move(opened.file)});
}

// Takes what is on disk into memory, so that it can be written to. 0 or errno.
int TakeContent(OpenFile &opened) {
  if (opened.content)
    return 0;
  const off_t position = lseek(opened.file.Get(), 0, SEEK_CUR);
  if (opened.base->st_size > machine::LargestFile)
    return EFBIG;
  std::string bytes(static_cast<size_t>(opened.base->st_size) + 1, '\0');
  if (lseek(opened.file.Get(), 0, SEEK_SET) != 0 || !machine::ReadAll(opened.file.Get(), bytes))
    return errno;
  opened.position = std::min(static_cast<size_t>(position), bytes.size());
  opened.content = std::move(bytes);
  return 0;
}

// Puts a file in place, or among what the running transaction puts there.
bool WriteOut(OpenFile &opened) {
  machine::Transaction transaction(machine::Purpose::OneCall);
  const bool may = machine::MayWrite();
  if (may)
    Stage(opened);
  opened.written = false;
  return transaction.Commit() && may;
}

// What a path names whose last part may have wildcards: the first entry that matches then.
DiskPath FindEntry(const char *path) {
  const std::u16string wide = machine::WidePath(path);
  const size_t begin = wide.rfind(u'\\') + 1;
  const std::u16string pattern = wide.substr(begin);
  if (!wide.empty() && pattern.empty())
    return {.missing = true}; // a folder's path with a backslash behind it names no entry
  if (pattern.find_first_of(u"*?") == std::u16string::npos)
    return FindOnDisk(path);

  const DiskPath found = FindOnDisk(text::FromWide(wide.substr(0, begin)).c_str());
  if (!found.IsFolder())
    return {.missing = found.exists || found.missing};
  const std::u16string name = machine::FirstMatch(found.path, pattern);
  return name.empty() ? DiskPath{.missing = true} : FindOnDisk(text::FromWide(wide.substr(0, begin) + name).c_str());
}

WIN32_FIND_DATAA Describe(const DiskPath &found) {
  WIN32_FIND_DATAA data = {};
  data.dwFileAttributes = found.IsFolder() ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_ARCHIVE;
  const auto size = found.IsFolder() ? 0 : static_cast<uint64_t>(found.status.st_size);
  data.nFileSizeHigh = static_cast<DWORD>(size >> 32);
  data.nFileSizeLow = static_cast<DWORD>(size);
  const std::string name = text::FromUtf8(found.path.filename().string()).value_or("?");
  name.copy(data.cFileName, sizeof data.cFileName - 1);
  return data;
}

} // namespace

HANDLE CreateFileA(const char *path, DWORD access, DWORD share, void *, DWORD disposition, DWORD, HANDLE) {
  const ThreadGuard threads;
  const DiskPath found = FindOnDisk(path);
  const std::string name = machine::NameOnMachine(path);
  if (!found.exists && found.missing && (found.path.empty() || disposition == OPEN_EXISTING))
    return INVALID_HANDLE_VALUE;
  if (found.path.empty() || (found.exists ? !found.IsFile() : !found.missing))
    return NotOpened(name, found.path.empty() || found.exists ? 0 : EACCES);
  const bool makes = !found.exists;
  const bool replaces = disposition == CREATE_ALWAYS;
  const bool writes = makes || replaces || (access & GENERIC_WRITE) != 0;
  if ((found.exists && writes && !machine::IsWritable(found.status.st_mode)) ||
      ((makes || replaces) && !CanReplace(found.path)))
    return NotOpened(found.path, makes ? errno : EACCES);

  const auto opened = std::make_shared<OpenFile>();
  opened->access = access;
  opened->name = name;
  opened->path = found.path;
  if (const machine::StagedFile *const staged = machine::Staged().Find(found.path)) {
    opened->content = staged->content;
  } else if (!makes) {
    const int flags = writes && !replaces ? O_RDWR : O_RDONLY;
    if (const int error = OpenLocked(found.path, flags, share, opened->file); error != 0)
      return NotOpened(found.path, error);
    struct stat &status = opened->base.emplace();
    if (fstat(opened->file.Get(), &status) != 0)
      return NotOpened(found.path, errno);
  }
  if (makes || replaces) {
    opened->content.emplace();
    opened->written = true;
  }
  if (!makes || replaces)
    return openFiles.Add(opened);
  // What OPEN_ALWAYS makes is there at once.
  return WriteOut(*opened) ? CreateFileA(path, access, share, nullptr, OPEN_EXISTING, 0, nullptr)
                           : INVALID_HANDLE_VALUE;
}

BOOL ReadFile(HANDLE handle, void *buffer, DWORD size, DWORD *read, void *) {
  const std::shared_ptr<OpenFile> opened = openFiles.Find(handle);
  *read = 0;
  if (opened == nullptr || (opened->access & GENERIC_READ) == 0)
    return FALSE;
  if (opened->content) {
    *read = static_cast<DWORD>(
        std::string_view(*opened->content).substr(opened->position).copy(static_cast<char *>(buffer), size));
    opened->position += *read;
    return TRUE;
  }
  while (*read < size) {
    const ssize_t count = machine::sys::Read(opened->file.Get(), static_cast<char *>(buffer) + *read, size - *read);
    if (count < 0 && errno == EINTR)
      continue;
    if (count < 0)
      return Failed(opened->path, errno);
    if (count == 0)
      break;
    *read += static_cast<DWORD>(count);
  }
  return TRUE;
}

DWORD GetFileSize(HANDLE handle, DWORD *high) {
  const std::shared_ptr<const OpenFile> opened = openFiles.Find(handle);
  struct stat status;
  if (opened == nullptr || (!opened->content && fstat(opened->file.Get(), &status) != 0))
    return INVALID_FILE_SIZE;
  const uint64_t size = opened->content ? opened->content->size() : static_cast<uint64_t>(status.st_size);
  if (high != nullptr)
    *high = static_cast<DWORD>(size >> 32);
  return static_cast<DWORD>(size);
}

BOOL WriteFile(HANDLE handle, const void *data, DWORD size, DWORD *written, void *) {
  const std::shared_ptr<OpenFile> opened = openFiles.Find(handle);
  *written = 0;
  if (opened == nullptr || (opened->access & GENERIC_WRITE) == 0)
    return FALSE;
  if (const int error = TakeContent(*opened); error != 0)
    return Failed(opened->path, error);
  opened->content->replace(opened->position, size, static_cast<const char *>(data), size);
  opened->position += size;
  opened->written = true;
  *written = size;
  return TRUE;
}

BOOL CloseHandle(HANDLE handle) {
  const std::shared_ptr<OpenFile> opened = openFiles.Remove(handle);
  return opened != nullptr && (!opened->written || WriteOut(*opened)) ? TRUE : FALSE;
}

HANDLE FindFirstFileA(const char *path, WIN32_FIND_DATAA *data) {
  const ThreadGuard threads;
  const DiskPath found = FindEntry(path);
  if (!found.exists) {
    lastError = found.missing ? ERROR_FILE_NOT_FOUND : ERROR_ACCESS_DENIED;
    return found.missing || found.path.empty() ? INVALID_HANDLE_VALUE : NotOpened(found.path, EACCES);
  }
  *data = Describe(found);
  return searches.Add(std::make_shared<Search>());
}

DWORD GetLastError() { return lastError; }

BOOL FindClose(HANDLE search) { return searches.Remove(search) ? TRUE : FALSE; }

BOOL CreateDirectoryA(const char *path, void *) {
  const ThreadGuard threads;
  const DiskPath found = FindOnDisk(path);
  if (found.exists || found.path.empty())
    return FALSE;
  if (!found.missing)
    return Failed(found.path, EACCES);
  if (!CanReplace(found.path))
    return Failed(found.path, errno);
  machine::Transaction transaction(machine::Purpose::OneCall);
  const bool may = machine::MayWrite();
  if (may)
    machine::Staged().AddFolder({machine::NameOnMachine(path), found.path});
  return transaction.Commit() && may ? TRUE : FALSE;
}
