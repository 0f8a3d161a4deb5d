// What differs between the platforms for the host program.
#pragma once

#include "win32/win32_ui.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

// Whether the machine can be chosen with --machine; on Windows it is the one that the program runs on.
bool HasMachineFolders();
void UseMachine(const std::string &folder);
std::string MachineName();

// Makes an empty machine where a sample machine is wanted, unless there is a machine already, such as a Wine prefix. A
// fault, empty for none.
std::string MakeMachine();

// A command as one change of the machine, or as looks that see one state of it; where there are no machine folders,
// nothing.
class MachineCall {
public:
  explicit MachineCall(bool writes);
  ~MachineCall();
  // False if something was written and couldn't be put on disk; TakeFault has the reason.
  bool Commit();

private:
  struct Held;
  std::unique_ptr<Held> held;
};

// Faults, a line each, empty for none: why the machine can't be used, and why a call since has failed.
std::string FindFault(bool forWriting);
std::string TakeFault();
// A line that a user should know though it is no fault: of a plug-in that only Windows can load. Empty if there is none
// since the last time.
std::string TakeNotice();
bool HasNotice();

// The sample mailer plug-in as it was built or installed with this program.
std::filesystem::path SamplePlugin();

// A user of the windows that the library opens.
class User {
public:
  virtual ~User() = default;

  // Does one action to the window in front, by messages. Called on the windows' own thread when their modal loop is
  // idle, also within a loop that an earlier action has opened. False ends every loop.
  virtual bool Act(HWND top) noexcept = 0;

  // Shows a help file, named in code page 932, at a topic. False if it can't.
  virtual bool SeeHelp(const char *file, ULONG_PTR topic) noexcept = 0;
};

// Runs a function that opens windows, which the user then works.
void WithUser(User &user, const std::function<void()> &run);

// Why nobody can work windows on the program's screen, empty if somebody can. Where the platform shows no windows, the
// screen is the terminal.
std::string ScreenFault();
// Runs a function that opens windows, for the user at the screen. False if that user left before the end. A signal that
// asks the program to end ends it once the terminal is restored.
bool RunOnScreen(const std::function<void()> &run);

// Runs work on a thread of its own; nobody waits for its end. Throws std::system_error where the system makes none.
void RunDetached(std::function<void()> work);

// The user presses a key and lets it go again.
void PressKey(int key);

} // namespace platform

// The program itself, with its arguments in UTF-8 and without its name; the answer is its exit status.
int RunHost(const std::vector<std::string> &arguments);
