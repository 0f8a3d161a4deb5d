// Conversion between code page 932, UTF-8 and UTF-16, and the comparison of multi-byte text.
#include "win32/win32.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace {

using Units = std::basic_string<WCHAR>;

Units Wide(std::initializer_list<unsigned> units) {
  Units wide;
  for (const unsigned unit : units)
    wide += static_cast<WCHAR>(unit);
  return wide;
}

const unsigned char *Bytes(const char *text) { return reinterpret_cast<const unsigned char *>(text); }

TEST(TextTest, Widens) {
  const std::tuple<UINT, std::string, Units, bool> cases[] = {
      {CP_ACP, "aZ\\~", Wide({'a', 'Z', '\\', '~'}), true},
      {CP_ACP, "\xb1\xdf", Wide({0xFF71, 0xFF9F}), true},         // half-width kana
      {CP_ACP, "\x95\x5c\x83\x5c", Wide({0x8868, 0x30BD}), true}, // the second byte is that of the backslash
      {CP_ACP, "\x81\x60\x81\x7c\x81\x5f", Wide({0xFF5E, 0xFF0D, 0xFF3C}), true}, // not wave dash and minus
      {CP_ACP, "\x87\x40\x87\x54", Wide({0x2460, 0x2160}), true},                 // NEC's row 13
      {CP_ACP, "\xed\x40\xfa\x40\xfa\x5c", Wide({0x7E8A, 0x2170, 0x7E8A}), true}, // IBM's, in NEC's rows and in its own
      {CP_ACP, "\xf0\x40\xf9\xfc", Wide({0xE000, 0xE757}), true},                 // user-defined
      {CP_ACP, "a\x81\x30z", Wide({'a', 0x30FB, 'z'}), false},                    // both bytes are replaced
      {CP_ACP, "\x85\x40\xfc\x50", Wide({0x30FB, 0x30FB}), false},
      {CP_ACP, "\x80", Wide({0x80}), true},
      {CP_ACP, "\xa0\xfd\xff", Wide({0xF8F0, 0xF8F1, 0xF8F3}), false},
      {CP_UTF8, "a\xc2\x80\xe8\xa1\xa8", Wide({'a', 0x80, 0x8868}), true},
      {CP_UTF8, "\xf0\x9f\x98\x80", Wide({0xD83D, 0xDE00}), true},
      {CP_UTF8, "a\x80\xffz", Wide({'a', 0xFFFD, 0xFFFD, 'z'}), false},
      {CP_UTF8, "\xc0\x80", Wide({0xFFFD, 0xFFFD}), false},
      {CP_UTF8, "\xe8\xa1\xe8\xa1\xa8\xf0\x9f\x98", Wide({0xFFFD, 0x8868, 0xFFFD}), false}, // one per sequence
  };
  for (const auto &[codePage, bytes, expected, valid] : cases) {
    SCOPED_TRACE(::testing::PrintToString(bytes));
    const auto length = static_cast<int>(bytes.size());
    Units wide(32, u'#');
    wide.resize(static_cast<size_t>(MultiByteToWideChar(codePage, 0, bytes.data(), length, wide.data(), 32)));
    EXPECT_EQ(wide, expected);
    EXPECT_EQ(MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(), length, nullptr, 0),
              valid ? static_cast<int>(expected.size()) : 0);
  }
}

TEST(TextTest, Narrows) {
  const std::tuple<UINT, Units, std::string> cases[] = {
      {CP_ACP, Wide({'a', 0xFF71, 0x8868}), "a\xb1\x95\x5c"},
      {CP_ACP, Wide({0x2252, 0x222A, 0x7E8A, 0xE000}), "\x81\xe0\x81\xbe\xfa\x5c\xf0\x40"}, // which of its places
      {CP_ACP, Wide({0xFF5E, 0xF8F0}), "\x81\x60\xa0"},
      {CP_ACP, Wide({0xA1, 0xA5, 0xB5, 0xE9, 0xDF, 0x3094}), "!\\\x83\xca\x65s\x83\x94"}, // likenesses
      {CP_ACP, Wide({0x301C, 0x2212, 0xA0, 0xAC00}), "????"},
      {CP_ACP, Wide({0xD83D, 0xDE00, 'a'}), "??a"},
      {CP_UTF8, Wide({'a', 0x80, 0x8868, 0xD83D, 0xDE00}), "a\xc2\x80\xe8\xa1\xa8\xf0\x9f\x98\x80"},
      {CP_UTF8, Wide({0xD83D, 'a', 0xDE00}), "\xef\xbf\xbd\x61\xef\xbf\xbd"}, // surrogates without their other
  };
  for (const auto &[codePage, wide, expected] : cases) {
    SCOPED_TRACE(::testing::PrintToString(expected));
    const auto length = static_cast<int>(wide.size());
    char bytes[64];
    const int size = WideCharToMultiByte(codePage, 0, wide.data(), length, bytes, sizeof bytes, nullptr, nullptr);
    EXPECT_EQ(std::string(bytes, static_cast<size_t>(size)), expected);
    EXPECT_EQ(WideCharToMultiByte(codePage, 0, wide.data(), length, nullptr, 0, nullptr, nullptr), size);
  }
}

TEST(TextTest, SizesOfBuffers) {
  WCHAR units[8] = {'a', 0x8868};
  char bytes[8];
  const auto widen = [&](const char *text, int length, int size) {
    return MultiByteToWideChar(CP_ACP, 0, text, length, units, size);
  };
  const auto narrow = [&](UINT codePage, int length, int size) {
    return WideCharToMultiByte(codePage, 0, units, length, bytes, size, nullptr, nullptr);
  };
  const char *const ansi = "a\x95\x5c";
  EXPECT_EQ(narrow(CP_ACP, -1, 4), 4);
  EXPECT_EQ(narrow(CP_UTF8, -1, 5), 5);
  EXPECT_EQ(narrow(CP_ACP, 2, 2), 0); // no half of a character is written
  EXPECT_EQ(narrow(CP_UTF8, 2, 2), 0);
  EXPECT_EQ(widen(ansi, -1, 8), 3);
  EXPECT_EQ(widen(ansi, -1, 0), 3);
  EXPECT_EQ(widen(ansi, 3, 2), 2);
  EXPECT_EQ(widen(ansi, 4, 3), 3); // a terminator within the length is an ordinary character
  EXPECT_EQ(widen(ansi, -1, 2), 0);
}

// The case of Greek and Cyrillic letters isn't tested: Wine folds it, the run-time library of Windows doesn't.
TEST(TextTest, ComparesByCharactersWithoutCase) {
  const std::tuple<const char *, const char *, bool> cases[] = {
      {"abc", "abc", true},
      {"abc", "ABC", true},
      {"", "a", false},
      {"\x82\x60", "\x82\x81", true},
      {"\x83\x41", "\x83\x61", false}, // second bytes aren't letters
      {"\x95\x5c", "\x95\x7c", false},
      {"\x82\x60", "A", false}};
  for (const auto &[left, right, same] : cases)
    EXPECT_EQ(_mbsicmp(Bytes(left), Bytes(right)) == 0, same) << left << " " << right;
}

} // namespace
