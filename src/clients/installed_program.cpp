#include "clients/installed_program.h"

#include "clients/registry_key.h"

namespace {

// The test is for the number anywhere up to the first dot, so 14.1 passes for a 4.
bool HasMajorVersion(const InstalledProgram &program) {
  std::string version;
  if (!ReadText(HKEY_LOCAL_MACHINE, program.productKey, "CurrentVersion", version))
    return false;
  const size_t dot = version.find('.');
  return dot != std::string::npos && version.substr(0, dot + 1).find(program.majorVersion) != std::string::npos;
}

} // namespace

int32_t IsInstalled(const InstalledProgram &program) {
  RegistryKey key;
  std::string path;
  return key.KeyExists(HKEY_LOCAL_MACHINE, program.productKey) &&
                 key.KeyExists(HKEY_LOCAL_MACHINE, program.programKey) &&
                 ReadPath(HKEY_LOCAL_MACHINE, program.programKey, nullptr, path) &&
                 (program.majorVersion == nullptr || HasMajorVersion(program))
             ? 1
             : 0;
}

int32_t ReadName(const InstalledProgram &program, std::string &name) {
  const int32_t installed = IsInstalled(program);
  name = installed ? program.name : "";
  return installed;
}

int32_t ReadProgramPath(const InstalledProgram &program, std::string &path) {
  if (IsInstalled(program) && ReadPath(HKEY_LOCAL_MACHINE, program.programKey, nullptr, path))
    return 1;
  path.clear();
  return 0;
}

int32_t ReadVersion(const InstalledProgram &program, std::string &version) {
  version.clear();
  if (!IsInstalled(program))
    return 0;
  if (!ReadText(HKEY_LOCAL_MACHINE, program.versionKey, program.versionValue, version))
    version = program.versionFallback;
  return 1;
}
