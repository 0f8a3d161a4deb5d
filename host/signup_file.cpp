#include "signup_file.h"

#include "usage.h"
#include "utf8.h"
#include "wizard_script.h"

#include <algorithm>
#include <map>
#include <span>
#include <vector>

namespace {

struct TextField {
  const char *name;
  std::span<char> field;
};

void Fill(SignupRecord &record, const std::string &key, const std::string &value) {
  const TextField fields[] = {{"serviceId", record.serviceId},     {"connectionName", record.connectionName},
                              {"senderName", record.senderName},   {"mailUser", record.mailUser},
                              {"mailAddress", record.mailAddress}, {"popServer", record.popServer},
                              {"smtpServer", record.smtpServer},   {"startPage", record.startPage}};
  if (key == "serviceKind") {
    if (value != "0" && value != "1")
      throw UsageError("serviceKind is 0 or 1");
    record.serviceKind = value == "1" ? 1 : 0;
    return;
  }
  const auto known = std::ranges::find(fields, key, &TextField::name);
  if (known == std::end(fields))
    throw UsageError("there is no field " + Quoted(key));
  const std::optional<std::string> text = FromUtf8(value);
  if (!text)
    throw UsageError(key + " has a character that code page 932 doesn't have");
  if (text->size() >= known->field.size())
    throw UsageError(key + " is longer than " + std::to_string(known->field.size() - 1) + " bytes");
  std::ranges::copy(*text, known->field.begin());
}

// Without any of these a sign-up would put empty texts into the clients.
void CheckComplete(const std::string &path, const std::map<std::string, std::string> &fields, int32_t kind) {
  const std::vector<std::string> needed =
      kind == 0
          ? std::vector<std::string>{"serviceId", "senderName", "mailAddress", "startPage"}
          : std::vector<std::string>{"mailUser", "senderName", "mailAddress", "popServer", "smtpServer", "startPage"};
  const auto missing = std::ranges::find_if(needed, [&](const std::string &key) {
    const auto field = fields.find(key);
    return field == fields.end() || field->second.empty();
  });
  if (missing != needed.end())
    throw UsageError(path + ": " + *missing + " is missing");
}

} // namespace

SignupRecord ReadSignupFile(const std::string &path) {
  SignupRecord record{};
  std::map<std::string, std::string> given;
  ForEachLine(path, [&](const std::string &line, size_t) {
    if (line.empty() || line[0] == '#')
      return;
    const size_t equals = line.find('=');
    if (equals == std::string::npos)
      throw UsageError("a line is key=value");
    const auto [field, isNew] = given.emplace(line.substr(0, equals), line.substr(equals + 1));
    if (!isNew)
      throw UsageError(field->first + " stands there twice");
    Fill(record, field->first, field->second);
  });
  CheckComplete(path, given, record.serviceKind);
  return record;
}
