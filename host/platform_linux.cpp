#include "platform.h"

#include "change_report.h"
#include "terminal/terminal_user.h"
#include "win32/linux/public/front_end.h"
#include "win32/linux/public/machine.h"
#include "win32/linux/public/transaction.h"

#include <cstdlib>
#include <sys/auxv.h>
#include <thread>
#include <utility>

namespace platform {

namespace fs = std::filesystem;

bool HasMachineFolders() { return true; }

void UseMachine(const std::string &folder) { setenv("ACCTKIT_MACHINE", folder.c_str(), 1); }

std::string MachineName() { return machine::Folder().string(); }

namespace {

fs::path WindowsFolder(const fs::path &folder) { return folder / "drive_c" / "windows"; }

// Why a machine's folders couldn't be made: what stands in the place of one of them, else the system's reason.
std::string NotMade(const fs::path &folder, const std::error_code &reason) {
  std::error_code error;
  fs::path there = WindowsFolder(folder);
  while (!there.empty() && !fs::exists(fs::symlink_status(there, error)))
    there = there.parent_path();
  if (there.empty() || fs::is_directory(there, error))
    return folder.string() + ": " + reason.message();
  return there.string() + (fs::exists(there, error) ? ": this is no folder" : ": this link leads nowhere");
}

} // namespace

std::string MakeMachine() {
  const fs::path folder = machine::Folder();
  std::error_code error;
  if (!fs::exists(folder / "system.reg", error)) // which a Wine prefix has
    fs::create_directories(WindowsFolder(folder), error);
  return error ? NotMade(folder, error) : machine::FindFault(true);
}

struct MachineCall::Held {
  machine::Transaction transaction;
};

MachineCall::MachineCall(Purpose purpose)
    : held(new Held{machine::Transaction(purpose == Purpose::Change     ? machine::Purpose::Change
                                         : purpose == Purpose::Rehearse ? machine::Purpose::Rehearse
                                                                        : machine::Purpose::Look)}) {}
MachineCall::~MachineCall() = default;
bool MachineCall::Commit() { return held->transaction.Commit(); }

std::string MachineCall::Report(const std::string &answer, bool asJson) const {
  return ChangeReport(machine::PendingChanges(), answer, machine::TakeNotice(), asJson);
}

Undone UndoLastChange() {
  machine::Undone undone = machine::UndoLastChange();
  return {std::move(undone.refusal), std::move(undone.restored)};
}

std::string FindFault(bool forWriting) { return machine::FindFault(forWriting); }

std::string TakeFault() { return machine::TakeFault(); }

std::string TakeNotice() { return machine::TakeNotice(); }

bool HasNotice() { return machine::HasNotice(); }

fs::path SamplePlugin() {
  std::error_code error;
  fs::path program = fs::read_symlink("/proc/self/exe", error);
  if (error) // there is no /proc, but the path that the program was started by
    program = fs::canonical(reinterpret_cast<const char *>(getauxval(AT_EXECFN)), error);
  const fs::path here = program.parent_path();
  const fs::path built = here / "sample_mailer.dll";
  return fs::exists(built, error) ? built : here.parent_path() / ACCTKIT_PLUGIN_FOLDER / "sample_mailer.dll";
}

namespace {

class UserInFront : public machine::FrontEnd {
public:
  explicit UserInFront(User &user) : user(user), before(machine::SetFrontEnd(this)) {}
  UserInFront(const UserInFront &) = delete;
  UserInFront &operator=(const UserInFront &) = delete;
  ~UserInFront() override { machine::SetFrontEnd(before); }

  bool WaitForUser(HWND top) override { return user.Act(top); }
  bool ShowHelp(const char *file, ULONG_PTR topic) override { return user.SeeHelp(file, topic); }

private:
  User &user;
  machine::FrontEnd *before;
};

} // namespace

void WithUser(User &user, const std::function<void()> &run) {
  const UserInFront inFront(user);
  run();
}

std::string ScreenFault() { return terminal::Fault(); }

bool RunOnScreen(const std::function<void()> &run) { return terminal::Run(run); }

void RunDetached(std::function<void()> work) { std::thread(std::move(work)).detach(); }

void PressKey(int key) { machine::PressKey(key); }

} // namespace platform

int main(int count, char **arguments) { return RunHost({arguments + 1, arguments + count}); }
