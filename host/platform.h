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

// Makes an empty machine where the program is to make a sample machine, unless there is one, as a Wine prefix is. A
// line that says why it can't, or an empty text.
std::string MakeMachine();

// Holds the machine over a command that reads, decides and writes.
class MachineLock {
public:
  MachineLock();
  ~MachineLock();

private:
  struct Held;
  std::unique_ptr<Held> held;
};

// Why the machine can't be used, and what went wrong beneath the calls since; a line each, empty if nothing did.
std::string Problem(bool forWriting);
std::string TakeFault();
// What a user should know that is no fault, since the last time, a plug-in that only Windows can load; a line, empty if
// there is nothing.
std::string TakeNotice();
bool HasNotice();

// The sample mailer plug-in as it was built or installed with this program.
std::filesystem::path SamplePlugin();

// Someone before the windows that the library opens.
class User {
public:
  virtual ~User() = default;

  // Does one thing to the window in front, by messages. Called on the windows' own thread when their modal loop has
  // nothing left to do, also within a loop that an earlier thing has opened. False ends every loop.
  virtual bool Act(HWND top) noexcept = 0;

  // Is shown a help file, named in code page 932, at a topic. False if there is nothing to show.
  virtual bool SeeHelp(const char *file, ULONG_PTR topic) noexcept = 0;
};

// Runs what opens windows, with the user before them.
void WithUser(User &user, const std::function<void()> &run);

// Empty if somebody can work windows on the program's screen, else a line that says why not. Where the platform shows
// no windows, the screen is the terminal.
std::string ScreenProblem();
// Runs what opens windows, with whoever sits before the screen. False if that user left before the end. What asks the
// program to end meanwhile ends it, when the terminal is again as it was.
bool RunOnScreen(const std::function<void()> &run);

// Runs work on a thread of its own, which nobody waits for. Throws std::system_error where the system makes none.
void RunDetached(std::function<void()> work);

// The user presses a key and lets it go again.
void PressKey(int key);

} // namespace platform

// The program itself, with its arguments in UTF-8 and without its name; the answer is its exit status.
int RunHost(const std::vector<std::string> &arguments);
