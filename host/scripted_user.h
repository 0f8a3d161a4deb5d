// A wizard's user who does what a script says and writes a transcript of it to the standard output.
#pragma once

#include "platform.h"
#include "wizard_script.h"

#include <atomic>
#include <cstdint>
#include <memory>

class ScriptedUser : public platform::User {
public:
  explicit ScriptedUser(const WizardScript &script) : script(script) {}

  // Takes the next step. After one that fails the wizard is cancelled.
  bool Act(HWND top) noexcept override;
  bool SeeHelp(const char *file, ULONG_PTR topic) noexcept override;

  // Called with the wizard's result at its end. True if every step succeeded; otherwise the failure was printed to the
  // standard error.
  bool CheckResult(int32_t result);

private:
  void ReportNewPage(HWND top);
  void TakeStep(HWND top);
  bool IsPauseOver(const Step &step);
  bool CancelAll(HWND top); // cancels the window in front; false after too many calls
  // Prints what went wrong with the next step; the script has then failed.
  void ReportFailure(const std::string &difference);

  const WizardScript &script;
  size_t taken = 0; // steps
  HWND page = nullptr;
  std::string helpTopic = "none";
  bool failed = false;
  int cancelled = 0; // calls of CancelAll
  enum class Pause { Lasts, IsOver, HasNoEnd };
  std::shared_ptr<std::atomic<Pause>> pause; // null but during one
};
