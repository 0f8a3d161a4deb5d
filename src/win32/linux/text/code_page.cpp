// The divisions: single characters of code page 932, single sequences of UTF-8, whole texts.
#include "win32/linux/text/code_page.h"

#include "win32/win32.h"

#include <algorithm>
#include <cstring>
#include <iconv.h>

namespace text {

namespace {

constexpr char16_t Replacement = 0xFFFD;
// What Windows puts for bytes that code page 932 doesn't define: a katakana middle dot.
constexpr char16_t UndefinedBytes = 0x30FB;

bool IsAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

bool IsAscii(std::u16string_view text) {
  return std::ranges::all_of(text, [](char16_t unit) { return unit < 0x80; });
}

// A conversion of the C library, opened when the first text that isn't ASCII comes along: opening loads its tables.
class Converter {
public:
  Converter(const char *to, const char *from) : descriptor(iconv_open(to, from)) {}
  ~Converter() {
    if (Opened())
      iconv_close(descriptor);
  }
  Converter(const Converter &) = delete;
  Converter &operator=(const Converter &) = delete;

  // Converts one character; the number of bytes that came out, 0 if there is no such character.
  size_t Convert(const char *in, size_t inSize, char *out, size_t outSize) {
    if (!Opened())
      return 0;
    char *source = const_cast<char *>(in); // iconv doesn't write there
    size_t left = inSize;
    char *target = out;
    size_t room = outSize;
    iconv(descriptor, nullptr, nullptr, nullptr, nullptr);
    return iconv(descriptor, &source, &left, &target, &room) == 0 && left == 0 ? outSize - room : 0;
  }

private:
  bool Opened() const { return descriptor != reinterpret_cast<iconv_t>(-1); }
  iconv_t descriptor;
};

// Single bytes that Windows maps and the C library doesn't.
struct ByteMapping {
  unsigned char byte;
  char16_t character;
};
constexpr ByteMapping SingleBytes[] = {{0x80, 0x80}, {0xA0, 0xF8F0}, {0xFD, 0xF8F1}, {0xFE, 0xF8F2}, {0xFF, 0xF8F3}};

// What stands in on Windows for characters that code page 932 doesn't have, from U+00A1 on.
constexpr std::u16string_view Likenesses = u"!¢£¤¥|§¨ca≪¬-R￣°±23´μ¶・，1o≫¼½¾¿AAAAAAACEEEEIIIIDNOOOOO×OUUUUYTs"
                                           u"aaaaaaaceeeeiiiidnooooo÷ouuuuyty";
// Characters that the C library likens to others, and Windows doesn't: dashes, the double bar, overline, minus and
// wave.
constexpr std::u16string_view Unlike = u"\u2014\u2016\u203E\u2212\u301C";

char16_t Likeness(char16_t character) {
  if (character >= 0xA1 && character <= 0xFF)
    return Likenesses[character - 0xA1];
  return character == u'ゔ' ? u'ヴ' : character;
}

// Whether a character only stands for a byte that means nothing.
bool IsStandIn(char16_t character) { return character >= 0xF8F0 && character <= 0xF8F3; }

char16_t DoubleByteCharacter(const char *bytes) {
  thread_local Converter converter("UTF-16LE", "CP932");
  char16_t character = 0;
  return converter.Convert(bytes, 2, reinterpret_cast<char *>(&character), sizeof character) == sizeof character
             ? character
             : char16_t{0};
}

char16_t SingleByteCharacter(unsigned char byte) {
  if (byte < 0x80)
    return byte;
  if (byte >= 0xA1 && byte <= 0xDF) // half-width katakana
    return static_cast<char16_t>(0xFF61 + (byte - 0xA1));
  for (const ByteMapping &mapping : SingleBytes)
    if (mapping.byte == byte)
      return mapping.character;
  return 0;
}

// The bytes of a character, empty if code page 932 doesn't have it.
std::string Cp932Bytes(char16_t character) {
  for (const ByteMapping &mapping : SingleBytes)
    if (mapping.character == character)
      return {static_cast<char>(mapping.byte)};
  character = Likeness(character);
  if (character < 0x80)
    return {static_cast<char>(character)};
  if (Unlike.find(character) != std::u16string_view::npos)
    return {};
  thread_local Converter converter("CP932", "UTF-16LE");
  char bytes[4];
  const size_t size =
      converter.Convert(reinterpret_cast<const char *>(&character), sizeof character, bytes, sizeof bytes);
  return {bytes, size};
}

// Takes the first UTF-8 sequence off the text. False for an invalid one, of which the valid beginning is taken off, at
// least one byte.
bool TakeUtf8(std::string_view &text, char32_t &character) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const size_t length = lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
  // The second byte's range keeps out overlong forms, surrogates and what is beyond U+10FFFF.
  unsigned char lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  unsigned char highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  character = length < 2 ? lead : lead & (0xFFU >> (length + 1));
  size_t taken = 1;
  for (; taken < length && taken < text.size(); ++taken) {
    const auto byte = static_cast<unsigned char>(text[taken]);
    if (byte < lowest || byte > highest)
      break;
    character = character << 6 | (byte & 0x3FU);
    lowest = 0x80;
    highest = 0xBF;
  }
  text.remove_prefix(taken);
  return taken == length;
}

void AppendUtf8(std::string &text, char32_t character) {
  const auto put = [&](char32_t bits) { text += static_cast<char>(static_cast<unsigned char>(bits)); };
  if (character < 0x80) {
    put(character);
  } else if (character < 0x800) {
    put(0xC0 | character >> 6);
    put(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    put(0xE0 | character >> 12);
    put(0x80 | (character >> 6 & 0x3F));
    put(0x80 | (character & 0x3F));
  } else {
    put(0xF0 | character >> 18);
    put(0x80 | (character >> 12 & 0x3F));
    put(0x80 | (character >> 6 & 0x3F));
    put(0x80 | (character & 0x3F));
  }
}

} // namespace

bool IsLeadByte(unsigned char byte) { return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC); }

std::string_view WholeCharacters(std::string_view cp932, size_t size) {
  size_t end = 0;
  while (end < cp932.size()) {
    const size_t next = std::min(end + (IsLeadByte(static_cast<unsigned char>(cp932[end])) ? 2 : 1), cp932.size());
    if (next > size)
      break;
    end = next;
  }
  return cp932.substr(0, end);
}

bool Cp932ToWide(std::string_view cp932, std::u16string &wide) {
  if (IsAscii(cp932)) {
    wide.resize(cp932.size());
    std::ranges::copy(cp932, wide.begin());
    return true;
  }
  wide.clear();
  wide.reserve(cp932.size());
  bool valid = true;
  for (size_t index = 0; index < cp932.size();) {
    const auto byte = static_cast<unsigned char>(cp932[index]);
    // A lead byte takes the next byte with it, whatever that is; one at the end of the text stands alone.
    const bool twoBytes = IsLeadByte(byte) && index + 1 < cp932.size() && cp932[index + 1] != '\0';
    char16_t character = twoBytes ? DoubleByteCharacter(&cp932[index]) : SingleByteCharacter(byte);
    if (character == 0 && byte != 0) {
      character = UndefinedBytes;
      valid = false;
    }
    valid = valid && !IsStandIn(character);
    wide += character;
    index += twoBytes ? 2 : 1;
  }
  return valid;
}

bool WideToCp932(std::u16string_view wide, std::string &cp932) {
  if (IsAscii(wide)) {
    cp932.resize(wide.size());
    std::ranges::transform(wide, cp932.begin(), [](char16_t unit) { return static_cast<char>(unit); });
    return true;
  }
  cp932.clear();
  cp932.reserve(wide.size());
  bool valid = true;
  for (const char16_t unit : wide) {
    const std::string bytes = Cp932Bytes(unit);
    valid = valid && !bytes.empty();
    cp932 += bytes.empty() ? "?" : bytes;
  }
  return valid;
}

std::u16string ToWide(std::string_view cp932) {
  std::u16string wide;
  Cp932ToWide(cp932, wide);
  return wide;
}

std::string FromWide(std::u16string_view wide) {
  std::string cp932;
  WideToCp932(wide, cp932);
  return cp932;
}

std::u16string WideOf(std::string_view bytes) {
  std::u16string wide(bytes.size() / sizeof(char16_t), u'\0');
  std::memcpy(wide.data(), bytes.data(), wide.size() * sizeof(char16_t));
  return wide;
}

std::string_view BytesOf(std::u16string_view wide) {
  return {reinterpret_cast<const char *>(wide.data()), wide.size() * sizeof(char16_t)};
}

std::string WideToUtf8(std::u16string_view wide) {
  std::string utf8;
  utf8.reserve(wide.size());
  for (size_t index = 0; index < wide.size(); ++index) {
    char32_t character = wide[index];
    if (character >= 0xD800 && character < 0xDC00 && index + 1 < wide.size() && wide[index + 1] >= 0xDC00 &&
        wide[index + 1] < 0xE000)
      character = 0x10000 + ((character & 0x3FF) << 10) + (wide[++index] & 0x3FFU);
    else if (character >= 0xD800 && character < 0xE000)
      character = Replacement;
    AppendUtf8(utf8, character);
  }
  return utf8;
}

bool Utf8ToWide(std::string_view utf8, std::u16string &wide) {
  wide.clear();
  wide.reserve(utf8.size());
  bool valid = true;
  while (!utf8.empty()) {
    char32_t character = Replacement;
    if (!TakeUtf8(utf8, character)) {
      valid = false;
      character = Replacement;
    }
    if (character >= 0x10000) {
      wide += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
      wide += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
    } else {
      wide += static_cast<char16_t>(character);
    }
  }
  return valid;
}

std::optional<std::string> FromUtf8(std::string_view utf8) {
  if (IsAscii(utf8))
    return std::string(utf8);
  std::u16string wide;
  std::string cp932;
  if (!Utf8ToWide(utf8, wide) || !WideToCp932(wide, cp932))
    return std::nullopt;
  return cp932;
}

} // namespace text
