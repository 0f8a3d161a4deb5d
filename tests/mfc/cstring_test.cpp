// The string's operations on texts in code page 932, where the second byte of a character can be that of a letter or a
// sign.
#include "mfc/cstring.h"

#include <gtest/gtest.h>

namespace {

#define WIDE_SPACE "\x81\x40" // its second byte is an at sign
#define KANA "\x83\x61"       // its second byte is 'a'

TEST(CStringTest, ChangesOnlyLettersOfOneByte) {
  CString text = "aZ" KANA "-z\x83";
  text.MakeUpper();
  EXPECT_EQ(text, "AZ" KANA "-Z\x83");
  text = "Az@\x83\x41[Q";
  text.MakeLower();
  EXPECT_EQ(text, "az@\x83\x41[q");
}

TEST(CStringTest, TrimsWhiteSpaceOfOneByteAtTheEnd) {
  const std::pair<CString, CString> cases[] = {
      {" a b \t\r\n", " a b"}, {"a" WIDE_SPACE " ", "a" WIDE_SPACE}, {" \v\f", ""}, {"", ""}};
  for (const auto &[whole, trimmed] : cases) {
    CString text = whole;
    text.TrimRight();
    EXPECT_EQ(text, trimmed);
  }
}

TEST(CStringTest, FindsOnlyWholeCharacters) {
  EXPECT_EQ(CString("a@b@").Find("@"), 1);
  EXPECT_EQ(CString(WIDE_SPACE "a@").Find("@"), 3);
  EXPECT_EQ(CString(WIDE_SPACE).Find("@"), -1);
  EXPECT_EQ(CString("ZVK-a").Find("ZVK-"), 0);
  EXPECT_EQ(CString("").Find("a"), -1);
}

TEST(CStringTest, MidStaysWithinTheText) {
  const CString text = "abcdef";
  EXPECT_EQ(text.Mid(4), "ef");
  EXPECT_EQ(text.Mid(-1), text);
  EXPECT_EQ(text.Mid(9), "");
}

} // namespace
