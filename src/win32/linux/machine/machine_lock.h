// The lock of a machine folder, which its writers hold alone and its readers share. It is a file that only those may
// open who may write the machine, so that no other user can hold up its owner.
#pragma once

#include "win32/linux/machine/descriptor.h"

#include <filesystem>
#include <string>

namespace machine {

// The folder of a machine where the layer keeps what belongs to nobody's client: the lock, and what changes replaced.
std::filesystem::path StoreFolder(const std::filesystem::path &folder);

// Why that folder can't be trusted, empty if it can or isn't there.
std::string StoreFault(const std::filesystem::path &folder);

// Gives a new file or folder of the store to those who may write the machine folder, also when root made it: the mode
// is the owner's part of its new one.
void GiveToOwner(const Descriptor &made, mode_t mode, const std::filesystem::path &folder);

class MachineLock {
public:
  // Waits for the lock, but not for ever: some 20 seconds. Empty if it is held then, else the fault. A reader goes
  // without it where nobody has ever written, or where he may not open it.
  std::string TakeAlone(const std::filesystem::path &folder);
  std::string TakeShared(const std::filesystem::path &folder);
  void Release() { file = Descriptor(); }

  bool IsHeld() const { return static_cast<bool>(file); }

private:
  std::string Take(const std::filesystem::path &path, int flags, int operation);

  Descriptor file;
};

} // namespace machine
