// Texts in a terminal's columns, of which most Japanese characters take two. All texts are UTF-8, and so is the locale.
#pragma once

#include <string>
#include <vector>

namespace terminal {

std::vector<std::string> Characters(const std::string &text);
int Width(const std::string &text);

// The text in just so many columns: cut, or with blanks behind it.
std::string Fit(const std::string &text, int width);

// The lines of a text, which break where they are too long: at blanks and between Japanese characters, but not
// before a full stop or a closing bracket.
std::vector<std::string> Wrap(const std::string &text, int width);

} // namespace terminal
