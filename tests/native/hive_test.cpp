// Hives as files: what isn't edited stays byte for byte, what is written is what Wine itself would write, and a damaged
// hive is neither read nor written.
#include "support/client_machine.h"
#include "support/handles.h"

#include "win32/linux/hive.h"
#include "win32/linux/machine.h"

#include <fstream>
#include <iterator>

namespace {

class HiveTest : public MachineTest {
protected:
  static std::filesystem::path Path(const char *name = "user.reg") { return machine::Folder() / name; }
  static void PutHive(const std::string &text) { std::ofstream(Path(), std::ios::binary) << text; }
  static std::string HiveText() {
    std::ifstream file(Path(), std::ios::binary);
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
    for (const machine::HiveValue &value : hive.Values(*key))
      hive.WriteValue(*key, value);
  }
  EXPECT_EQ(hive.Text(), WineHive);
}

TEST_F(HiveTest, TheRootHasValuesToo) {
  PutHive(Heading);
  PutDword(HKEY_CURRENT_USER, "", "v", 1);
  EXPECT_TRUE(HiveText().starts_with(Heading + "[] ")) << HiveText();
  EXPECT_EQ(GetDword(HKEY_CURRENT_USER, "", "v"), 1U);
}

TEST_F(HiveTest, WritesNothingForWhatIsThereAlready) {
  PutHive(WineHive);
  std::filesystem::create_hard_link(Path(), Path("before")); // what is written takes the place of the old file
  PutDword(HKEY_CURRENT_USER, "Software\\\x95\x5c[]", "a", 10);
  EXPECT_TRUE(std::filesystem::equivalent(Path(), Path("before")));
}

TEST_F(HiveTest, ADamagedHiveIsRefusedAndLeftAlone) {
  const struct {
    const char *name;
    std::string text;
    const char *said;
  } cases[] = {
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
  for (const auto &damaged : cases) {
    SCOPED_TRACE(damaged.name);
    ResetMachine();
    PutHive(damaged.text);
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "a", 0, KEY_READ, &key), ERROR_BADDB);
    EXPECT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "b", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_BADDB);
    EXPECT_EQ(HiveText(), damaged.text);
    const std::string fault = machine::TakeFault();
    EXPECT_EQ(fault, machine::Problem(false));
    EXPECT_TRUE(fault.starts_with(Path().string()) && fault.find(damaged.said) != std::string::npos) << fault;
  }
}

TEST_F(HiveTest, AHiveThatMayNotBeWrittenStays) {
  PutHive(WineHive);
  std::filesystem::permissions(Path(), std::filesystem::perms::owner_read);
  HKEY key = nullptr;
  EXPECT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "b", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
            ERROR_ACCESS_DENIED);
  EXPECT_EQ(HiveText(), WineHive);
  EXPECT_NE(machine::Problem(true).find("may not be written"), std::string::npos);
  EXPECT_EQ(machine::Problem(false), "");
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

} // namespace
