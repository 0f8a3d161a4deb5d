// A value as DumpKey shows it.
#pragma once

#include "win32/win32.h"

#include <string>

std::string DumpLine(const std::string &name, DWORD type, const std::string &data);
