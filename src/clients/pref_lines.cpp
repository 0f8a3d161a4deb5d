#include "clients/pref_lines.h"

std::string QuotedPref(const std::string &text) { return '"' + text + '"'; }

std::string LineStart(const std::string &name) { return "user_pref(\"" + name; }

std::string LineText(const PrefLine &line) { return LineStart(line.key) + "\", " + line.value + ");\n"; }

void AppendPref(PrefsText &prefs, const PrefLine &line) { AppendPrefLine(prefs, LineText(line).c_str()); }

void AppendPrefs(PrefsText &prefs, std::span<const PrefLine> lines) {
  for (const PrefLine &line : lines)
    AppendPref(prefs, line);
}

void ReplacePref(PrefsText &prefs, const PrefLine &line) {
  RemovePrefLine(line.key.c_str(), prefs);
  AppendPref(prefs, line);
}

void ReplacePrefs(PrefsText &prefs, std::span<const PrefLine> lines) {
  for (const PrefLine &line : lines)
    ReplacePref(prefs, line);
}
