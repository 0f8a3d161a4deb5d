// What the adapters ask about files of the machine.
#pragma once

#include <cstdint>
#include <string>

// 1 if the path names an existing file or folder; wildcards in its last name match.
int32_t PathExists(const char *path);

// The text `ProductVersion` of the file's version resource, in its own language and code page, else in Japanese or US
// English. 0, with `out` as it was, for a file without one.
int32_t GetProductVersion(const char *path, std::string &out);
