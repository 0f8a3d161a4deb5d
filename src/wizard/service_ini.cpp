#include "wizard/service_ini.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr const char *FileName = "service.ini";
constexpr size_t PathSize = MAX_PATH;
constexpr DWORD ValueSize = 256;

} // namespace

int32_t GetProgramFolder(char *buffer, DWORD size) {
  GetModuleFileNameA(nullptr, buffer, size);
  buffer[size - 1] = '\0'; // older systems don't terminate a path that they cut
  char *behind = buffer;   // the last backslash that isn't a second byte
  for (char *at = buffer; *at != '\0'; ++at) {
    if (*at == '\\')
      behind = at + 1;
    else if (IsDBCSLeadByte(static_cast<BYTE>(*at)) && at[1] != '\0')
      ++at;
  }
  if (behind != buffer)
    *behind = '\0';
  return 1;
}

std::string ServiceIniPath() {
  char folder[PathSize] = "";
  GetProgramFolder(folder, sizeof folder);
  const std::string path = std::string(folder) + FileName;
  return path.size() < PathSize ? path : std::string();
}

int32_t ReadServiceString(const std::string &iniPath, const char *section, const char *key, std::string &out) {
  out.clear();
  char value[ValueSize] = "";
  if (iniPath.empty() || GetPrivateProfileStringA(section, key, "", value, sizeof value, iniPath.c_str()) == 0)
    return 0;
  out = value;
  return 1;
}

std::vector<std::string> ReadDomains(const char *section) {
  const std::string path = ServiceIniPath();
  std::string text;
  ReadServiceString(path, section, "server_max", text);
  const long highest = std::strtol(text.c_str(), nullptr, 10);
  std::vector<std::string> domains;
  for (long number = 1; number <= highest; ++number) {
    if (!ReadServiceString(path, section, ("disp" + std::to_string(number)).c_str(), text))
      break;
    domains.push_back(text);
  }
  return domains;
}
