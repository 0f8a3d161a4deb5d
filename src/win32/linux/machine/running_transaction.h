// The transaction that this process runs, for the other parts of the layer.
#pragma once

#include "win32/linux/machine/staged_files.h"
#include "win32/linux/public/transaction.h"

#include <filesystem>
#include <string>

namespace machine {

// Keeps the other threads of the process from the machine while it lives; within a transaction they are kept from it
// until its end. Every call that works on the machine has one.
class ThreadGuard {
public:
  ThreadGuard();
  ~ThreadGuard();
  ThreadGuard(const ThreadGuard &) = delete;
  ThreadGuard &operator=(const ThreadGuard &) = delete;
};

// Ends the transaction of this thread for as long as it lives: it commits what was written and releases the machine,
// for code that may take long or make calls of its own. A dry run is not interrupted.
class TransactionPause {
public:
  TransactionPause();
  ~TransactionPause();
  TransactionPause(const TransactionPause &) = delete;
  TransactionPause &operator=(const TransactionPause &) = delete;

private:
  int depth = 0;
  Purpose purpose = Purpose::Change;
  bool failed = false; // also what was written until then
};

// A number that is another one for every transaction, 0 outside of one.
uint64_t TransactionNumber();

bool IsRehearsal();

// Whether the running transaction may write; else it is lost, and the fault is recorded.
bool MayWrite();

// Ends the running transaction with nothing written: the machine isn't as its calls believe.
void FailTransaction(const std::string &fault);

// What the running transaction has written; empty outside of one.
StagedFiles &Staged();

} // namespace machine
