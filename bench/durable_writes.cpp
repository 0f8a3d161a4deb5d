// Times what one change of five files takes that is put on disk by hand, with the writes, renames and syncs that a
// sign-up on the sample machine makes: `durable_writes FOLDER`. FOLDER is a sample machine; its files are written with
// their own bytes.
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::string Bytes(const fs::path &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void Write(const fs::path &path, const std::string &bytes, bool syncs) {
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL, 0600);
  if (file < 0 || write(file, bytes.data(), bytes.size()) < 0 || (syncs && fsync(file) != 0))
    std::perror(path.c_str());
  close(file);
}

void SyncFolder(const fs::path &folder) {
  const int file = open(folder.c_str(), O_RDONLY | O_DIRECTORY);
  if (fsync(file) != 0)
    std::perror(folder.c_str());
  close(file);
}

struct Target {
  fs::path path;
  std::string bytes;
  bool isNew;
};

// All at once, behind a list of them that is on disk before the first one is in place.
void Replace(const fs::path &store, const std::vector<Target> &targets) {
  const fs::path staging = store / "by-hand";
  mkdir(staging.c_str(), 0700);
  for (size_t number = 0; number < targets.size(); ++number) {
    if (!targets[number].isNew)
      Write(staging / (std::to_string(number) + ".old"), targets[number].bytes, false);
    Write(staging / std::to_string(number), targets[number].bytes, true);
  }
  const bool needsList = targets.size() > 1;
  Write(staging / "list", std::string(500, 'x'), needsList);
  if (needsList)
    SyncFolder(staging);
  rename(staging.c_str(), (store / "decided").c_str());
  if (needsList)
    SyncFolder(store);
  fs::path folder;
  for (size_t number = 0; number < targets.size(); ++number)
    rename((store / "decided" / std::to_string(number)).c_str(), targets[number].path.c_str());
  for (const Target &target : targets)
    if (target.path.parent_path() != folder)
      SyncFolder(folder = target.path.parent_path());
  fs::remove_all(store / "decided");
}

} // namespace

int main(int, char **arguments) {
  const fs::path machine = arguments[1];
  const fs::path users = machine / "drive_c/Program Files/Netscape/Communicator/Users";
  const std::string prefs = Bytes(users / "home/prefs.js");
  const std::string systemHive = Bytes(machine / "system.reg");
  const std::string userHive = Bytes(machine / "user.reg");
  const auto begin = std::chrono::steady_clock::now();
  mkdir((users / "new").c_str(), 0700);
  mkdir((users / "new/mail").c_str(), 0700);
  SyncFolder(users);
  SyncFolder(users / "new");
  Replace(machine / ".acctkit", {{users / "new/prefs.js", prefs, true},
                                 {users / "prefs.js", prefs, true},
                                 {machine / "system.reg", systemHive, false},
                                 {machine / "user.reg", userHive, false}});
  Replace(machine / ".acctkit",
          {{machine / "drive_c/Program Files/Harveld/SampleMailer/settings.txt", std::string(200, 'x'), true}});
  const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
  std::printf("%.3f ms\n", time.count());
}
