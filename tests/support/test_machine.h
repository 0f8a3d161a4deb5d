// A machine for one test alone, and short ways to put keys and files on it by the platform's own calls. Paths and texts
// are code page 932, as in these calls. If a helper fails, the test fails and goes on.
#pragma once

#include "win32/win32.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

// The base of fixtures. Every test starts on a machine without clients: natively in its own machine folder; on Windows
// on the (disposable) machine it runs on, after the clients' keys and C:\acctkit-test were removed.
class MachineTest : public ::testing::Test {
protected:
  void SetUp() override { ResetMachine(); }

  static void ResetMachine();
};

// The scratch folder that every machine has: "C:\acctkit-test".
extern const char *const ScratchFolder;

// The registry key that tests may use freely: "Software\AcctKitTest" below either root.
extern const char *const ScratchKey;

// ---- The registry ----

void PutString(HKEY root, const std::string &key, const char *valueName, const std::string &text);
void PutDword(HKEY root, const std::string &key, const char *valueName, DWORD number);
void PutValue(HKEY root, const std::string &key, const char *valueName, DWORD type, const std::string &data);
void MakeKey(HKEY root, const std::string &key);
bool KeyThere(HKEY root, const std::string &key);
// A text without its terminator; nothing if the value is missing or isn't REG_SZ.
std::optional<std::string> GetString(HKEY root, const std::string &key, const char *valueName);
std::optional<DWORD> GetDword(HKEY root, const std::string &key, const char *valueName);
// Every value of a key, sorted by name, one line each: `name=text` for REG_SZ, `name:type=hex` for the other types.
std::vector<std::string> DumpKey(HKEY root, const std::string &key);

// ---- Files ----

// Makes every missing folder of the path.
void MakeFolders(const std::string &path);
void PutFile(const std::string &path, const std::string &bytes);
// The bytes of a file; nothing if it doesn't exist.
std::optional<std::string> GetFile(const std::string &path);
// Copies a loadable library or another file of the build onto the machine; `buildFile` is its path outside the machine.
void CopyOntoMachine(const std::string &buildFile, const std::string &path);

// ---- Environment ----

void SetEnvironment(const char *name, const std::string &value);
