#include "platform.h"

#include "terminal/terminal_user.h"
#include "win32/linux/public/front_end.h"
#include "win32/linux/public/machine.h"
#include "win32/linux/public/transaction.h"

#include <cstdlib>
#include <thread>
#include <utility>

namespace platform {

namespace fs = std::filesystem;

bool HasMachineFolders() { return true; }

void UseMachine(const std::string &folder) { setenv("ACCTKIT_MACHINE", folder.c_str(), 1); }

std::string MachineName() { return machine::Folder().string(); }

std::string MakeMachine() {
  const fs::path folder = machine::Folder();
  std::error_code error;
  if (!fs::exists(folder / "system.reg", error)) // which a Wine prefix has
    fs::create_directories(folder / "drive_c" / "windows", error);
  return error ? folder.string() + ": " + error.message() : machine::FindFault(true);
}

struct MachineCall::Held {
  machine::Transaction transaction;
};

MachineCall::MachineCall(bool writes)
    : held(new Held{machine::Transaction(writes ? machine::Purpose::Change : machine::Purpose::Look)}) {}
MachineCall::~MachineCall() = default;
bool MachineCall::Commit() { return held->transaction.Commit(); }

std::string FindFault(bool forWriting) { return machine::FindFault(forWriting); }

std::string TakeFault() { return machine::TakeFault(); }

std::string TakeNotice() { return machine::TakeNotice(); }

bool HasNotice() { return machine::HasNotice(); }

fs::path SamplePlugin() {
  const fs::path here = fs::read_symlink("/proc/self/exe").parent_path();
  const fs::path built = here / "sample_mailer.dll";
  return fs::exists(built) ? built : here.parent_path() / ACCTKIT_PLUGIN_FOLDER / "sample_mailer.dll";
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
