// A hive on disk: loaded when it is asked for, loaded again when somebody else changed it, replaced whole by every
// edit.
#pragma once

#include "win32/linux/machine/descriptor.h"
#include "win32/linux/machine/hive.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <sys/stat.h>

namespace machine {

class HiveFile {
public:
  static constexpr std::string_view LocalMachineRoot = "\\\\Machine";
  // `root` is the hive's name in its own heading, should the file have to be made: LocalMachineRoot, or the user's.
  HiveFile(std::filesystem::path file, std::string_view root);

  // Makes sure that the content is that of the file; one look at the file's identity if it is. ERROR_BADDB for a
  // file that is damaged, or can't be read, ERROR_FILE_NOT_FOUND for a machine folder that isn't there; `Fault` then
  // says why.
  LSTATUS Refresh();
  // The same in half the time, for a key that is open: looks at the file that was read, whatever its name is now, so
  // it doesn't notice a file that was only renamed.
  LSTATUS RefreshOpened();

  bool IsLocalMachine() const { return root == LocalMachineRoot; }

  Hive &Content() { return *hive; }
  // Changes with every load: keys of another generation are gone.
  uint64_t Generation() const { return generation; }

  // Changes the hive and replaces its file, with the machine locked all the while:
  //
  //   file.Edit([&](Hive &hive, bool &) -> LSTATUS {
  //     hive.WriteValue(*hive.Create(hive.Root(), u"Software\\Mine"), value);
  //     return ERROR_SUCCESS;
  //   });
  //
  // The edit gets the content as the file holds it at that moment. If it answers another code than ERROR_SUCCESS, or
  // false by `changed`, nothing is written. Where the file can't be replaced, the content is again what the file holds.
  using EditFunction = std::function<LSTATUS(Hive &hive, bool &changed)>;
  LSTATUS Edit(const EditFunction &edit);

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

  LSTATUS Load();
  LSTATUS ReadText(std::string &text);
  LSTATUS MakeText(std::string &text); // for a machine that doesn't have this hive yet
  LSTATUS Replace();
  LSTATUS NotUsable(const std::string &why);

  std::filesystem::path file;
  std::string_view root;
  std::unique_ptr<Hive> hive;
  Descriptor read; // the file that the content is from
  Identity identity;
  uint64_t generation = 0;
  LSTATUS state = ERROR_SUCCESS; // the result of the last load
  std::string fault;
};

} // namespace machine
