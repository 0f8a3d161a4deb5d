#include "clients/installed_program.h"

#include "clients/registry_key.h"
#include "clients/windows_layout.h"

#include <charconv>
#include <string_view>

namespace {

// Any number that ends in the wanted one passes, so 14.1 does for a 4.
bool HasMajorVersion(const InstalledProgram &program) {
  const auto version = ReadTextFullAccess(HKEY_LOCAL_MACHINE, program.productKey, CurrentVersionValue);
  if (!version)
    return false;
  const size_t dot = version->find('.');
  return dot != std::string::npos && version->substr(0, dot + 1).find(program.majorVersion) != std::string::npos;
}

StoredPath ProgramPath(const InstalledProgram &program) {
  return ReadPathFullAccess(HKEY_LOCAL_MACHINE, ProgramKey(program.file), nullptr);
}

// The number that a text begins with, 0 if it begins with anything else.
int LeadingNumber(std::string_view text) {
  int number = 0;
  if (!text.starts_with('-'))
    std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

} // namespace

bool IsInstalled(const InstalledProgram &program) {
  RegistryKey key;
  return key.KeyExists(HKEY_LOCAL_MACHINE, program.productKey) &&
         key.KeyExists(HKEY_LOCAL_MACHINE, ProgramKey(program.file).c_str()) && ProgramPath(program).exists &&
         (program.majorVersion == nullptr || HasMajorVersion(program));
}

bool ReadName(const InstalledProgram &program, std::string &name) {
  const bool installed = IsInstalled(program);
  name = installed ? program.name : "";
  return installed;
}

bool ReadProgramPath(const InstalledProgram &program, std::string &path) {
  const StoredPath stored = IsInstalled(program) ? ProgramPath(program) : StoredPath{"", false};
  path = stored.exists ? stored.text : "";
  return stored.exists;
}

bool ReadVersion(const InstalledProgram &program, std::string &version) {
  version.clear();
  if (!IsInstalled(program))
    return false;
  version = ReadTextFullAccess(HKEY_LOCAL_MACHINE, program.versionKey, program.versionValue)
                .value_or(program.versionFallback);
  return true;
}

VersionNumbers SplitVersion(const std::string &version, char separator) {
  const std::string_view text = version;
  const size_t end = text.find(separator);
  if (end == std::string_view::npos)
    return {0, 0};
  return {LeadingNumber(text.substr(0, end)), LeadingNumber(text.substr(end + 1))};
}
