// The calls for files and folders: opening with share modes, reading, writing, replacing; searches; making folders.
#include "win32/win32.h"

#include "win32/linux/machine/descriptor.h"
#include "win32/linux/machine/handle_table.h"
#include "win32/linux/machine/machine_folder.h"
#include "win32/linux/machine/paths.h"
#include "win32/linux/machine/replacement.h"
#include "win32/linux/machine/system_calls.h"
#include "win32/linux/text/code_page.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <unistd.h>

namespace {

using machine::Descriptor;
using machine::DiskPath;
using machine::FindOnDisk;
using machine::Replacement;

// An open file. One that is replaced has the old file open for as long, if only to hold it locked.
struct OpenFile {
  DWORD access;
  std::filesystem::path path;
  Descriptor file;
  std::unique_ptr<Replacement> replacement;
  bool failed = false;

  int Data() const { return replacement ? replacement->File().Get() : file.Get(); }
};

// A search finds one entry and has nothing to go on with.
struct Search {};

machine::HandleTable<HANDLE, OpenFile> openFiles{0x4000000};
machine::HandleTable<HANDLE, Search> searches{0x5000000};

thread_local DWORD lastError = ERROR_SUCCESS;

// Records the disk's reason as a fault.
BOOL Failed(const std::filesystem::path &path, int error) {
  machine::RecordFault(path.string() + ": " +
                       (error == EWOULDBLOCK ? "another program has it open" : std::strerror(error)));
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

// What a path names whose last part may have wildcards: the first entry that matches then.
DiskPath FindEntry(const char *path) {
  const std::u16string wide = machine::WidePath(path);
  const size_t begin = wide.rfind(u'\\') + 1;
  const std::u16string pattern = wide.substr(begin);
  if (!wide.empty() && pattern.empty())
    return {.missing = true}; // a folder's path with a backslash behind it names no entry
  if (pattern.find_first_of(u"*?") == std::u16string::npos)
    return FindOnDisk(path);

  DiskPath found = FindOnDisk(text::FromWide(wide.substr(0, begin)).c_str());
  if (!found.IsFolder())
    return {.missing = found.exists || found.missing};
  const std::string name = machine::FirstMatch(found.path, pattern);
  found.path /= name;
  found.exists = !name.empty() && stat(found.path.c_str(), &found.status) == 0;
  found.missing = !found.exists;
  return found;
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
  const DiskPath found = FindOnDisk(path);
  if (found.path.empty() || (found.exists ? !found.IsFile() : disposition == OPEN_EXISTING))
    return INVALID_HANDLE_VALUE;
  const bool replaces = disposition == CREATE_ALWAYS;
  const bool writes = replaces || (access & GENERIC_WRITE) != 0;
  if (found.exists && writes && !machine::IsWritable(found.status.st_mode))
    return NotOpened(found.path, EACCES);

  auto opened = std::make_shared<OpenFile>();
  opened->access = access;
  opened->path = found.path;
  if (!replaces || found.exists) {
    const int flags = (writes && !replaces ? O_RDWR : O_RDONLY) | (disposition == OPEN_ALWAYS ? O_CREAT : 0);
    if (const int error = OpenLocked(found.path, flags, share, opened->file); error != 0)
      return NotOpened(found.path, error);
  }
  if (replaces) {
    opened->replacement = std::make_unique<Replacement>(found.path);
    if (!opened->replacement->File())
      return NotOpened(found.path, errno);
  }
  return openFiles.Add(std::move(opened));
}

BOOL ReadFile(HANDLE handle, void *buffer, DWORD size, DWORD *read, void *) {
  const std::shared_ptr<const OpenFile> opened = openFiles.Find(handle);
  *read = 0;
  if (opened == nullptr || (opened->access & GENERIC_READ) == 0)
    return FALSE;
  while (*read < size) {
    const ssize_t count = machine::sys::Read(opened->Data(), static_cast<char *>(buffer) + *read, size - *read);
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
  if (opened == nullptr || fstat(opened->Data(), &status) != 0)
    return INVALID_FILE_SIZE;
  const auto size = static_cast<uint64_t>(status.st_size);
  if (high != nullptr)
    *high = static_cast<DWORD>(size >> 32);
  return static_cast<DWORD>(size);
}

BOOL WriteFile(HANDLE handle, const void *data, DWORD size, DWORD *written, void *) {
  const std::shared_ptr<OpenFile> opened = openFiles.Find(handle);
  *written = 0;
  if (opened == nullptr || (opened->access & GENERIC_WRITE) == 0)
    return FALSE;
  if (!machine::WriteAll(opened->Data(), {static_cast<const char *>(data), size})) {
    opened->failed = true;
    return Failed(opened->path, errno);
  }
  *written = size;
  return TRUE;
}

BOOL CloseHandle(HANDLE handle) {
  const std::shared_ptr<OpenFile> opened = openFiles.Remove(handle);
  if (opened == nullptr || opened->failed)
    return FALSE;
  if (!opened->replacement)
    return TRUE;
  return opened->replacement->Commit() ? TRUE : Failed(opened->path, errno);
}

HANDLE FindFirstFileA(const char *path, WIN32_FIND_DATAA *data) {
  const DiskPath found = FindEntry(path);
  if (!found.exists) {
    lastError = found.missing ? ERROR_FILE_NOT_FOUND : ERROR_ACCESS_DENIED;
    return INVALID_HANDLE_VALUE;
  }
  *data = Describe(found);
  return searches.Add(std::make_shared<Search>());
}

DWORD GetLastError() { return lastError; }

BOOL FindClose(HANDLE search) { return searches.Remove(search) ? TRUE : FALSE; }

BOOL CreateDirectoryA(const char *path, void *) {
  const DiskPath found = FindOnDisk(path);
  if (found.exists || found.path.empty())
    return FALSE;
  return machine::sys::MakeFolder(found.path.c_str(), 0777) == 0 ? TRUE : Failed(found.path, errno);
}
