// The commands that look for and write one account: `mail exists`, `mail set`, `news exists`, `news set`.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>

// What a command does once its arguments are read; the answer is the exit status.
using Action = std::function<int()>;

// Adds both groups of commands. The chosen one goes to `action`, and whether it writes to `writes`.
void AddAccountCommands(CLI::App &app, Action &action, bool &writes);

// The client index that an option names.
CLI::Option *AddClientOption(CLI::App &command, int &client);

// An option whose text goes to the library: it must fit code page 932.
CLI::Option *AddTextOption(CLI::App &command, const std::string &name, std::string &value, const std::string &help);
