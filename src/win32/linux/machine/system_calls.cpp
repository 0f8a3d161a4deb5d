#include "win32/linux/machine/system_calls.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace machine::sys {

int Open(const char *path, int flags, mode_t mode) { return open(path, flags, mode); }
ssize_t Read(int file, void *buffer, size_t size) { return read(file, buffer, size); }
ssize_t Write(int file, const void *data, size_t size) { return write(file, data, size); }
int ChangeMode(int file, mode_t mode) { return fchmod(file, mode); }
int ChangeOwner(int file, uid_t user, gid_t group) { return fchown(file, user, group); }
int Lock(int file, int operation) { return flock(file, operation); }
int Sync(int file) { return fsync(file); }
void SyncAll() { sync(); }
int Link(const char *from, const char *to) { return link(from, to); }
int Rename(const char *from, const char *to) { return rename(from, to); }
int Unlink(const char *path) { return unlink(path); }
int MakeFolder(const char *path, mode_t mode) { return mkdir(path, mode); }
int RemoveFolder(const char *path) { return rmdir(path); }
void Wait() { usleep(1000); }

} // namespace machine::sys
