// The system's calls by which the machine folder is changed, in one place: a suite links its own in their stead, which
// count them, let one fail, or end the process there. Results and errno are the system's own.
#pragma once

#include <cstddef>
#include <sys/types.h>

namespace machine::sys {

int Open(const char *path, int flags, mode_t mode = 0);
ssize_t Read(int file, void *buffer, size_t size);
ssize_t Write(int file, const void *data, size_t size);
int ChangeMode(int file, mode_t mode);
int ChangeOwner(int file, uid_t user, gid_t group);
int Lock(int file, int operation);
int Sync(int file);
void SyncAll();
int Link(const char *from, const char *to);
int Rename(const char *from, const char *to);
int Unlink(const char *path);
int MakeFolder(const char *path, mode_t mode);
int RemoveFolder(const char *path);
// Waits a millisecond.
void Wait();

} // namespace machine::sys
