#include "clients/pref_lines.h"

#include "clients/format.h"

std::string QuotedPref(const std::string &text) { return '"' + text + '"'; }

std::string LineText(const PrefLine &line) { return Format("user_pref(\"%s\", %s);\n", line.key, line.value); }

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
