#include "change_report.h"

#include "line_diff.h"
#include "utf8.h"
#include "win32/linux/public/registry_changes.h"

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

namespace {

using Json = nlohmann::ordered_json;
using machine::RegistryData;

constexpr const char *Hidden = "(not shown)";

struct Line {
  bool isNew;
  size_t number;
  std::string text;
};

struct FileReport {
  std::string path;
  std::optional<size_t> sizeBefore; // in bytes
  size_t size = 0;
  std::vector<Line> lines; // of a text file
};

struct Changes {
  std::vector<machine::RegistryKeyChange> keys;
  std::vector<FileReport> files;
  std::vector<std::string> folders;
};

// ---- What is hidden ----

bool NamesPassword(std::string_view name) {
  constexpr std::string_view Word = "password";
  const auto isSame = [](char left, char right) { return std::tolower(static_cast<unsigned char>(left)) == right; };
  return std::search(name.begin(), name.end(), Word.begin(), Word.end(), isSame) != name.end();
}

// A preference keeps its name; any other line is hidden whole.
std::string WithoutPassword(const std::string &line) {
  constexpr std::string_view Preference = "user_pref(\"";
  const size_t end = line.starts_with(Preference) ? line.find('"', Preference.size()) : std::string::npos;
  const std::string name = line.substr(0, end);
  if (!NamesPassword(name))
    return line;
  return end == std::string::npos ? Hidden : name + "\", " + Hidden + ");";
}

// ---- Files ----

std::vector<Line> ChangedLines(const std::string &before, const std::string &after) {
  std::vector<Line> lines;
  for (const LineChange &change : CompareLines(before, after)) {
    std::string line(change.line);
    if (line.ends_with('\r'))
      line.pop_back();
    lines.push_back({change.isNew, change.number, WithoutPassword(MixedToUtf8(line))});
  }
  return lines;
}

FileReport ReportFile(const machine::FileChange &change) {
  const std::string before = change.before.value_or("");
  const std::string after = change.after.value_or("");
  FileReport report = {change.path, std::nullopt, after.size(), {}};
  if (change.before)
    report.sizeBefore = before.size();
  if ((before + after).find('\0') == std::string::npos)
    report.lines = ChangedLines(before, after);
  return report;
}

Changes Sort(const std::vector<machine::FileChange> &pending) {
  Changes changes;
  for (const machine::FileChange &change : pending)
    if (change.path.ends_with('\\'))
      changes.folders.push_back(change.path);
    else if (auto keys = machine::RegistryChanges(change))
      std::ranges::move(*keys, std::back_inserter(changes.keys));
    else
      changes.files.push_back(ReportFile(change));
  return changes;
}

// ---- As text ----

// Control characters as numbers: whatever a text holds, it is one line.
std::string OneLine(const std::string &text) {
  constexpr const char *Digits = "0123456789abcdef";
  std::string line;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if ((byte < ' ' && byte != '\t') || byte == 0x7F)
      line.append("\\x").append(1, Digits[byte >> 4]).append(1, Digits[byte & 0xF]);
    else
      line += character;
  }
  return line + '\n';
}

std::string DataText(const RegistryData &data) {
  switch (data.kind) {
  case RegistryData::Kind::Text:
    return '"' + data.shown + '"';
  case RegistryData::Kind::Number:
    return data.shown;
  case RegistryData::Kind::Bytes:
    return "hex " + data.shown;
  }
  return {};
}

std::string KeyBlock(const machine::RegistryKeyChange &key) {
  std::string block = OneLine(key.path + (key.isNew ? " (new key)" : ""));
  for (const machine::RegistryValueChange &value : key.values)
    for (const auto &[sign, data] : {std::pair("- ", &value.before), {"+ ", &value.after}})
      if (*data)
        block += OneLine(sign + value.name + " = " + (NamesPassword(value.name) ? Hidden : DataText(**data)));
  return block;
}

std::string FileBlock(const FileReport &file) {
  const std::string size = std::to_string(file.size);
  std::string block =
      OneLine(file.path + (file.sizeBefore ? " (" + std::to_string(*file.sizeBefore) + " bytes, now " + size + ')'
                                           : " (new file, " + size + " bytes)"));
  for (const Line &line : file.lines)
    block += OneLine((line.isNew ? "+ " : "- ") + std::to_string(line.number) + ": " + line.text);
  return block;
}

std::string AsText(const Changes &changes, const std::string &answer, const std::string &notice) {
  std::string report;
  const auto append = [&report](const std::string &block) { report += (report.empty() ? "" : "\n") + block; };
  for (const machine::RegistryKeyChange &key : changes.keys)
    append(KeyBlock(key));
  for (const std::string &folder : changes.folders)
    append(OneLine(folder + " (new folder)"));
  for (const FileReport &file : changes.files)
    append(FileBlock(file));
  if (report.empty())
    report = "nothing would change\n";
  if (!answer.empty())
    append((notice.empty() ? "would answer: " : "without the mailer plug-in it would answer: ") + answer);
  return report + (notice.empty() ? "" : OneLine(notice));
}

// ---- As JSON ----

Json DataJson(const std::string &name, const std::optional<RegistryData> &data) {
  if (!data)
    return nullptr;
  if (NamesPassword(name))
    return Hidden;
  switch (data->kind) {
  case RegistryData::Kind::Text:
    return data->shown;
  case RegistryData::Kind::Number:
    return std::stoul(data->shown);
  case RegistryData::Kind::Bytes:
    return {{"hex", data->shown}};
  }
  return nullptr;
}

Json KeyJson(const machine::RegistryKeyChange &key) {
  Json values = Json::array();
  for (const machine::RegistryValueChange &value : key.values)
    values.push_back({{"name", value.name},
                      {"before", DataJson(value.name, value.before)},
                      {"after", DataJson(value.name, value.after)}});
  return {{"key", key.path}, {"new", key.isNew}, {"values", values}};
}

Json FileJson(const FileReport &file) {
  Json lines = Json::array();
  for (const Line &line : file.lines)
    lines.push_back({{"change", line.isNew ? "+" : "-"}, {"number", line.number}, {"text", line.text}});
  return {{"path", file.path},
          {"sizeBefore", file.sizeBefore ? Json(*file.sizeBefore) : Json()},
          {"size", file.size},
          {"lines", lines}};
}

std::string AsJson(const Changes &changes, const std::string &answer, const std::string &notice) {
  Json keys = Json::array();
  for (const machine::RegistryKeyChange &key : changes.keys)
    keys.push_back(KeyJson(key));
  Json files = Json::array();
  for (const FileReport &file : changes.files)
    files.push_back(FileJson(file));
  const auto line = [](const std::string &text) {
    return text.empty() ? Json() : Json(text.substr(0, text.find('\n')));
  };
  const Json document = {{"registry", keys},
                         {"folders", changes.folders},
                         {"files", files},
                         {"answer", line(answer)},
                         {"notice", line(notice)}};
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace

std::string ChangeReport(const std::vector<machine::FileChange> &changes, const std::string &answer,
                         const std::string &notice, bool asJson) {
  const Changes sorted = Sort(changes);
  return asJson ? AsJson(sorted, answer, notice) : AsText(sorted, answer, notice);
}
