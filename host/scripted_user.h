// The user of a wizard who does what a script says, and writes down on the standard output what comes up.
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

  // Once the wizard has ended with a result: whether all went as the script says. What didn't is told in a line on the
  // standard error output.
  bool IsContent(int32_t result);

private:
  void NoticePage(HWND top);
  void TakeStep(HWND top);
  bool IsPauseOver(const Step &step);
  bool Leave(HWND top);
  // Once, of the step that is next.
  void Complain(const std::string &difference);

  const WizardScript &script;
  size_t taken = 0; // steps
  HWND page = nullptr;
  std::string helpTopic = "none";
  bool complained = false;
  int leaving = 0;
  enum class Pause { Lasts, IsOver, HasNoEnd };
  std::shared_ptr<std::atomic<Pause>> pause; // null but during one
};
