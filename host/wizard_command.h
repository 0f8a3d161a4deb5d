// The command `wizard`, which runs one of the wizards, with a script or the terminal as its user.
#pragma once

#include "options.h"

// Adds the command. The chosen wizard goes to `action`; `writesInSteps` is set, since
// it waits for its user between them.
void AddWizardCommand(CLI::App &app, Action &action, bool &writesInSteps);
