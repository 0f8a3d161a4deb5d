// Texts in a terminal's columns, of which most Japanese characters take two.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace terminal {

// From UTF-8, which the locale's encoding has to be, and back. Characters that can't be shown become blanks, but for
// line feeds.
std::wstring Widen(const std::string &utf8);
std::string Narrow(wchar_t character);

int Width(std::wstring_view text);

// The text in just so many columns: cut, or with blanks behind it.
std::wstring Fit(std::wstring_view text, int width);

// The lines of a text, which break where they are too long: at blanks and between Japanese characters, but not
// before a full stop or a closing bracket.
std::vector<std::wstring> Wrap(std::wstring_view text, int width);

} // namespace terminal
