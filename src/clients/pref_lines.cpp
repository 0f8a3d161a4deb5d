#include "clients/pref_lines.h"

#include "clients/text.h"

#include <algorithm>

namespace {

std::string LineText(const PrefLine &line) {
  return Format("user_pref(\"%s\", %s);\n", std::string(line.key), line.value);
}

} // namespace

std::string QuotedPref(const std::string &text) { return '"' + text + '"'; }

bool PrefLinesFit(std::span<const PrefLine> lines) {
  return std::ranges::all_of(lines, [](const PrefLine &line) { return LineText(line).size() < PrefLineSize; });
}

void ReplacePrefs(PrefsText &prefs, std::span<const PrefLine> lines) {
  for (const PrefLine &line : lines)
    RemovePrefLine(line.key, prefs);
  for (const PrefLine &line : lines)
    AppendPrefLine(prefs, LineText(line).c_str());
}
