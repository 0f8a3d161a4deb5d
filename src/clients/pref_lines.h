// Preference lines as the Netscape adapters write them to a prefs.js.
#pragma once

#include "stores/prefs_file.h"

#include <span>
#include <string>

// The lines pass through buffers of 256 bytes in the clients' own formats; a longer one isn't written.
constexpr size_t PrefLineSize = 256;

struct PrefLine {
  const char *key;
  std::string value; // as it stands in the line, a text with its quotes
};

// A text between its quotes. Nothing is escaped.
std::string QuotedPref(const std::string &text);

// Whether every line fits.
bool PrefLinesFit(std::span<const PrefLine> lines);

// Replaces preferences: removes the line of each key, then appends all lines, in their order.
void ReplacePrefs(PrefsText &prefs, std::span<const PrefLine> lines);
