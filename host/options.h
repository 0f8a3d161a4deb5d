// What the commands and their options have in common.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <utility>

// How a command ended: its exit status, and a text that says so, unless something went wrong beneath its calls.
struct Outcome {
  Outcome(int itsStatus, std::string itsText = "") : status(itsStatus), text(std::move(itsText)) {}

  int status;
  std::string text;
};

// What a command does once its arguments are read.
using Action = std::function<Outcome()>;

// The client index that an option names.
CLI::Option *AddClientOption(CLI::App &command, int &client);

// An option whose text goes to the library: it must fit code page 932.
CLI::Option *AddTextOption(CLI::App &command, const std::string &name, std::string &value, const std::string &help);
