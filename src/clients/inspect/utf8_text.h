// Texts for a reader: UTF-8, while the library, the clients and Windows have the system's code page.
#pragma once

#include "win32/win32.h"

#include <optional>
#include <string>
#include <string_view>

std::string WideToUtf8(const std::basic_string<WCHAR> &wide);

// A text of the system's code page.
std::string ToUtf8(const std::string &text);
// Bytes that a client may have written in either encoding: UTF-8 stays as it is.
std::string MixedToUtf8(const std::string &bytes);

bool IsUtf8(std::string_view bytes);

// A text for the system; nothing if it isn't UTF-8 or the code page can't hold it.
std::optional<std::string> FromUtf8(const std::string &utf8);
