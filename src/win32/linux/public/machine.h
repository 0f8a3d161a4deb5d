// The machine folder that stands for one Windows machine, and what went wrong beneath the Win32 calls. AcctKit itself
// never includes this; the host program and the tests do.
//
// A fault is one line for a user (UTF-8, no line feed) that names the folder, file or place in it.
#pragma once

#include <filesystem>
#include <string>

namespace machine {

// The folder that ACCTKIT_MACHINE names, else $XDG_DATA_HOME/acctkit/machine, else ~/.local/share/acctkit/machine.
// Looked up anew by every Win32 call, so a process can go from one machine to another.
std::filesystem::path Folder();

// Why the machine can't be used, empty if it can: a folder that isn't there or is no machine, a damaged hive.
// `forWriting` also asks for what only a write needs: hives that may be written, and no Wine server running on the
// folder.
std::string FindFault(bool forWriting);

// The first fault since the last TakeFault, empty if there was none: a damaged hive, a full disk, a file that is there
// and can't be had, or couldn't be put in place. An ordinary answer of a call (no such key, no such file, a right that
// a key doesn't give) is no fault.
std::string TakeFault();

// What a user should know though it is no fault, the first since the last TakeNotice, one line as above: a library that
// only Windows can load, or that a dry run didn't load, so that what is in it is missing for a reason; a change that
// was broken off, and what became of it.
std::string TakeNotice();
bool HasNotice();

} // namespace machine
