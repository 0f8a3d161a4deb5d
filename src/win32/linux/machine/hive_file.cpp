// When the content is read again, and how an edit gets to the disk.
#include "win32/linux/machine/hive_file.h"

#include "win32/linux/machine/descriptor.h"
#include "win32/linux/machine/machine_folder.h"
#include "win32/linux/machine/replacement.h"
#include "win32/linux/machine/system_calls.h"
#include "win32/linux/public/machine.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace machine {

HiveFile::HiveFile(std::filesystem::path path, std::string_view rootName)
    : file(std::move(path)), root(rootName), hive(std::make_unique<Hive>()) {}

HiveFile::Identity HiveFile::IdentityOf(const struct stat &status) {
  return {status.st_dev, status.st_ino, status.st_mode, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

LSTATUS HiveFile::NotUsable(const std::string &why) {
  fault = file.string() + ": " + why;
  RecordFault(fault);
  return ERROR_BADDB;
}

LSTATUS HiveFile::Refresh() {
  struct stat status;
  const Identity now = stat(file.c_str(), &status) == 0 ? IdentityOf(status) : Identity();
  if (now == identity && generation != 0 && now != Identity())
    return state;
  return state = Load();
}

LSTATUS HiveFile::RefreshOpened() {
  struct stat status;
  if (read && fstat(read.Get(), &status) == 0 && status.st_nlink > 0 && IdentityOf(status) == identity)
    return state;
  return Refresh();
}

LSTATUS HiveFile::Load() {
  ++generation;
  hive = std::make_unique<Hive>();
  identity = Identity();
  fault.clear();
  read = Descriptor();
  std::string text;
  if (const LSTATUS result = ReadText(text); result != ERROR_SUCCESS)
    return result;
  if (const std::string damage = hive->Load(std::move(text)); !damage.empty())
    return NotUsable("the registry is damaged, " + damage);
  if (hive->Is64Bit() && IsLocalMachine())
    hive->Create(hive->Root(), u"Software\\Wow6432Node"); // as Wine does when it starts
  return ERROR_SUCCESS;
}

LSTATUS HiveFile::ReadText(std::string &text) {
  Descriptor opened(sys::Open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!opened && errno == ENOENT)
    return MakeText(text);
  if (!opened)
    return NotUsable(std::strerror(errno));
  struct stat status;
  if (fstat(opened.Get(), &status) != 0 || !S_ISREG(status.st_mode))
    return NotUsable("no file");
  text.resize(static_cast<size_t>(status.st_size) + 1);
  if (!ReadAll(opened.Get(), text))
    return NotUsable(std::strerror(errno));
  identity = IdentityOf(status);
  read = std::move(opened);
  return ERROR_SUCCESS;
}

LSTATUS HiveFile::MakeText(std::string &text) {
  fault = FolderFault(file.parent_path());
  if (!fault.empty()) {
    RecordFault(fault);
    return ERROR_FILE_NOT_FOUND;
  }
  text = Hive::EmptyText(root);
  return ERROR_SUCCESS;
}

bool HiveFile::IsReadOnly() const { return read && !IsWritable(identity.mode); }

std::string HiveFile::WriteFault() const {
  return IsReadOnly() ? file.string() + ": the registry may not be written" : ServerFault(file.parent_path());
}

LSTATUS HiveFile::Edit(const EditFunction &edit) {
  const Lock lock;
  if (const LSTATUS result = Refresh(); result != ERROR_SUCCESS)
    return result;
  if (const std::string found = WriteFault(); !found.empty()) {
    RecordFault(found);
    return ERROR_ACCESS_DENIED;
  }
  bool changed = true;
  LSTATUS result = edit(*hive, changed);
  if (result == ERROR_SUCCESS && changed) {
    result = Replace();
    if (result != ERROR_SUCCESS) {
      const std::string reason = fault;
      state = Load();
      fault = reason;
    }
  }
  return result;
}

LSTATUS HiveFile::Replace() {
  std::error_code ignored;
  // A hive may stand elsewhere, behind a link that stays.
  Replacement replacement(std::filesystem::is_symlink(file, ignored) ? std::filesystem::canonical(file, ignored)
                                                                     : file);
  struct stat status;
  if (!replacement.File() || !WriteAll(replacement.File().Get(), hive->Text()) || !replacement.Commit() ||
      fstat(replacement.File().Get(), &status) != 0)
    return NotUsable(std::string("the registry can't be written: ") + std::strerror(errno));
  identity = IdentityOf(status);
  read = replacement.TakeFile();
  return ERROR_SUCCESS;
}

} // namespace machine
