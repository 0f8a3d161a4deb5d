// What a comparison of two hives tells a user.
#include "win32/linux/public/registry_changes.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

std::string Shown(const std::optional<machine::RegistryData> &data) {
  return data ? std::to_string(static_cast<int>(data->kind)) + ' ' + data->shown : "none";
}

// The keys with "new" before them, and below each its values: the kind of data, and the data.
std::string Compared(const char *file, const std::optional<std::string> &before, const std::string &after) {
  const std::string head = "WINE REGISTRY Version 2\n;; All keys\n\n";
  std::string text;
  const auto keys = machine::RegistryChanges({file, before ? std::optional(head + *before) : before, head + after});
  for (const machine::RegistryKeyChange &key : keys.value()) {
    text += (key.isNew ? "new " : "") + key.path + '\n';
    for (const machine::RegistryValueChange &value : key.values)
      text += value.name + ": " + Shown(value.before) + " -> " + Shown(value.after) + '\n';
  }
  return text;
}

TEST(RegistryChangesTest, TellsKeysAndValues) {
  const std::string key = "[A\\\\B] 1\n";
  std::string bytes;
  std::string shownBytes;
  for (int count = 0; count < 32; ++count) {
    bytes += count == 20 ? "ab,\\\n  " : "ab,";
    shownBytes += "ab ";
  }
  const std::tuple<const char *, std::optional<std::string>, std::string, std::string> rows[] = {
      {"user.reg", key + "\"v\"=\"a\"\n", key + "\"v\"=\"a\"\n", ""},
      {"user.reg", key + "\"v\"=\"1\"\n", key + "\"V\"=dword:0000000a\n", "HKEY_CURRENT_USER\\A\\B\nV: 0 1 -> 1 10\n"},
      {"system.reg", std::nullopt, key + "@=\"\\x8868\\\\\"\n",
       "new HKEY_LOCAL_MACHINE\\A\\B\n(Default): none -> 0 \xE8\xA1\xA8\\\n"},
      {"user.reg", key + "\"v\"=str(2):\"%a%\"\n\n", key, "HKEY_CURRENT_USER\\A\\B\nv: 0 %a% -> none\n"},
      {"user.reg", key + "\"b\"=hex(7):" + bytes + "01\n", key + "\"b\"=hex(7):" + bytes + "02\n",
       "HKEY_CURRENT_USER\\A\\B\nb: 2 " + shownBytes + "... -> 2 " + shownBytes + "...\n"},
      // New keys may have no value; one that had no section of its own was there, and so was one with a later time.
      {"user.reg", key, key + "\n[a\\\\b\\\\C] 2\n\n[a] 2\n", "new HKEY_CURRENT_USER\\a\\b\\C\n"},
      {"user.reg", key, "[A\\\\B] 9\n#time=9\n", ""},
      {"user.reg", "[] 1\n", "[] 1\n\"v\"=\"a\"\n", "HKEY_CURRENT_USER\nv: none -> 0 a\n"},
  };
  for (const auto &[file, before, after, expected] : rows)
    EXPECT_EQ(Compared(file, before, after), expected);
  EXPECT_FALSE(machine::RegistryChanges({"C:\\user.reg", "", ""}));
}

} // namespace
