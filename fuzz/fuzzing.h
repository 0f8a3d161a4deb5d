// Shared by the fuzz targets: requirements, whose failure is a finding, and inputs of two parts.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#define REQUIRE(condition) ((condition) ? void() : FailRequirement(#condition, __FILE__, __LINE__))

[[noreturn]] inline void FailRequirement(const char *condition, const char *file, int line) {
  std::fprintf(stderr, "%s:%d: not so: %s\n", file, line, condition);
  std::abort();
}

// The two parts of an input, separated by the first byte 0xFF: the text under test, which usually has no such byte, and
// the commands for it. So a plain text file is a seed.
struct TextAndCommands {
  std::string text;
  FuzzedDataProvider commands;

  TextAndCommands(const uint8_t *data, size_t size) : TextAndCommands(data, size, std::find(data, data + size, 0xFF)) {}

private:
  TextAndCommands(const uint8_t *data, size_t size, const uint8_t *end)
      : text(data, end),
        commands(std::min(end + 1, data + size), static_cast<size_t>(data + size - std::min(end + 1, data + size))) {}
};

// The lines of a text, without their line feeds.
inline std::vector<std::string_view> Lines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    lines.push_back(text.substr(0, text.find('\n')));
    text.remove_prefix(std::min(lines.back().size() + 1, text.size()));
  }
  return lines;
}

// Whether all lines of a text for which `keeps` is true are still there after an edit, in the same order.
template <typename Keeps> bool KeepsLines(std::string_view before, std::string_view after, Keeps keeps) {
  const std::vector<std::string_view> lines = Lines(after);
  auto at = lines.begin();
  for (const std::string_view line : Lines(before)) {
    if (!keeps(line))
      continue;
    at = std::find(at, lines.end(), line);
    if (at == lines.end())
      return false;
    ++at;
  }
  return true;
}
