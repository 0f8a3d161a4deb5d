// What the commands' options have in common.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string>

// What a command does once its arguments are read; the answer is the exit status.
using Action = std::function<int()>;

// The client index that an option names.
CLI::Option *AddClientOption(CLI::App &command, int &client);

// An option whose text goes to the library: it must fit code page 932.
CLI::Option *AddTextOption(CLI::App &command, const std::string &name, std::string &value, const std::string &help);
