// The native half: every test has its own machine folder.
#include "support/test_machine.h"

#include "win32/linux/public/machine.h"

#include <cstdlib>
#include <filesystem>
#include <sys/statvfs.h>

namespace {

// The folder of the running test, removed when the next one starts and at the end.
struct CurrentFolder {
  std::filesystem::path path;
  ~CurrentFolder() { Remove(); }
  void Remove() {
    if (!path.empty())
      std::filesystem::remove_all(path);
  }
};
CurrentFolder folder;

// Where a sync costs nothing, if that is a place from which libraries can be loaded.
std::filesystem::path Place() {
  constexpr const char *Memory = "/dev/shm";
  struct statvfs status;
  return statvfs(Memory, &status) == 0 && (status.f_flag & ST_NOEXEC) == 0 ? Memory
                                                                           : std::filesystem::temp_directory_path();
}

} // namespace

void MachineTest::ResetMachine() {
  folder.Remove();
  std::string name = (Place() / "acctkit-test-XXXXXX").string();
  ASSERT_NE(mkdtemp(name.data()), nullptr);
  folder.path = name;
  std::filesystem::create_directories(folder.path / "drive_c" / "acctkit-test");
  std::filesystem::create_directories(folder.path / "drive_c" / "windows");
  SetEnvironment("ACCTKIT_MACHINE", name);
  machine::TakeFault();
}

void SetEnvironment(const char *name, const std::string &value) { setenv(name, value.c_str(), 1); }
