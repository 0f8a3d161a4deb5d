// The program speaks UTF-8 to its user and the system's code page to the library and the platform.
#pragma once

#include "win32/win32.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

std::string WideToUtf8(const std::basic_string<WCHAR> &wide);

// A text of the system's code page for the user.
std::string ToUtf8(const std::string &text);
// The same for bytes that a client may have written in either encoding: UTF-8 stays as it is.
std::string MixedToUtf8(const std::string &bytes);

bool IsUtf8(std::string_view bytes);

// A text of the user for the system; nothing if it isn't UTF-8 or the code page can't hold it.
std::optional<std::string> FromUtf8(const std::string &utf8);

// Hands over the lines of a UTF-8 file, numbered from 1 and without their ends. Throws UsageError, which names the file
// and, of what goes wrong with a line, the line.
void ForEachLine(const std::string &path, const std::function<void(const std::string &line, size_t number)> &take);
