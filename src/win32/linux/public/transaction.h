// Many Win32 calls as one change of the machine: others see all of it or nothing, and so does whoever comes after a
// kill or a power cut.
//
//   machine::Transaction transaction; // nobody else writes between our reading and our writing
//   SetupMailAccount(client, spec, key);
//   if (!transaction.Commit())
//     return Refuse(machine::TakeFault());
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace machine {

enum class Purpose {
  Change,   // what is written goes to the disk at the end
  Look,     // several looks that see one state of the machine; what a call writes all the same is dropped
  Rehearse, // a dry run: the same, but no library of the machine is loaded, nothing interrupts it, and a change that
            // was broken off stays as it is
  OneCall,  // a Win32 call that no other transaction is around: a change that isn't kept for an undo
};

// Keeps other processes and threads from writing to the machine while it runs, or from writing half of what is read.
// Within it every call reads what an earlier one wrote, and nothing is on disk. Transactions nest: what an inner one
// wrote goes to the disk with the outermost, whose purpose counts. A single Win32 call that writes is a transaction of
// its own.
//
// Nothing is held while the user of a window thinks, or while a library of the machine runs that the product enters:
// what was written is committed before.
class Transaction {
public:
  explicit Transaction(Purpose purpose = Purpose::Change);
  // Drops what was written unless Commit was called; an inner one takes the outer ones along.
  ~Transaction();
  Transaction(const Transaction &) = delete;
  Transaction &operator=(const Transaction &) = delete;

  // Ends the transaction; what was written is on disk then, and survives a power cut. False if something was to be
  // written and nothing of it is: TakeFault has the reason. A file that may not be written (for want of a right) is an
  // ordinary answer of the call that writes it, and the others go to the disk without it; TakeFault has a line then,
  // too.
  bool Commit();

private:
  bool ended = false;
};

// A file that the running transaction changes, or a folder that it makes.
struct FileChange {
  std::string path; // UTF-8: "C:\...", with a backslash at the end of a folder's; of a hive, its file's name
  std::optional<std::string> before; // the bytes on disk; none if there is no such file
  std::optional<std::string> after;  // the bytes that are to stand there; none of a folder
};

// What Commit would put on disk: folders, files by their paths, hives.
std::vector<FileChange> PendingChanges();

struct Undone {
  std::string refusal;               // why nothing was put back, in one line; empty if all was
  std::vector<std::string> restored; // the paths, as above
};
// Puts back the files that the last change of the machine replaced, and removes those that it made. Refuses if one of
// them has been changed since, or if there is no such change: one step back is kept.
Undone UndoLastChange();

} // namespace machine
