// A hive on disk: loaded when it is asked for, and again when somebody else has changed it. What a transaction edits is
// in the content alone until the transaction puts it on disk.
#pragma once

#include "win32/linux/machine/change_store.h"
#include "win32/linux/machine/descriptor.h"
#include "win32/linux/machine/hive.h"
#include "win32/win32.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <sys/stat.h>

namespace machine {

// Where a hive stands, behind the links that may lead to it; empty if they lead nowhere.
std::filesystem::path HivePlace(const std::filesystem::path &file);

class HiveFile {
public:
  static constexpr std::string_view LocalMachineRoot = "\\\\Machine";
  // `root` is the hive's name in its own heading, should the file have to be made: LocalMachineRoot, or the user's.
  HiveFile(std::filesystem::path file, std::string_view root);

  // Makes sure that the content is that of the file; one look at the file's identity if it is, and within a transaction
  // one look for all its calls. ERROR_BADDB for a file that is damaged, or can't be read, ERROR_FILE_NOT_FOUND for a
  // machine folder that isn't there; `Fault` then says why, and a transaction can't write any more.
  LSTATUS Refresh();
  // The same in half the time, for a key that is open: looks at the file that was read, whatever its name is now, so
  // it doesn't notice a file that was only renamed.
  LSTATUS RefreshOpened();

  bool IsLocalMachine() const { return root == LocalMachineRoot; }

  Hive &Content() { return *hive; }
  // The content is another one after every load; who keeps the old one can still tell what its keys were.
  const std::shared_ptr<Hive> &SharedContent() const { return hive; }

  // Changes the content, within a transaction. ERROR_ACCESS_DENIED if the file may not be written, with a fault; else
  // what the edit answers, which has changed nothing if that isn't ERROR_SUCCESS, or if it says so by `changed`.
  using EditFunction = std::function<LSTATUS(Hive &hive, bool &changed)>;
  LSTATUS Edit(const EditFunction &edit);

  bool IsEdited() const { return edited; }
  std::string Name() const { return file.filename(); }
  // The file as the edits make it.
  Change EditedFile() const;
  // The edits are on disk, or aren't and are lost.
  void Keep(Change &written);
  void Drop();

  // Whether the mode of the file that was read lets nobody write it.
  bool IsReadOnly() const;
  // Why the hive can't be written by anybody, empty if it can.
  std::string WriteFault() const;
  // Why the last Refresh failed.
  const std::string &Fault() const { return fault; }

private:
  // What tells one version of the file from another.
  struct Identity {
    dev_t device = 0;
    ino_t inode = 0;
    mode_t mode = 0;
    off_t size = -1;
    int64_t seconds = 0;
    int64_t nanoseconds = 0;
    bool operator==(const Identity &) const = default;
  };
  static Identity IdentityOf(const struct stat &status);
  void SetRead(Descriptor opened, const struct stat &itsStatus);

  bool IsLooked();
  LSTATUS Load();
  LSTATUS LoadEmpty(); // for a machine that doesn't have this hive yet
  LSTATUS Loaded();
  LSTATUS NotUsable(const std::string &why);

  std::filesystem::path file;
  std::string_view root;
  std::shared_ptr<Hive> hive = std::make_shared<Hive>();
  Descriptor read;         // the file that the content is from
  struct stat status = {}; // of that file
  Identity identity;
  uint64_t looked = 0; // the transaction that has looked at the file
  bool edited = false;
  bool replaced = false;         // since it was loaded, so that it isn't the loaded text any more
  LSTATUS state = ERROR_SUCCESS; // the result of the last load
  std::string fault;
};

} // namespace machine
