// A machine that a test has for itself, and short ways to put keys and files on it through the platform's own calls.
// Paths and texts are code page 932, as in the calls. A helper that fails fails the test, which goes on.
#pragma once

#include "win32/win32.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

// A base for fixtures. Every test starts on a machine without any client: natively in a machine folder of its own,
// under Windows after the clients' keys and C:\acctkit-test have been removed from the (disposable) machine it runs on.
class MachineTest : public ::testing::Test {
protected:
  void SetUp() override { ResetMachine(); }

  static void ResetMachine();
};

// The scratch folder that every machine has: "C:\acctkit-test".
extern const char *const ScratchFolder;

// Below the registry key tests may use freely: "Software\AcctKitTest" under either root.
extern const char *const ScratchKey;

// ---- The registry ----

void PutString(HKEY root, const std::string &key, const char *valueName, const std::string &text);
void PutDword(HKEY root, const std::string &key, const char *valueName, DWORD number);
void PutValue(HKEY root, const std::string &key, const char *valueName, DWORD type, const std::string &data);
void MakeKey(HKEY root, const std::string &key);
bool KeyThere(HKEY root, const std::string &key);
// Text without its terminator; nothing for a missing value or one that isn't REG_SZ.
std::optional<std::string> GetString(HKEY root, const std::string &key, const char *valueName);
std::optional<DWORD> GetDword(HKEY root, const std::string &key, const char *valueName);
// Every value of a key, sorted by name, a line each: `name=text` for REG_SZ, `name:type=hex` for the other types.
std::vector<std::string> DumpKey(HKEY root, const std::string &key);
// Makes a key that can be read but not written, with all the keys below it.
void MakeKeyReadOnly(HKEY root, const std::string &key);

// ---- Files ----

// Makes every missing folder on the way.
void MakeFolders(const std::string &path);
void PutFile(const std::string &path, const std::string &bytes);
// The bytes of a file; nothing if it isn't there.
std::optional<std::string> GetFile(const std::string &path);
// Makes a loadable library or another file of the build (named by its path outside the machine) a file of the machine.
void CopyOntoMachine(const std::string &buildFile, const std::string &path);

// ---- Environment ----

void SetEnvironment(const char *name, const std::string &value);
