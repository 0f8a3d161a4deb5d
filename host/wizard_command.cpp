#include "wizard_command.h"

#include "acctkit/acctkit.h"
#include "scripted_user.h"
#include "usage.h"
#include "utf8.h"

#include <memory>
#include <sstream>

namespace {

// What the host hands over, in the system's code page.
struct Handed {
  std::string id;
  std::string ids; // one behind the other, each with its terminator; the list's own is the string's
};

struct Wizard {
  const char *name;
  const char *help;
  bool takesId;
  bool takesIds;
  int32_t (*run)(const Handed &handed);
};
constexpr Wizard Wizards[] = {
    {"mailer", "Sets up the service's mail account", true, true,
     [](const Handed &handed) { return MailerWizard(0, handed.id.c_str(), handed.ids.c_str()); }},
    {"second", "Sets up a second mail account", false, false, [](const Handed &) { return MailerWizard2(); }},
    {"news", "Sets up the service's news servers", true, true,
     [](const Handed &handed) { return NewsWizard(0, handed.id.c_str(), handed.ids.c_str()); }},
    {"original", "Sets up a mail account of the original-domain service", false, false,
     [](const Handed &) { return KERMWizard(); }},
    {"short", "Sets up a mail account in two pages", true, false,
     [](const Handed &handed) { return ShortMailWizard(0, handed.id.c_str()); }},
};

// The list as the exports take it, from one with commas.
std::string IdList(const std::string &ids) {
  std::string list;
  std::istringstream left(ids);
  for (std::string id; std::getline(left, id, ',');) {
    if (id.empty())
      throw UsageError("--ids: an ID is empty");
    list.append(id).append(1, '\0');
  }
  return list;
}

int RunScript(const Wizard &wizard, const Handed &handed, const WizardScript &script) {
  ScriptedUser user(script);
  int32_t result = 0;
  platform::WithUser(user, [&] { result = wizard.run(handed); });
  return user.CheckResult(result) ? 0 : 1;
}

int RunOnScreen(const Wizard &wizard, const Handed &handed) {
  int32_t result = 0;
  const bool stayed = platform::RunOnScreen([&] { result = wizard.run(handed); });
  return stayed && result == 1 ? 0 : 1;
}

void AddWizard(CLI::App &group, const Wizard &wizard, Action &action, bool &writesInSteps) {
  CLI::App *const command = group.add_subcommand(wizard.name, wizard.help);
  const auto handed = std::make_shared<Handed>();
  const auto file = std::make_shared<std::string>();
  if (wizard.takesId)
    AddTextOption(*command, "--id", handed->id, "the subscriber's ID to start with");
  if (wizard.takesIds)
    AddTextOption(*command, "--ids", handed->ids,
                  "all of the subscriber's IDs, with commas between them; the one to start with if left out");
  command->add_option("--script", *file, "what the user does, a step a line, in place of a user")->type_name("FILE");
  command->callback([&wizard, &action, &writesInSteps, handed, file] {
    handed->ids = handed->ids.empty() ? handed->id + '\0' : IdList(handed->ids);
    writesInSteps = true;
    if (!file->empty()) {
      const auto script = std::make_shared<WizardScript>(ReadWizardScript(*file));
      action = [&wizard, handed, script] { return RunScript(wizard, *handed, *script); };
    } else if (const std::string fault = platform::ScreenFault(); !fault.empty()) {
      throw UsageError(fault);
    } else {
      action = [&wizard, handed] { return RunOnScreen(wizard, *handed); };
    }
  });
}

} // namespace

void AddWizardCommand(CLI::App &app, Action &action, bool &writesInSteps) {
  CLI::App *const group = app.add_subcommand("wizard", "Runs a wizard");
  group->require_subcommand(1);
  for (const Wizard &wizard : Wizards)
    AddWizard(*group, wizard, action, writesInSteps);
}
