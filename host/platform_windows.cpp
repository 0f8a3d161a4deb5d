#include "platform.h"

#include "text.h"

namespace platform {

bool HasMachineFolders() { return false; }

void UseMachine(const std::string &) {}

std::string MachineName() { return "this machine"; }

std::string MakeMachine() { return {}; }

struct MachineLock::Held {};

MachineLock::MachineLock() = default;
MachineLock::~MachineLock() = default;

std::string Problem(bool) { return {}; }

std::string TakeFault() { return {}; }

std::filesystem::path SamplePlugin() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::filesystem::path(path).parent_path() / "sample_mailer.dll";
}

} // namespace platform

int wmain(int count, wchar_t **wide) {
  std::vector<std::string> arguments;
  for (int index = 1; index < count; ++index)
    arguments.push_back(WideToUtf8(wide[index]));
  return RunHost(arguments);
}
