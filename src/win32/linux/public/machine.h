// The machine folder that stands for one Windows machine, and what the layer knows about its state beyond the Win32
// calls. AcctKit itself never includes this; the host program and the tests do.
#pragma once

#include "win32/win32.h"

#include <filesystem>
#include <string>

namespace machine {

// The folder that ACCTKIT_MACHINE names, else $XDG_DATA_HOME/acctkit/machine, else ~/.local/share/acctkit/machine.
// Looked up anew by every Win32 call, so a process can go from one machine to another.
std::filesystem::path Folder();

// One line (UTF-8, no line feed) that says why the machine can't be used and where, or an empty text if it can: a
// folder that isn't there or is no machine, a damaged hive. `forWriting` also asks for what only a write needs: hives
// that may be written, and no Wine server running on the folder.
std::string Problem(bool forWriting);

// The first thing that went wrong beneath a Win32 call since the last TakeFault: a damaged hive, a full disk, a file
// that is there and can't be had, or couldn't be put in place. One line as above; empty if nothing did. What is an
// ordinary answer (a missing key, a missing file, a right that a key doesn't give) is no fault.
std::string TakeFault();

// A library that a Win32 call was to load since the last TakeNotice and that only Windows can load: one line as above.
// It is no fault, the call answers as for any file that is no library; but what is in it is missing for a reason.
std::string TakeNotice();
bool HasNotice();

// Holds the whole machine against every other process for as long as it lives, over any number of calls. The layer
// takes it by itself for each single write; a process that reads, decides and writes takes it around all three.
// Locks of one process nest.
class Lock {
public:
  Lock();
  ~Lock();
  Lock(const Lock &) = delete;
  Lock &operator=(const Lock &) = delete;
};

// Lets the other processes have the machine as long as it lives, whatever locks this thread has.
class LockPause {
public:
  LockPause();
  ~LockPause();
  LockPause(const LockPause &) = delete;
  LockPause &operator=(const LockPause &) = delete;

private:
  int held;
};

} // namespace machine
