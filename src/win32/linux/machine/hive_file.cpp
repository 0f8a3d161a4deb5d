// When the content is read again, and how edits become a change of the file.
#include "win32/linux/machine/hive_file.h"

#include "win32/linux/machine/disk_file.h"
#include "win32/linux/machine/machine_folder.h"
#include "win32/linux/machine/running_transaction.h"
#include "win32/linux/machine/wine_server.h"

#include <cerrno>
#include <cstring>
#include <utility>

namespace machine {

std::filesystem::path HivePlace(const std::filesystem::path &file) {
  std::error_code error;
  return std::filesystem::is_symlink(file, error) ? std::filesystem::canonical(file, error) : file;
}

HiveFile::HiveFile(std::filesystem::path path, std::string_view rootName) : file(std::move(path)), root(rootName) {}

HiveFile::Identity HiveFile::IdentityOf(const struct stat &status) {
  return {status.st_dev, status.st_ino, status.st_mode, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

void HiveFile::SetRead(Descriptor opened, const struct stat &itsStatus) {
  read = std::move(opened);
  status = itsStatus;
  identity = IdentityOf(status);
}

LSTATUS HiveFile::NotUsable(const std::string &why) {
  fault = file.string() + ": " + why;
  FailTransaction(fault);
  return ERROR_BADDB;
}

// ---- Reading ----

bool HiveFile::IsLooked() {
  const uint64_t now = TransactionNumber();
  return now != 0 && looked == now;
}

LSTATUS HiveFile::Refresh() {
  if (IsLooked())
    return state;
  struct stat named;
  const Identity now = stat(file.c_str(), &named) == 0 ? IdentityOf(named) : Identity();
  if (now != identity || now == Identity())
    state = Load();
  else if (state != ERROR_SUCCESS)
    FailTransaction(fault);
  looked = TransactionNumber();
  return state;
}

LSTATUS HiveFile::RefreshOpened() {
  if (TransactionNumber() != 0)
    return Refresh();
  struct stat opened;
  if (read && fstat(read.Get(), &opened) == 0 && opened.st_nlink > 0 && IdentityOf(opened) == identity)
    return state;
  return Refresh();
}

// Nothing of the last load is left, also where memory runs out in the middle of this one.
LSTATUS HiveFile::Load() {
  hive = std::make_shared<Hive>();
  identity = Identity();
  fault.clear();
  read = Descriptor();
  edited = replaced = false;
  const std::filesystem::path place = HivePlace(file);
  if (place.empty())
    return NotUsable("this link leads nowhere");
  DiskFile found = ReadDiskFile(place);
  if (found.error == ENOENT)
    return LoadEmpty();
  if (!found.Exists())
    return NotUsable(found.error == EINVAL ? "no file" : std::strerror(found.error));
  const std::string damage = hive->Load(std::move(found.bytes));
  SetRead(std::move(found.file), found.status);
  return damage.empty() ? Loaded() : NotUsable("the registry is damaged, " + damage);
}

LSTATUS HiveFile::LoadEmpty() {
  fault = FolderFault(file.parent_path());
  if (!fault.empty()) {
    RecordFault(fault);
    return ERROR_FILE_NOT_FOUND;
  }
  hive->Load(Hive::EmptyText(root));
  return Loaded();
}

LSTATUS HiveFile::Loaded() {
  if (hive->Is64Bit() && IsLocalMachine())
    hive->Create(hive->Root(), u"Software\\Wow6432Node"); // as Wine does when it starts
  return ERROR_SUCCESS;
}

// ---- Writing ----

bool HiveFile::IsReadOnly() const { return read && !IsWritable(identity.mode); }

std::string HiveFile::WriteFault() const {
  return IsReadOnly() ? file.string() + ": the registry may not be written" : ServerFault(file.parent_path());
}

LSTATUS HiveFile::Edit(const EditFunction &edit) {
  if (const LSTATUS result = Refresh(); result != ERROR_SUCCESS)
    return result;
  if (!MayWrite())
    return ERROR_ACCESS_DENIED;
  if (IsReadOnly()) {
    RecordFault(WriteFault());
    return ERROR_ACCESS_DENIED;
  }
  // A server has the registry in its memory, so what we read isn't what there is.
  if (const std::string found = edited ? std::string() : ServerFault(file.parent_path()); !found.empty()) {
    FailTransaction(found);
    return ERROR_ACCESS_DENIED;
  }
  bool changed = true;
  const bool wasEdited = std::exchange(edited, true); // also if memory runs out in the middle of the edit
  const LSTATUS result = edit(*hive, changed);
  edited = wasEdited || (result == ERROR_SUCCESS && changed);
  return result;
}

Change HiveFile::EditedFile() const {
  Change change;
  change.path = Name();
  change.target = HivePlace(file);
  if (read)
    change.base = status;
  change.after = hive->Text();
  if (read && !replaced)
    change.known = hive->Loaded();
  return change;
}

void HiveFile::Keep(Change &written) {
  struct stat placed;
  if (written.result == Change::Result::Refused)
    return Drop();
  edited = false;
  if (written.result != Change::Result::Placed)
    return;
  replaced = true;
  if (fstat(written.file.Get(), &placed) == 0)
    SetRead(std::move(written.file), placed);
}

void HiveFile::Drop() {
  edited = false;
  looked = 0;
  identity = Identity();
  read = Descriptor();
}

} // namespace machine
