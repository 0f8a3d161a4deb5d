// Preference lines as the Netscape adapters write them to a prefs.js.
#pragma once

#include "stores/prefs_file.h"

#include <span>
#include <string>

struct PrefLine {
  std::string key;
  std::string value; // as it stands in the line, a text with its quotes
};

// A text between its quotes. Nothing is escaped.
std::string QuotedPref(const std::string &text);

// How the line of a preference begins, or the lines of all preferences whose names begin so.
std::string LineStart(const std::string &name);

// The line as it stands in the file, with its LF.
std::string LineText(const PrefLine &line);

// Appends preferences at the end of the text.
void AppendPref(PrefsText &prefs, const PrefLine &line);
void AppendPrefs(PrefsText &prefs, std::span<const PrefLine> lines);

// Replaces a preference: removes the line of its key and appends the new one; and several, one after the other.
void ReplacePref(PrefsText &prefs, const PrefLine &line);
void ReplacePrefs(PrefsText &prefs, std::span<const PrefLine> lines);
