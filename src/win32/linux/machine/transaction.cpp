// The state of the running transaction, its beginning and its end.
//
// A process has one at a time, whose thread has the guard all the while. The guard comes before all other locks of the
// layer, and the machine's lock within it, so that no two threads wait for each other.
#include "win32/linux/public/transaction.h"

#include "win32/linux/machine/change_store.h"
#include "win32/linux/machine/disk_file.h"
#include "win32/linux/machine/hives.h"
#include "win32/linux/machine/machine_folder.h"
#include "win32/linux/machine/machine_lock.h"
#include "win32/linux/machine/running_transaction.h"
#include "win32/linux/machine/wine_server.h"
#include "win32/linux/public/machine.h"
#include "win32/linux/text/code_page.h"
#include "win32/win32.h"

#include <algorithm>
#include <array>
#include <exception>
#include <mutex>
#include <utility>

namespace machine {

namespace {

struct Running {
  int depth = 0;
  Purpose purpose = Purpose::Look;
  uint64_t number = 0;
  std::filesystem::path folder;
  MachineLock lock;
  std::string refusal; // why nothing may be written
  bool wrote = false;
  bool failed = false;
  StagedFiles staged;
};

std::recursive_mutex guard;
Running running;
uint64_t lastNumber = 0;

std::array<HiveFile *, 2> HivesOf(const Hives &hives) { return {hives.localMachine.get(), hives.currentUser.get()}; }

bool Writes(Purpose purpose) { return purpose == Purpose::Change || purpose == Purpose::OneCall; }

// ---- Beginning ----

// A broken-off change is finished by whoever may write; others see what there is.
std::string Recover() {
  ChangeStore store(running.folder);
  if (Writes(running.purpose))
    return store.Recover();
  if (!store.HasBrokenOff())
    return {};
  if (running.purpose == Purpose::Rehearse)
    return running.folder.string() + ": a change was broken off, which the next command finishes or drops";
  MachineLock alone;
  running.lock.Release();
  if (alone.TakeAlone(running.folder).empty())
    store.Recover();
  alone.Release();
  return running.lock.TakeShared(running.folder);
}

// Where memory runs out, nothing can be written.
void Begin(Purpose purpose) noexcept {
  running.purpose = purpose;
  running.wrote = false;
  running.number = ++lastNumber;
  try {
    running.folder = Folder();
    running.refusal = FolderFault(running.folder);
    if (running.refusal.empty())
      running.refusal =
          Writes(purpose) ? running.lock.TakeAlone(running.folder) : running.lock.TakeShared(running.folder);
    if (running.refusal.empty() && running.lock.IsHeld())
      running.refusal = Recover();
  } catch (const std::exception &error) {
    running.refusal = error.what();
  }
}

// ---- The end ----

std::vector<Change> Changes(const Hives &hives) {
  std::vector<Change> changes;
  for (const auto &[target, file] : running.staged.All()) {
    Change &change = changes.emplace_back();
    change.path = file.path;
    change.target = target;
    change.base = file.base;
    change.after = file.content;
  }
  for (const HiveFile *hive : HivesOf(hives))
    if (hive->IsEdited())
      changes.push_back(hive->EditedFile());
  return changes;
}

bool PutOnDisk(const Hives &hives) {
  bool editsHives = false;
  for (const HiveFile *hive : HivesOf(hives))
    editsHives = editsHives || hive->IsEdited();
  if (const std::string fault = editsHives ? ServerFault(running.folder) : std::string(); !fault.empty()) {
    RecordFault(fault);
    return false;
  }
  std::vector<Change> changes = Changes(hives);
  if (!ChangeStore(running.folder).Commit(changes, running.staged.Folders(), running.purpose == Purpose::Change))
    return false;
  for (HiveFile *hive : HivesOf(hives))
    if (hive->IsEdited())
      hive->Keep(*std::ranges::find(changes, hive->Name(), &Change::path));
  return true;
}

// The same where memory may run out, which leaves nothing half done for whoever comes next.
bool TryPutOnDisk(const Hives &hives) {
  try {
    return PutOnDisk(hives);
  } catch (const std::exception &error) {
    RecordFault(running.folder.string() + ": " + error.what());
    return false;
  }
}

// Puts what was written on disk, or drops it, and releases the machine.
bool Finish(bool commits) {
  const Hives &hives = CurrentHives();
  bool done = !running.failed;
  if (commits && done && Writes(running.purpose) && running.wrote)
    done = TryPutOnDisk(hives);
  for (HiveFile *hive : HivesOf(hives))
    if (hive->IsEdited())
      hive->Drop();
  running.staged = StagedFiles();
  running.refusal.clear();
  running.lock.Release();
  running.number = 0;
  return done;
}

} // namespace

// ---- For the host program and the product ----

Transaction::Transaction(Purpose purpose) {
  std::unique_lock held(guard);
  if (running.depth == 0) {
    running.failed = false;
    CurrentHives(); // which are the transaction's
    Begin(purpose);
  }
  ++running.depth;
  held.release();
}

bool Transaction::Commit() {
  const std::lock_guard held(guard, std::adopt_lock);
  ended = true;
  return --running.depth > 0 ? !running.failed : Finish(true);
}

Transaction::~Transaction() {
  if (ended)
    return;
  const std::lock_guard held(guard, std::adopt_lock);
  running.failed = true;
  if (--running.depth == 0)
    Finish(false);
}

std::vector<FileChange> PendingChanges() {
  const ThreadGuard threads;
  std::vector<FileChange> pending;
  if (running.failed)
    return pending;
  for (const StagedFolder &folder : running.staged.Folders())
    pending.push_back({folder.path + '\\', std::nullopt, std::nullopt});
  for (Change &change : Changes(CurrentHives())) {
    DiskFile now = ReadDiskFile(change.target);
    std::optional<std::string> before = now.Exists() ? std::optional(std::move(now.bytes)) : std::nullopt;
    if (before != change.after)
      pending.push_back({change.path, std::move(before), std::move(change.after)});
  }
  return pending;
}

Undone UndoLastChange() {
  Transaction transaction;
  if (running.purpose != Purpose::Change)
    return {running.folder.string() + ": a dry run takes nothing back", {}};
  Undone undone = running.refusal.empty() ? ChangeStore(running.folder).Undo() : Undone{running.refusal, {}};
  transaction.Commit();
  return undone;
}

// ---- For the other parts of the layer ----

ThreadGuard::ThreadGuard() { guard.lock(); }
ThreadGuard::~ThreadGuard() { guard.unlock(); }

TransactionPause::TransactionPause() {
  guard.lock(); // so that the depth is this thread's
  if (running.depth > 0 && running.purpose != Purpose::Rehearse) {
    depth = std::exchange(running.depth, 0);
    purpose = running.purpose;
    failed = !Finish(true);
  }
  for (int unlocked = 0; unlocked <= depth; ++unlocked)
    guard.unlock();
}

TransactionPause::~TransactionPause() {
  for (int locked = 0; locked < depth; ++locked)
    guard.lock();
  if (depth == 0)
    return;
  running.failed = failed;
  Begin(purpose);
  running.depth = depth;
}

const std::string &WriteRefusal() { return running.refusal; }

uint64_t TransactionNumber() { return running.number; }

bool IsRehearsal() { return running.depth > 0 && running.purpose == Purpose::Rehearse; }

bool MayWrite() {
  running.wrote = true;
  if (running.failed)
    return false;
  if (!Writes(running.purpose) || running.refusal.empty())
    return true;
  FailTransaction(running.refusal);
  return false;
}

void FailTransaction(const std::string &fault) {
  const ThreadGuard threads; // another thread's call has no part in it
  RecordFault(fault);
  running.failed = running.failed || running.depth > 0;
}

StagedFiles &Staged() { return running.staged; }

} // namespace machine

// ---- The marks of the product ----

PlatformCall::PlatformCall() : transaction(std::make_unique<machine::Transaction>()) {}
PlatformCall::~PlatformCall() = default;
bool PlatformCall::Commit() { return transaction->Commit(); }

PlatformCall::Pause::Pause() : pause(std::make_unique<machine::TransactionPause>()) {}
PlatformCall::Pause::~Pause() = default;

void PlatformCall::Report(const char *path, const char *reason) {
  machine::RecordFault(text::WideToUtf8(text::ToWide(path)) + ": " + reason);
}
