#include "win32/linux/machine/hives.h"

#include "win32/linux/machine/machine_folder.h"
#include "win32/linux/machine/running_transaction.h"
#include "win32/linux/public/machine.h"

namespace machine {

const Hives &CurrentHives() {
  static Hives hives;
  if (hives.localMachine == nullptr || (TransactionNumber() == 0 && !IsCurrentFolder(hives.folder))) {
    hives.folder = Folder();
    hives.localMachine = std::make_shared<HiveFile>(hives.folder / "system.reg", HiveFile::LocalMachineRoot);
    hives.currentUser = std::make_shared<HiveFile>(hives.folder / "user.reg", "\\\\User\\\\S-1-5-21-0-0-0-1000");
  }
  return hives;
}

} // namespace machine
