// The files that the host program reads from its user, a sign-up file or a script of a wizard, with any bytes: each is
// refused by one line about it, or read such that it says the same when it is written out and read again.
#include "signup_file.h"
#include "usage.h"
#include "utf8.h"
#include "wizard_script.h"

#include "fuzzing.h"
#include "support/scratch_machine.h"

#include <cstring>
#include <optional>
#include <span>

namespace {

const ScratchMachine Scratch;

bool IsControl(char byte) { return static_cast<unsigned char>(byte) < ' ' || byte == '\x7F'; }

// What a reader makes of a file; nothing if it refuses it.
template <typename Content>
std::optional<Content> Read(Content (*read)(const std::string &path), const std::string &bytes) {
  Scratch.PutFile("file", bytes);
  const std::string path = (Scratch.Drive() / "file").string();
  try {
    return read(path);
  } catch (const UsageError &error) {
    const std::string line = error.what();
    REQUIRE(line.starts_with(path + ':') && std::none_of(line.begin(), line.end(), IsControl) && IsUtf8(line));
    return std::nullopt;
  }
}

// ---- Sign-up files ----

using TextField = std::pair<const char *, std::span<const char>>;

std::vector<TextField> TextFields(const SignupRecord &record) {
  return {{"serviceId", record.serviceId},     {"connectionName", record.connectionName},
          {"senderName", record.senderName},   {"mailUser", record.mailUser},
          {"mailAddress", record.mailAddress}, {"popServer", record.popServer},
          {"smtpServer", record.smtpServer},   {"startPage", record.startPage}};
}

std::string Written(const SignupRecord &record) {
  std::string file = "serviceKind=" + std::to_string(record.serviceKind) + "\r\n";
  for (const auto &[name, field] : TextFields(record)) {
    REQUIRE(std::find(field.begin(), field.end(), '\0') != field.end());
    file.append(name).append("=").append(ToUtf8(field.data())).append("\r\n");
  }
  return file;
}

void TestSignupFile(const std::string &bytes) {
  const auto record = Read(ReadSignupFile, bytes);
  if (!record)
    return;
  const std::string written = Written(*record);
  // Nothing that the file says is lost.
  for (std::string_view line : Lines(std::string_view(bytes).substr(bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0))) {
    line.remove_suffix(line.ends_with('\r') ? 1 : 0);
    REQUIRE(line.empty() || line.starts_with('#') || written.find(std::string(line) + "\r\n") != std::string::npos);
  }
  for (const auto &[name, field] : TextFields(*record)) {
    const bool isOptional =
        field.data() == record->connectionName ||
        (record->serviceKind == 0 ? field.data() == record->mailUser || field.data() == record->popServer ||
                                        field.data() == record->smtpServer
                                  : field.data() == record->serviceId);
    REQUIRE(field[0] != '\0' || isOptional);
  }
  const auto again = Read(ReadSignupFile, written);
  REQUIRE(again && std::memcmp(&*record, &*again, sizeof *record) == 0);
}

// ---- Scripts ----

std::string Written(const Step &step) {
  std::string line = step.command;
  if (step.id != 0)
    line += ' ' + std::to_string(step.id);
  if (step.command == "set")
    line += ' ' + Quoted(ToUtf8(step.text));
  else if (step.command == "expect items") {
    REQUIRE(step.text.starts_with('[') && step.text.ends_with(']'));
    line += ' ' + step.text.substr(1, step.text.size() - 2);
  } else if (!step.text.empty())
    line += ' ' + step.text;
  return line + "\r\n";
}

void TestScript(const std::string &bytes) {
  const auto script = Read(ReadWizardScript, bytes);
  if (!script)
    return;
  const std::vector<std::string_view> lines = Lines(bytes);
  std::string written;
  size_t before = 0;
  for (const Step &step : script->steps) {
    REQUIRE(step.line > before && step.line <= script->lines && script->lines == lines.size());
    REQUIRE(step.command != "expect result" || &step == &script->steps.back());
    before = step.line;
    // Without a comment and quotes nothing is left out.
    const std::string_view line = lines[step.line - 1];
    if (line.find('"') == line.npos && line.find(" #") == line.npos && line.find("\t#") == line.npos)
      REQUIRE(std::count(line.begin(), line.end(), '#') == std::count(step.text.begin(), step.text.end(), '#'));
    written += Written(step);
  }
  // Texts can't be written with control characters that have no escape.
  if (std::any_of(bytes.begin(), bytes.end(),
                  [](char byte) { return IsControl(byte) && std::strchr("\t\r\n", byte) == nullptr; }))
    return;
  const auto again = Read(ReadWizardScript, written);
  REQUIRE(again && again->steps.size() == script->steps.size());
  for (size_t index = 0; index < script->steps.size(); ++index) {
    const Step &first = script->steps[index];
    const Step &second = again->steps[index];
    REQUIRE(first.command == second.command && first.id == second.id && first.number == second.number &&
            first.text == second.text);
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string bytes(data, data + size);
  TestSignupFile(bytes);
  TestScript(bytes);
  return 0;
}
