// The program of a client as the registry tells of it: whether it is installed, what it is called, where it stands and
// in which version. The same for a client's mail and news adapter.
#pragma once

#include <string>

// Keys are below HKEY_LOCAL_MACHINE.
struct InstalledProgram {
  const char *name;         // what the client is shown as
  const char *file;         // the name under which the system's list of programs has it
  const char *productKey;   // the client's own key
  const char *majorVersion; // what `CurrentVersion` of the product key has to hold up to its first dot; null if any
                            // version will do

  const char *versionKey; // where the version text stands, and what it is if it can't be read
  const char *versionValue;
  const char *versionFallback;
  char versionSeparator; // between the version text's first two numbers
};

// The value that most clients keep their version in.
inline constexpr const char *CurrentVersionValue = "CurrentVersion";

// Whether both keys are there, with the program's file, in the version wanted. Keys that the user may not write count
// as missing.
bool IsInstalled(const InstalledProgram &program);

// False, with an empty text, for a program that isn't installed.
bool ReadName(const InstalledProgram &program, std::string &name);
bool ReadProgramPath(const InstalledProgram &program, std::string &path);
bool ReadVersion(const InstalledProgram &program, std::string &version);

// The first two numbers of a version text, each 0 if it isn't there.
struct VersionNumbers {
  int major;
  int minor;
};
VersionNumbers SplitVersion(const std::string &version, char separator);
