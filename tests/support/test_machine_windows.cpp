// The Windows half: the suites may change the machine they run on as they like. Before every test the clients are
// removed from it.
#include "support/test_machine.h"

#include "support/dump.h"
#include "support/test_key.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace {

struct Tree {
  HKEY root;
  const char *key;
};

// The keys of the clients and of the tests; everything below them is removed.
const Tree Trees[] = {
    {HKEY_LOCAL_MACHINE, "Software\\AcctKitTest"},
    {HKEY_CURRENT_USER, "Software\\AcctKitTest"},
    {HKEY_LOCAL_MACHINE, "Software\\Harveld"},
    {HKEY_LOCAL_MACHINE, "Software\\Netscape"},
    {HKEY_CURRENT_USER, "Software\\Netscape"},
    {HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Outlook Express"},
    {HKEY_CURRENT_USER, "Software\\Microsoft\\Outlook Express"},
    {HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\msimn.exe"},
    {HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\NETSCAPE.EXE"},
    {HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\Netscp6.exe"},
    {HKEY_LOCAL_MACHINE, "Software\\Clients\\Mail"},
    {HKEY_LOCAL_MACHINE, "Software\\Classes\\mailto"},
    {HKEY_CURRENT_USER, "Software\\Microsoft\\Internet Account Manager"},
    {HKEY_CURRENT_USER, "Software\\Microsoft\\Internet Explorer\\Main"},
    {HKEY_CURRENT_USER, "Identities"},
};

} // namespace

void MachineTest::ResetMachine() {
  for (const Tree &tree : Trees)
    RegDeleteTreeA(tree.root, tree.key);
  for (const Tree &tree : Trees)
    RegDeleteKeyA(tree.root, tree.key);
  std::error_code error;
  std::filesystem::remove_all(L"C:\\acctkit-test", error);
  CreateDirectoryA(ScratchFolder, nullptr);
}

std::vector<std::string> DumpKey(HKEY root, const std::string &key) {
  std::vector<std::string> lines;
  HKEY handle = nullptr;
  if (RegOpenKeyExA(root, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS)
    return lines;
  const TestKey opened(handle);
  for (DWORD index = 0;; ++index) {
    char name[512];
    DWORD nameSize = sizeof name;
    DWORD type = REG_NONE;
    std::string data(4096, '\0');
    DWORD size = static_cast<DWORD>(data.size());
    if (RegEnumValueA(handle, index, name, &nameSize, nullptr, &type, reinterpret_cast<BYTE *>(data.data()), &size) !=
        ERROR_SUCCESS)
      break;
    data.resize(size);
    lines.push_back(DumpLine(name, type, data));
  }
  std::ranges::sort(lines);
  return lines;
}

void SetEnvironment(const char *name, const std::string &value) {
  SetEnvironmentVariableA(name, value.c_str());
  _putenv_s(name, value.c_str());
}
