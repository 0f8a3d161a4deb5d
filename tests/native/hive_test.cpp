// Hives as files: what isn't edited stays byte for byte, what is written is what Wine itself would write, and a damaged
// hive is neither read nor written.
#include "hooks/hive_hooks.h"
#include "support/client_machine.h"
#include "support/test_key.h"

#include "clients/registry_key.h"
#include "win32/linux/machine/hive.h"
#include "win32/linux/public/machine.h"
#include "win32/linux/text/code_page.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <tuple>

namespace {

class HiveTest : public MachineTest {
protected:
  static std::filesystem::path Path(const char *name = "user.reg") { return machine::Folder() / name; }
  static void PutHive(const std::string &text) { std::ofstream(Path(), std::ios::binary) << text; }
  static std::string HiveText(const char *name = "user.reg") {
    std::ifstream file(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
};

const std::string Heading = "WINE REGISTRY Version 2\n";

// As Wine wrote it, with all that the layer has no use for.
const std::string WineHive = Heading + R"(;; All keys relative to REGISTRY\\User\\S-1-5-21-0-0-0-1000

#arch=win64

[] 1795540231
#time=1dd7c36b564451e
"Of the root"="text"

[Control Panel\\Desktop] 1795540230
#time=1dd7c36b564451e
#class="Shell"
@="default"
"Expanded"=str(2):"%SystemRoot%\\a"
"List"=str(7):"one\0two\0"
"Odd"=hex(6):5c,00,52,00
"Mask"=hex:90,12,03,80,10,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,\
  00,00,00,00,01,02,03
"Strange type"=hex(100b8):01
"Text"="\x8868\x793a \"quoted\" \\ tab\t \xe9\x00e9a"

; somebody's own line
[Software\\Link] 1
#link
"SymbolicLinkValue"=hex(6):41,00

[Software\\\x8868[\]] 1
"a"=dword:0000000a

[Control Panel\\Desktop] 2
"Again"="in a second section"
)";

TEST_F(HiveTest, KeepsEveryByteThatIsNotEdited) {
  PutHive(WineHive);
  PutDword(HKEY_CURRENT_USER, "software\\\x95\x5c[]", "A", 11);
  PutString(HKEY_CURRENT_USER, "CONTROL PANEL\\desktop", "New", "\x95\x5c \"\\\t");
  std::string expected = WineHive;
  expected.replace(expected.find("0000000a"), 8, "0000000b");
  EXPECT_EQ(HiveText(), expected + "\"New\"=\"\\x8868 \\\"\\\\\\t\"\n");
}

// Rewriting a value as it is gives the lines that Wine wrote.
TEST_F(HiveTest, WritesValuesAsWineDoes) {
  machine::Hive hive;
  ASSERT_EQ(hive.Load(WineHive), "");
  for (const char16_t *path : {u"", u"Control Panel\\Desktop", u"Software\\\u8868[]", u"Software\\Link"}) {
    machine::Hive::Key *const key = hive.Find(hive.Root(), path);
    ASSERT_NE(key, nullptr);
    for (const machine::HiveValue &value : machine::HiveHooks::Values(hive, *key))
      hive.WriteValue(*key, value);
  }
  EXPECT_EQ(hive.Text(), WineHive);
}

// Wine has one section for a key, and its subkeys together. Who edits a hive may put anything anywhere.
TEST_F(HiveTest, FindsKeysWhereverTheirSectionsAre) {
  machine::Hive hive;
  ASSERT_EQ(hive.Load(Heading + R"([b\\X\\y]
"v"="first"
[A\\z]
[B\\x]
[\x62\\x\\Y]
"V"="last"
"w"="other"
[]
"v"="root"
[B c]
[b\\w\\y]
)"),
            "");
  const auto subkeys = [&](const char16_t *path) {
    std::u16string names;
    machine::Hive::Key *const key = hive.Find(hive.Root(), path);
    for (size_t index = 0; key->Subkey(index) != nullptr; ++index)
      names += key->Subkey(index)->name + u',';
    return names;
  };
  EXPECT_EQ(subkeys(u""), u"A,b,B c,");
  EXPECT_EQ(subkeys(u"B"), u"w,X,");
  EXPECT_EQ(subkeys(u"b\\x"), u"y,");
  std::u16string values;
  for (const char16_t *path : {u"", u"B\\X\\Y"})
    for (const machine::HiveValue &value : machine::HiveHooks::Values(hive, *hive.Find(hive.Root(), path)))
      values += value.name + u'=' + text::WideOf(value.data).c_str() + u',';
  EXPECT_EQ(values, u"v=root,V=last,V=last,w=other,");
}

TEST_F(HiveTest, WritesNothingForWhatIsThereAlready) {
  PutHive(WineHive);
  std::filesystem::create_hard_link(Path(), Path("before")); // what is written takes the place of the old file
  PutDword(HKEY_CURRENT_USER, "Software\\\x95\x5c[]", "a", 10);
  EXPECT_TRUE(std::filesystem::equivalent(Path(), Path("before")));
}

TEST_F(HiveTest, ADamagedHiveIsRefusedAndLeftAlone) {
  const std::tuple<const char *, std::string, const char *> cases[] = {
      {"empty", "", "line 1: no registry file"},
      {"another file", "REGEDIT4\n[a]\n", "line 1: no registry file"},
      {"cut within a line", WineHive.substr(0, 300), "the file ends within a line"},
      {"zero byte", Heading + std::string("[a] 1\n\"b\"=\"\0\"\n", 13), "line 3: a zero byte"},
      {"heading without its end", Heading + "[a\\\\b\n", "line 2: a key's heading without its end"},
      {"backslash within a name", Heading + "[a\\x5c]\n", "line 2: a key's name that can't be read"},
      {"empty name", Heading + "[a\\\\\\\\b]\n", "line 2: a key's name that can't be read"},
      {"value without its end", Heading + "[a]\n\"b=1\n", "line 3: a value that can't be read"},
      {"hexadecimal that goes nowhere", Heading + "[a]\n\"b\"=hex:01,\\\n", "line 3: a value that can't be read"},
      {"rubbish", Heading + "[a]\nrubbish\n", "line 3: neither a key nor a value"},
  };
  for (const auto &[name, text, said] : cases) {
    SCOPED_TRACE(name);
    ResetMachine();
    PutHive(text);
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "a", 0, KEY_READ, &key), ERROR_BADDB);
    EXPECT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "b", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_BADDB);
    EXPECT_EQ(HiveText(), text);
    const std::string fault = machine::TakeFault();
    EXPECT_EQ(fault, machine::FindFault(false));
    EXPECT_TRUE(fault.starts_with(Path().string()) && fault.find(said) != std::string::npos) << fault;
  }
}

TEST_F(HiveTest, AHiveThatMayNotBeWrittenStays) {
  PutHive(WineHive);
  std::filesystem::permissions(Path(), std::filesystem::perms::owner_read);
  HKEY key = nullptr;
  EXPECT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "b", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
            ERROR_ACCESS_DENIED);
  EXPECT_EQ(HiveText(), WineHive);
  EXPECT_NE(machine::FindFault(true).find("may not be written"), std::string::npos);
  EXPECT_EQ(machine::FindFault(false), "");
}

// The mode of the hive stands for the rights to its keys.
TEST_F(HiveTest, RegistryKeyOpensNoKeyThatMayNotBeWritten) {
  const char *const key = ScratchKey;
  PutString(HKEY_LOCAL_MACHINE, key, "v", "text");
  std::filesystem::permissions(Path("system.reg"), std::filesystem::perms::owner_read);
  RegistryKey registry;
  std::string text;
  EXPECT_EQ(registry.KeyExists(HKEY_LOCAL_MACHINE, key), 0);
  EXPECT_EQ(registry.Status(), ERROR_ACCESS_DENIED);
  EXPECT_EQ(ReadTextFullAccess(HKEY_LOCAL_MACHINE, key, "v"), std::nullopt);
  EXPECT_EQ(registry.WriteValue(HKEY_LOCAL_MACHINE, key, "v", REG_SZ, "other", 5), 0);
  EXPECT_EQ(KeyReadable(HKEY_LOCAL_MACHINE, key), 1);
  EXPECT_EQ(ReadStringValue(HKEY_LOCAL_MACHINE, key, "v", text), 1);
  EXPECT_EQ(WriteStringValue(HKEY_LOCAL_MACHINE, key, "v", "other"), 0);
}

// An open key goes on with what somebody else wrote meanwhile.
TEST_F(HiveTest, SeesWhatOthersWrite) {
  PutHive(WineHive);
  HKEY opened = nullptr;
  ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Control Panel\\Desktop", 0, KEY_READ, &opened), ERROR_SUCCESS);
  const TestKey key(opened);
  std::string other = WineHive;
  other.replace(other.find("in a second"), 4, "from");
  PutHive(other + "\n");
  char text[64] = "";
  DWORD size = sizeof text;
  EXPECT_EQ(RegQueryValueExA(opened, "Again", nullptr, nullptr, reinterpret_cast<BYTE *>(text), &size), ERROR_SUCCESS);
  EXPECT_STREQ(text, "from second section");
  PutHive(Heading);
  EXPECT_NE(RegQueryValueExA(opened, "Again", nullptr, nullptr, reinterpret_cast<BYTE *>(text), &size), ERROR_SUCCESS);
}

// What HKEY_LOCAL_MACHINE is in a 64-bit prefix of Wine, which makes the links.
std::string Link(const std::string &key, const std::string &target) {
  std::string text = '[' + key + "] 1\n#link\n\"SymbolicLinkValue\"=hex(6):";
  for (const char letter : "\\Registry\\Machine\\" + target) {
    char pair[8];
    std::snprintf(pair, sizeof pair, "%02x,00,", static_cast<unsigned>(letter));
    text += letter != '\0' ? pair : "";
  }
  text.back() = '\n';
  return text;
}
const std::string Unlinked = Heading + R"(#arch=win64
[Software\\Classes\\Wow6432Node\\CLSID] 1
[Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\there.exe] 1
"Number"=dword:00000007
[Software\\Wow6432Node\\Netscape] 1
)";
const std::string Linked = Unlinked + Link(R"(Software\\Wow6432Node\\Classes)", R"(Software\Classes\Wow6432Node)") +
                           Link(R"(Software\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\App Paths)",
                                R"(Software\Microsoft\Windows\CurrentVersion\App Paths)");

// Where in its file the key is that a caller makes, or finds.
TEST_F(HiveTest, A64BitSystemIsSeenAsBy32BitProcesses) {
  const std::string otherArch = Heading + "#arch=win32\n[Software\\\\Wow6432Node] 1\n";
  const std::string noNode = Heading + "#arch=win64\n[Software\\\\Netscape] 1\n\"Number\"=dword:00000007\n";
#define APP_PATHS "Microsoft\\Windows\\CurrentVersion\\App Paths\\"
  const std::tuple<const std::string &, const char *, const char *, const char16_t *> cases[] = {
      {Linked, "SOFTWARE\\netscape", "x", u"Software\\Wow6432Node\\Netscape\\x"},
      {Linked, "Software", "New\\x", u"Software\\Wow6432Node\\New\\x"},
      {Linked, "", "Software\\" APP_PATHS "x.exe", u"Software\\" APP_PATHS "x.exe"},
      {Linked, "", "Software\\Microsoft\\Windows\\CurrentVersion\\App Pathsx",
       u"Software\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\App Pathsx"},
      {Linked, "Software", APP_PATHS "x.exe", u"Software\\" APP_PATHS "x.exe"},
      {Linked, "Software\\Wow6432Node", APP_PATHS "x.exe", u"Software\\" APP_PATHS "x.exe"},
      {Linked, "", "Software\\wow6432node\\x\\y", u"Software\\Wow6432Node\\x\\y"},
      {Linked, "", "Software\\Wow6432Nodes\\x", u"Software\\Wow6432Node\\Wow6432Nodes\\x"},
      {Linked, "", "System\\x", u"System\\x"},
      {Linked, "", "Software\\Classes\\x", u"Software\\Classes\\x"},
      {Linked, "Software\\Classes", "clsid\\x", u"Software\\Classes\\Wow6432Node\\CLSID\\x"},
      {Linked, "Software\\Wow6432Node\\Classes", "x", u"Software\\Classes\\x"},
      {Unlinked, "Software", APP_PATHS "there.exe", u"Software\\" APP_PATHS "there.exe"},
      {Unlinked, "Software", APP_PATHS "x.exe", u"Software\\Wow6432Node\\" APP_PATHS "x.exe"},
      {noNode, "", "Software\\Netscape", u"Software\\Wow6432Node\\Netscape"},
      {otherArch, "", "Software\\Netscape", u"Software\\Netscape"},
      {Heading, "", "Software\\Netscape", u"Software\\Netscape"},
  };
  for (const auto &[text, from, below, place] : cases) {
    SCOPED_TRACE(std::string(from) + " and " + below);
    ResetMachine();
    std::ofstream(Path("system.reg"), std::ios::binary) << text;
    HKEY opened = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, from, 0, KEY_READ, &opened), ERROR_SUCCESS);
    PutDword(opened, below, "Mark", 1);
    EXPECT_EQ(GetDword(opened, below, "Mark"), 1U);
    RegCloseKey(opened);
    machine::Hive hive;
    ASSERT_EQ(hive.Load(HiveText("system.reg")), "");
    const machine::Hive::Key *const key = hive.Find(hive.Root(), place);
    machine::HiveValue value;
    EXPECT_TRUE(key != nullptr && hive.ReadValue(*key, u"Mark", value) == machine::Hive::Found::Yes);
  }
}

} // namespace
