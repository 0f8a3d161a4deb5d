// The commands that look for and write one account: `mail exists`, `mail set`, `news exists`, `news set`.
#pragma once

#include "options.h"

// Adds both groups of commands. The chosen one goes to `action`, and whether it writes to `writes`.
void AddAccountCommands(CLI::App &app, Action &action, bool &writes);
