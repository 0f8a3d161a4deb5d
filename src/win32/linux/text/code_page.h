// The three encodings of the layer: code page 932 in the calls, UTF-16 in the registry, UTF-8 in file names. What an
// encoding can't say becomes its replacement character, as on Windows.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace text {

std::u16string ToWide(std::string_view cp932);
std::string FromWide(std::u16string_view wide);

// UTF-16 as the bytes that it has in files, little-endian. A half unit at the end of bytes is left out.
std::u16string WideOf(std::string_view bytes);
std::string_view BytesOf(std::u16string_view wide);

std::string WideToUtf8(std::u16string_view wide);
// False for bytes that aren't UTF-8; `wide` then has U+FFFD for them.
bool Utf8ToWide(std::string_view utf8, std::u16string &wide);
// False for bytes that aren't code page 932, or for characters that it doesn't have.
bool Cp932ToWide(std::string_view cp932, std::u16string &wide);
bool WideToCp932(std::u16string_view wide, std::string &cp932);

// Whether a byte of code page 932 begins a character of two bytes.
bool IsLeadByte(unsigned char byte);
// The first `size` bytes of a text, one fewer if the last would be half a character.
std::string_view WholeCharacters(std::string_view cp932, size_t size);

// A file name on disk as a name of the calls; nothing for one that code page 932 can't say.
std::optional<std::string> FromUtf8(std::string_view utf8);

} // namespace text
