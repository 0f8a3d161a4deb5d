// service.ini, the INI file with the service's settings for the wizards, in the folder of the host's program. It is
// only read, again for each value. Texts are in the system's code page.
#pragma once

#include "win32/win32.h"

#include <cstdint>
#include <string>
#include <vector>

// Its sections: mail domains and hosts, domains of a second account, news servers.
inline constexpr const char *MailSection = "MAIL_SERVER";
inline constexpr const char *SecondMailSection = "ADDMAIL_SERVER";
inline constexpr const char *NewsSection = "NEWS_SERVER";

// The folder of the running program with its final backslash, or the whole path if it has no backslash. Always 1, even
// if the path was cut to the buffer's size.
int32_t GetProgramFolder(char *buffer, DWORD size);

// The file's path; empty, as if there were no file, if it doesn't fit into a buffer of 260 bytes.
std::string ServiceIniPath();

// Reads a value of at most 255 bytes. 0 with an empty `out` if it is missing or empty.
int32_t ReadServiceString(const std::string &iniPath, const char *section, const char *key, std::string &out);

// The domains in a section: `disp1`, `disp2` and so on, up to the number in `server_max` or the first missing one.
std::vector<std::string> ReadDomains(const char *section);
