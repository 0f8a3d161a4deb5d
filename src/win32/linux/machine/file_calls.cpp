// Files and folders of the machine.
#include "win32/win32.h"

#include "win32/linux/last_error.h"
#include "win32/linux/machine/descriptor.h"
#include "win32/linux/machine/faults.h"
#include "win32/linux/machine/handle_table.h"
#include "win32/linux/machine/paths.h"
#include "win32/linux/machine/replacement.h"
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
using machine::ErrorOf;
using machine::Fail;
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

HANDLE NoFile(LONG error) { return Fail(error, INVALID_HANDLE_VALUE); }

// Reports what the disk did, for whoever asks why a call failed.
LONG DiskFault(const std::filesystem::path &path, int reason) {
  machine::RecordFault(path.string() + ": " + std::strerror(reason));
  return ErrorOf(reason);
}
BOOL Faulty(const std::filesystem::path &path, int reason) { return Fail(DiskFault(path, reason), FALSE); }

// Reports a file that is there and can't be had.
HANDLE Unavailable(const std::filesystem::path &path, LONG error) {
  if (error == ERROR_SHARING_VIOLATION)
    machine::RecordFault(path.string() + ": another program has it open");
  else if (error == ERROR_ACCESS_DENIED)
    DiskFault(path, EACCES);
  return NoFile(error);
}

// Opens and locks a file: share mode 0 keeps every other open out, any other mode keeps share mode 0 out.
LONG OpenLocked(const std::filesystem::path &path, int flags, DWORD share, Descriptor &file) {
  for (;;) {
    file = Descriptor(open(path.c_str(), flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0666));
    if (!file)
      return ErrorOf(errno);
    if (flock(file.Get(), (share == 0 ? LOCK_EX : LOCK_SH) | LOCK_NB) != 0)
      return ERROR_SHARING_VIOLATION;
    struct stat status;
    if (machine::IsStill(file, path, status)) // else it was replaced between opening and locking
      return S_ISREG(status.st_mode) ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
  }
}

// Whether a file of that state may be opened so.
LONG CheckOpen(const DiskPath &found, DWORD access, DWORD disposition) {
  if (found.error != ERROR_SUCCESS)
    return found.error;
  if (!found.exists)
    return disposition == OPEN_EXISTING || disposition == TRUNCATE_EXISTING ? ERROR_FILE_NOT_FOUND : ERROR_SUCCESS;
  if (disposition == CREATE_NEW)
    return ERROR_FILE_EXISTS;
  const bool writes = (access & GENERIC_WRITE) != 0 || disposition == CREATE_ALWAYS;
  const bool writable = (found.status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) != 0; // binds the superuser too
  return !found.IsFile() || (writes && !writable) ? ERROR_ACCESS_DENIED : ERROR_SUCCESS;
}

// What a path names whose last part may have wildcards: the first entry that matches then.
DiskPath FindEntry(const char *path) {
  const std::u16string wide = machine::WidePath(path);
  const size_t begin = wide.rfind(u'\\') + 1;
  const std::u16string pattern = wide.substr(begin);
  if (!wide.empty() && pattern.empty())
    return {.error = ERROR_FILE_NOT_FOUND}; // a folder's path with a backslash behind it names no entry
  if (pattern.find_first_of(u"*?") == std::u16string::npos)
    return FindOnDisk(path);

  DiskPath found = FindOnDisk(text::FromWide(wide.substr(0, begin)).c_str());
  if (!found.IsFolder())
    return {.error = found.error != ERROR_SUCCESS ? found.error : ERROR_PATH_NOT_FOUND};
  const std::string name = machine::FirstMatch(found.path, pattern);
  found.path /= name;
  found.exists = !name.empty() && stat(found.path.c_str(), &found.status) == 0;
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
  if (const LONG error = CheckOpen(found, access, disposition); error != ERROR_SUCCESS)
    return found.IsFile() ? Unavailable(found.path, error) : NoFile(error);

  auto opened = std::make_shared<OpenFile>();
  opened->access = access;
  opened->path = found.path;
  const bool replaces = disposition == CREATE_ALWAYS || disposition == TRUNCATE_EXISTING;
  if (!replaces || found.exists) {
    const int mode = !replaces && (access & GENERIC_WRITE) != 0 ? O_RDWR : O_RDONLY;
    const int create = disposition == OPEN_ALWAYS ? O_CREAT : disposition == CREATE_NEW ? O_CREAT | O_EXCL : 0;
    if (const LONG error = OpenLocked(found.path, mode | create, share, opened->file); error != ERROR_SUCCESS)
      return Unavailable(found.path, error);
  }
  if (replaces) {
    opened->replacement = std::make_unique<Replacement>(found.path);
    if (!opened->replacement->File())
      return errno == EWOULDBLOCK ? Unavailable(found.path, ERROR_SHARING_VIOLATION)
                                  : NoFile(DiskFault(found.path, errno));
  }
  const bool always = disposition == CREATE_ALWAYS || disposition == OPEN_ALWAYS;
  SetLastError(always && found.exists ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS);
  return openFiles.Add(std::move(opened));
}

BOOL ReadFile(HANDLE handle, void *buffer, DWORD size, DWORD *read, void *) {
  const std::shared_ptr<const OpenFile> opened = openFiles.Find(handle);
  *read = 0;
  if (opened == nullptr)
    return Fail(ERROR_INVALID_HANDLE, FALSE);
  if ((opened->access & GENERIC_READ) == 0)
    return Fail(ERROR_ACCESS_DENIED, FALSE);
  while (*read < size) {
    const ssize_t count = ::read(opened->Data(), static_cast<char *>(buffer) + *read, size - *read);
    if (count < 0 && errno == EINTR)
      continue;
    if (count < 0)
      return Faulty(opened->path, errno);
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
    return Fail(ERROR_INVALID_HANDLE, INVALID_FILE_SIZE);
  const auto size = static_cast<uint64_t>(status.st_size);
  if (high != nullptr)
    *high = static_cast<DWORD>(size >> 32);
  return static_cast<DWORD>(size);
}

BOOL WriteFile(HANDLE handle, const void *data, DWORD size, DWORD *written, void *) {
  const std::shared_ptr<OpenFile> opened = openFiles.Find(handle);
  *written = 0;
  if (opened == nullptr)
    return Fail(ERROR_INVALID_HANDLE, FALSE);
  if ((opened->access & GENERIC_WRITE) == 0)
    return Fail(ERROR_ACCESS_DENIED, FALSE);
  if (!machine::WriteAll(opened->Data(), {static_cast<const char *>(data), size})) {
    opened->failed = true;
    return Faulty(opened->path, errno);
  }
  *written = size;
  return TRUE;
}

BOOL CloseHandle(HANDLE handle) {
  const std::shared_ptr<OpenFile> opened = openFiles.Remove(handle);
  if (opened == nullptr)
    return Fail(ERROR_INVALID_HANDLE, FALSE);
  if (!opened->replacement)
    return TRUE;
  if (opened->failed)
    return Fail(ERROR_WRITE_FAULT, FALSE);
  return opened->replacement->Commit() ? TRUE : Faulty(opened->path, errno);
}

HANDLE FindFirstFileA(const char *path, WIN32_FIND_DATAA *data) {
  const DiskPath found = FindEntry(path);
  if (!found.exists)
    return NoFile(found.Absence());
  *data = Describe(found);
  return searches.Add(std::make_shared<Search>());
}

BOOL FindClose(HANDLE search) { return searches.Remove(search) ? TRUE : Fail(ERROR_INVALID_HANDLE, FALSE); }

BOOL CreateDirectoryA(const char *path, void *) {
  const DiskPath found = FindOnDisk(path);
  if (found.error != ERROR_SUCCESS)
    return Fail(found.error, FALSE);
  if (found.exists)
    return Fail(ERROR_ALREADY_EXISTS, FALSE);
  return mkdir(found.path.c_str(), 0777) == 0 ? TRUE : Faulty(found.path, errno);
}

UINT GetWindowsDirectoryA(char *buffer, UINT size) {
  char directory[MAX_PATH] = "";
  DWORD type = REG_NONE;
  DWORD length = sizeof directory - 1;
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Windows NT\\CurrentVersion", 0, KEY_READ, &key) ==
      ERROR_SUCCESS) {
    if (RegQueryValueExA(key, "SystemRoot", nullptr, &type, reinterpret_cast<BYTE *>(directory), &length) !=
            ERROR_SUCCESS ||
        type != REG_SZ)
      directory[0] = '\0';
    RegCloseKey(key);
  }
  const std::string path = directory[0] != '\0' ? directory : "C:\\windows";
  if (path.size() >= size)
    return static_cast<UINT>(path.size() + 1);
  std::memcpy(buffer, path.c_str(), path.size() + 1);
  return static_cast<UINT>(path.size());
}

DWORD GetModuleFileNameA(HMODULE module, char *buffer, DWORD size) {
  if (module != nullptr)
    return Fail(ERROR_MOD_NOT_FOUND, DWORD{0});
  const std::string path = machine::ProgramPath();
  if (size == 0)
    return Fail(ERROR_INSUFFICIENT_BUFFER, DWORD{0});
  buffer[path.copy(buffer, size - 1)] = '\0';
  if (path.size() >= size)
    return Fail(ERROR_INSUFFICIENT_BUFFER, size);
  return static_cast<DWORD>(path.size());
}
