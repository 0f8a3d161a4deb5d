// Reading what stands in the registry and in files, for showing it. Texts are in the system's code page.
#pragma once

#include "win32/win32.h"

#include <optional>
#include <string>
#include <vector>

std::vector<std::string> Subkeys(HKEY root, const std::string &key);

// A value for showing: text as it is, a number in decimal, bytes in hexadecimal; nothing if there is none.
std::optional<std::string> ShownValue(HKEY root, const std::string &key, const char *valueName);

// A file's bytes; nothing if it can't be read.
std::optional<std::string> FileBytes(const std::string &path);
