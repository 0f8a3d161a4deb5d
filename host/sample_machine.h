// A sample machine: the registry entries and files of installed clients, with something of the user's in each.
#pragma once

#include <string>
#include <vector>

// The names that `machine new --with` takes.
extern const std::vector<std::string> SampleClients;

// Enters the named clients into the machine. A line that says why it couldn't, or an empty text.
std::string InstallSamples(const std::vector<std::string> &clients);
