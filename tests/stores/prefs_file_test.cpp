// Editing prefs.js: what an edit removes and keeps, and when a file may be replaced.
#include "stores/prefs_file.h"

#include "stores/file_handle.h"
#include "support/test_machine.h"

#include <memory>
#include <tuple>

namespace {

class PrefsFileTest : public MachineTest {
protected:
  const std::string path = std::string(ScratchFolder) + "\\prefs.js";
  // On the heap, since two of these and a few frames are too much for a stack.
  std::unique_ptr<PrefsText> prefs = std::make_unique<PrefsText>();

  void Load(const std::string &bytes) {
    PutFile(path, bytes);
    LoadPrefsText(path.c_str(), *prefs);
  }
  std::string Text() const { return {prefs->text, prefs->length}; }
  std::string Saved() {
    SavePrefsText(path.c_str(), *prefs);
    return GetFile(path).value_or("(no file)");
  }
};

TEST_F(PrefsFileTest, LoadsWithOneFinalLineFeedAndSavesTheSameBytes) {
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},
      {"user_pref(\"a\", 1);", "user_pref(\"a\", 1);\n"},
      {"user_pref(\"a\", 1);\r\n// \x95\x5c\r\n", "user_pref(\"a\", 1);\r\n// \x95\x5c\r\n"},
  };
  for (const auto &[bytes, text] : cases) {
    Load(bytes);
    EXPECT_EQ(Text(), text);
    EXPECT_EQ(Saved(), text);
  }
}

TEST_F(PrefsFileTest, MakesAMissingFileEmptyAndHasNoTextWithoutAFolder) {
  LoadPrefsText(path.c_str(), *prefs);
  EXPECT_EQ(GetFile(path), "");
  const std::string nowhere = std::string(ScratchFolder) + "\\gone\\prefs.js";
  AppendPrefLine(*prefs, "old\n");
  LoadPrefsText(nowhere.c_str(), *prefs);
  EXPECT_EQ(Text(), "");
}

TEST_F(PrefsFileTest, RemovesTheFirstLineThatHoldsTheNeedle) {
  const std::tuple<std::string, std::string, std::string, int32_t> cases[] = {
      {"a\nb\nc\n", "b", "a\nc\n", 1},
      {"a\nb\n", "a", "\nb\n", 1},
      {"a\n", "a", "\n", 1},
      {"a\nb\n", "x", "a\nb\n", 0},
      {"a\r\nxbx\r\nc\r\n", "b", "a\r\nc\r\n", 1},
      {"1\nkey\n2\nkey\n", "key", "1\n2\nkey\n", 1},
      {"1\nserver10.name\nserver1.name\n", "server1.name", "1\nserver10.name\n", 1},
      {"1\n" + std::string(1023, '.') + "key\n2\n", "key", "1\n2\n", 1},
      {"1\n" + std::string(1024, '.') + "key\n2\n", "key", "1\n\n2\n", 1},
      {"1\n" + std::string(1025, '.') + "key\n2\n", "key", "1\n" + std::string(1025, '.') + "key\n2\n", 0},
      {std::string(1024, '.') + "key\n2\n", "key", "\n2\n", 1},
  };
  for (const auto &[before, needle, after, result] : cases) {
    Load(before);
    EXPECT_EQ(RemovePrefLine(needle.c_str(), *prefs), result);
    EXPECT_EQ(Text(), after) << "needle " << needle;
    EXPECT_EQ(Saved(), after);
  }
}

TEST_F(PrefsFileTest, InsertsALineBehindTheLineOfTheNeedle) {
  Load("1\nkey a\nkey b\n");
  EXPECT_EQ(InsertPrefLine("key", *prefs, "new\n"), 1);
  EXPECT_EQ(InsertPrefLine("none", *prefs, "new\n"), 0);
  EXPECT_EQ(Text(), "1\nkey a\nnew\nkey b\n");
  Load(std::string(PrefsCapacity - 2, 'x') + "\n");
  EXPECT_EQ(InsertPrefLine("x", *prefs, "ab\n"), 1);
  EXPECT_EQ(Saved(), std::string(PrefsCapacity - 2, 'x') + "\n");
}

TEST_F(PrefsFileTest, TakesALineOnlyIfItFitsTheBuffer) {
  char keep[8];
  Load("1\nuser 12345\n2\n");
  EXPECT_EQ(TakePrefLine("ser", *prefs, keep, sizeof keep), 0);
  EXPECT_EQ(Text(), "1\nuser 12345\n2\n");
  EXPECT_EQ(TakePrefLine(" 12345", *prefs, keep, sizeof keep), 1);
  EXPECT_STREQ(keep, " 12345");
  EXPECT_EQ(Text(), "1\n2\n");
}

TEST_F(PrefsFileTest, LeavesAFileAloneThatItCannotHoldWhole) {
  const std::string full(PrefsCapacity - 1, 'x');
  Load(full + "\n");
  EXPECT_EQ(Saved(), full + "\n");
  AppendPrefLine(*prefs, "\n");
  EXPECT_EQ(Text(), full + "\n");
  for (const std::string &bytes :
       {full + "\n\n", full + "x", std::string("a\n\0b\n", 5), std::string("a\0b\n", 4), std::string("\0b\n", 3)}) {
    Load(bytes);
    RemovePrefLine("b", *prefs);
    RemovePrefLine("a", *prefs);
    RemovePrefLine("x", *prefs);
    EXPECT_EQ(Saved(), bytes);
  }
}

TEST_F(PrefsFileTest, LeavesAFileAloneThatSomebodyHoldsOpenDuringTheLoad) {
  PutFile(path, "theirs\n");
  FileHandle held = OpenFileAlone(path.c_str(), GENERIC_READ, OPEN_EXISTING);
  LoadPrefsText(path.c_str(), *prefs);
  held.Close();
  AppendPrefLine(*prefs, "ours\n");
  EXPECT_EQ(Saved(), "theirs\n");
}

TEST_F(PrefsFileTest, ReadsTheQuotedValueBehindAKey) {
  Load("user_pref(\"flag\", true);\nuser_pref(\"name\", \"\x95\x5c\");\nuser_pref(\"none\", "
       "\"\");\nuser_pref(\"long\", \"" +
       std::string(260, 'v') + "\");\nuser_pref(\"open\", \"");
  const std::pair<const char *, const char *> cases[] = {{"name", "\x95\x5c"}, {"none", ""}, {"flag", "name"}};
  char value[PrefValueSize];
  for (const auto &[key, expected] : cases) {
    EXPECT_EQ(ReadPrefValue(key, *prefs, value, sizeof value), 1) << key;
    EXPECT_STREQ(value, expected);
  }
  for (const char *key : {"missing", "long", "open"}) {
    EXPECT_EQ(ReadPrefValue(key, *prefs, value, sizeof value), 0) << key;
    EXPECT_STREQ(value, "");
  }
  EXPECT_EQ(FindPrefValue("long", *prefs), std::string(260, 'v'));
}

TEST(PrefLists, CountAndGiveItems) {
  EXPECT_EQ(CountListItems(""), 1);
  EXPECT_EQ(CountListItems("account1,account2"), 2);
  const std::string tooLong = "a," + std::string(PrefValueSize, 'b') + ",";
  const std::tuple<const char *, int32_t, int32_t, const char *> cases[] = {
      {"a,b", 1, 1, "b"}, {"a,b", 0, 1, "a"},          {"", 0, 1, ""},     {"", 1, 0, "?"},
      {"a,b", 2, 0, "?"}, {tooLong.c_str(), 1, 0, ""}, {"a,,b", 1, 1, ""}, {tooLong.c_str(), 2, 1, ""}};
  for (const auto &[list, index, result, expected] : cases) {
    char item[PrefValueSize] = "?";
    EXPECT_EQ(GetListItem(list, index, item, sizeof item), result) << list << index;
    EXPECT_STREQ(item, expected);
  }
}

TEST(PrefValues, ConvertToUtf8WholeOrNotAtAll) {
  char value[PrefValueSize];
  EXPECT_EQ(ToUtf8Value("\x95\x5c \xb1", value), 1); // a character with the byte of the backslash, half-width kana
  EXPECT_STREQ(value, "\xe8\xa1\xa8 \xef\xbd\xb1");
  std::string halfWidth(86, '\xb1');
  EXPECT_EQ(ToUtf8Value(halfWidth.c_str(), value), 1);
  halfWidth += '\xb1'; // now 261 bytes of UTF-8
  EXPECT_EQ(ToUtf8Value(halfWidth.c_str(), value), 0);
  EXPECT_STREQ(value, "");
  EXPECT_EQ(ToUtf8Value(std::string(260, 'a').c_str(), value), 0);
}

} // namespace
