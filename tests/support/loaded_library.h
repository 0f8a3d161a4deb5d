// The library as a host that has only its file loads it.
#pragma once

#include "win32/win32.h"

#include <cstddef>
#include <vector>

// Loads a file of the build, named by its path outside the machine; FreeLibrary lets it go. Null if it can't be loaded.
HMODULE LoadFromBuild(const char *path);
// Whether the process still has that file in its memory.
bool IsInMemory(const char *path);
// How many the process has of what it has few of.
std::vector<size_t> CountHandles();
