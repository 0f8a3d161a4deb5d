// The program speaks UTF-8 to its user and the system's code page to the library and the platform.
#pragma once

#include "clients/inspect/utf8_text.h"

#include <functional>
#include <string>

// Hands over the lines of a UTF-8 file, numbered from 1 and without their ends. Throws UsageError, which names the file
// and, of what goes wrong with a line, the line.
void ForEachLine(const std::string &path, const std::function<void(const std::string &line, size_t number)> &take);
