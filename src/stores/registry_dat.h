// What ProfileRegistry leaves alone in a registry.dat: the header, which the client makes and keeps.
#pragma once

#include <string>

// A file with a header and the root key alone.
std::string NewRegistryDat();

// Enters the file's length into its header, as the client does when it closes the file.
void EnterLength(std::string &file);
