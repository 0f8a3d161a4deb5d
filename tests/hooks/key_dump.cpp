// The native half of test_machine.h's dump: the layer has no call that goes through the values of a key.
#include "hooks/hive_hooks.h"
#include "support/dump.h"
#include "support/test_machine.h"
#include "win32/linux/machine/wow64.h"
#include "win32/linux/public/machine.h"
#include "win32/linux/text/code_page.h"

#include <algorithm>

std::vector<std::string> DumpKey(HKEY root, const std::string &key) {
  const bool user = root == HKEY_CURRENT_USER;
  machine::HiveFile file(machine::Folder() / (user ? "user.reg" : "system.reg"),
                         user ? "" : machine::HiveFile::LocalMachineRoot);
  std::vector<std::string> lines;
  if (file.Refresh() != ERROR_SUCCESS)
    return lines;
  const std::u16string path = text::ToWide(key);
  const machine::Reached reached = machine::Reach(file, file.Content().Root(), path);
  if (!reached.rest.empty())
    return lines;
  for (const auto &[name, type, data] : machine::HiveHooks::Values(file.Content(), *reached.key))
    lines.push_back(
        DumpLine(text::FromWide(name), type, machine::IsText(type) ? text::FromWide(text::WideOf(data)) : data));
  std::ranges::sort(lines);
  return lines;
}
