// Keys and values of Windows itself that the clients' adapters and descriptions use.
#pragma once

#include "clients/format.h"

#include <string>

// ---- Below HKEY_LOCAL_MACHINE ----

// The list of mail programs; its default value names the default one.
inline constexpr const char *MailProgramsKey = "SOFTWARE\\Clients\\Mail";
inline std::string MailProgramKey(const std::string &name) { return Below(MailProgramsKey, name); }

// What starts a program, below ClassesKey or a mail program's key; for the protocol mailto it stands below ClassesKey
// or the protocols of a mail program.
inline constexpr const char *ClassesKey = "SOFTWARE\\Classes";
inline constexpr const char *ProtocolsKey = "\\Protocols";
inline constexpr const char *OpenCommandKey = "\\shell\\open\\command";
inline constexpr const char *MailtoKey = "\\mailto";
inline constexpr const char *MailtoCommandKey = "\\mailto\\shell\\open\\command";
inline constexpr const char *MailtoIconKey = "\\mailto\\DefaultIcon";
inline constexpr const char *UrlProtocolValue = "URL Protocol";
inline constexpr const char *EditFlagsValue = "EditFlags";

inline constexpr const char *WindowsKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
inline constexpr const char *ProgramFilesValue = "ProgramFilesDir";

// A program's entry in the list of programs; its default value is the program's path.
inline std::string ProgramKey(const std::string &file) { return Format("%s\\App Paths\\%s", WindowsKey, file); }

// ---- Below HKEY_CURRENT_USER ----

#define EXPLORER_KEY "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\"
inline constexpr const char *ShellFoldersKey = EXPLORER_KEY "Shell Folders";
inline constexpr const char *UserShellFoldersKey = EXPLORER_KEY "User Shell Folders";
#undef EXPLORER_KEY
inline constexpr const char *AppDataValue = "AppData";
