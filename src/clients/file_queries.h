// What the adapters ask about files of the machine.
#pragma once

#include <cstdint>
#include <string>

// Whether the path names an existing file or folder; wildcards in its last name match.
bool PathExists(const char *path);
// Whether it certainly names none. Both are false if that can't be found out, as in a folder that the user may not
// read.
bool PathIsMissing(const char *path);

// Reads the text `ProductVersion` of the file's version resource, in its own language and code page, else in Japanese
// or US English. 1, or 0 with `out` as it was for a file without one.
int32_t GetProductVersion(const char *path, std::string &out);
