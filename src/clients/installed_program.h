// The program of a client as the registry tells of it: whether it is installed, what it is called, where it stands and
// in which version. The same for a client's mail and news adapter.
#pragma once

#include <cstdint>
#include <string>

// The system's list of mail programs, below HKEY_LOCAL_MACHINE; its default value names the default one.
inline constexpr const char *MailProgramsKey = "SOFTWARE\\Clients\\Mail";

// Keys are below HKEY_LOCAL_MACHINE.
struct InstalledProgram {
  const char *name;         // what the client is shown as
  const char *productKey;   // the client's own key
  const char *programKey;   // its entry in the system's list of programs; the default value is the program's path
  const char *majorVersion; // what `CurrentVersion` of the product key has to hold up to its first dot; null if any
                            // version will do

  const char *versionKey; // where the version text stands, and what it is if it can't be read
  const char *versionValue;
  const char *versionFallback;
};

// 1 if both keys are there, with the program's file, in the version wanted. Keys that the user may not write count as
// missing.
int32_t IsInstalled(const InstalledProgram &program);

// 1 and the text, or 0 and an empty text for a program that isn't installed.
int32_t ReadName(const InstalledProgram &program, std::string &name);
int32_t ReadProgramPath(const InstalledProgram &program, std::string &path);
int32_t ReadVersion(const InstalledProgram &program, std::string &version);
