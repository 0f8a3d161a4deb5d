// The command `wizard`, which runs one of the wizards, with a script or the terminal as its user.
#pragma once

#include "options.h"

// Adds the command. The chosen wizard goes to `action`; `waits` is set, since it waits for a user.
void AddWizardCommand(CLI::App &app, Action &action, bool &waits);
