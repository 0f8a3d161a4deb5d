// A Wine server at work keeps writers out, and nothing that only looks like one does.
#include "support/test_machine.h"

#include "win32/linux/public/machine.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// The name of a folder for the server, as the prefix can have it.
std::string MadeUpName() { return "acctkit-wine-" + std::to_string(getpid()); }

// A process that holds a lock on a file which is named after the prefix, in a folder of /tmp.
class Server {
public:
  explicit Server(const std::string &place) : outer("/tmp/" + place) {
    struct stat prefix = {};
    EXPECT_EQ(stat(machine::Folder().c_str(), &prefix), 0);
    char name[64];
    std::snprintf(name, sizeof name, "server-%llx-%llx", static_cast<unsigned long long>(prefix.st_dev),
                  static_cast<unsigned long long>(prefix.st_ino));
    inner = outer / name;
    lock = inner / "lock";
    isNew = fs::create_directory(outer);
    fs::create_directory(inner);
    for (const fs::path &folder : {outer, inner})
      fs::permissions(folder, fs::perms::owner_all);
    const int file = open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    int ready[2];
    EXPECT_EQ(pipe(ready), 0);
    process = fork();
    if (process == 0) {
      struct flock whole = {};
      whole.l_type = F_WRLCK;
      _exit(fcntl(file, F_SETLK, &whole) == 0 && write(ready[1], "", 1) == 1 ? pause() : 1);
    }
    char byte = 0;
    for (const int end : {file, ready[1]})
      close(end);
    EXPECT_EQ(read(ready[0], &byte, 1), 1);
    close(ready[0]);
  }
  ~Server() {
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
    fs::remove_all(inner);
    std::error_code inUse; // a Wine that came meanwhile keeps its folder
    if (isNew)
      fs::remove(outer, inUse);
  }
  Server(const Server &) = delete;
  Server &operator=(const Server &) = delete;

  fs::path outer;
  fs::path inner;
  fs::path lock;

private:
  bool isNew = false;
  pid_t process = 0;
};

class WineServerTest : public MachineTest {
protected:
  void SetUp() override {
    MachineTest::SetUp();
    PutDword(HKEY_CURRENT_USER, ScratchKey, "number", 1);
  }

  static fs::path NameFile() { return machine::Folder() / "wineserver"; }
};

TEST_F(WineServerTest, KeepsWritersOut) {
  std::ofstream(NameFile()) << MadeUpName();
  for (const std::string &place : {".wine-" + std::to_string(getuid()), MadeUpName()}) {
    {
      const Server server(place);
      HKEY key = nullptr;
      EXPECT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "new", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
                ERROR_ACCESS_DENIED);
      EXPECT_NE(machine::FindFault(true).find("a Wine server is running"), std::string::npos);
      EXPECT_EQ(GetDword(HKEY_CURRENT_USER, ScratchKey, "number"), DWORD{1});
    }
    PutDword(HKEY_CURRENT_USER, ScratchKey, "number", 1);
  }
}

// Another user must not be able to keep everybody from writing. Wine takes nothing that others may get at.
TEST_F(WineServerTest, IsFeignedByNobody) {
  std::ofstream(NameFile()) << MadeUpName();
  const auto giveAway = [](const fs::path &path) {
    EXPECT_EQ(geteuid() == 0 ? chown(path.c_str(), 65534, 65534) : chmod(path.c_str(), 0777), 0);
  };
  const auto open = [](const fs::path &path) { fs::permissions(path, fs::perms::all); };
  const auto link = [](const fs::path &path) {
    fs::rename(path, path.string() + ".there");
    fs::create_symlink(path.string() + ".there", path);
  };
  for (const auto &feign : {std::function<void(const fs::path &)>(giveAway), {open}, {link}})
    for (const auto &part : {&Server::outer, &Server::inner, &Server::lock}) {
      const Server server(MadeUpName());
      EXPECT_NE(machine::FindFault(true), "");
      feign(server.*part);
      EXPECT_EQ(machine::FindFault(true), "");
      fs::remove_all((server.*part).string() + ".there");
    }
}

// What has the place of the file with the name, or is too large for one, is neither waited for nor read to its end.
TEST_F(WineServerTest, NameFilesOfAnyKindAreNoHindrance) {
  const std::pair<const char *, std::function<void()>> kinds[] = {
      {"pipe", [] { EXPECT_EQ(mkfifo(NameFile().c_str(), 0666), 0); }},
      {"folder", [] { fs::create_directory(NameFile()); }},
      {"link", [] { fs::create_symlink("/dev/zero", NameFile()); }},
      {"large", [] {
         std::ofstream(NameFile()) << 'x';
         fs::resize_file(NameFile(), uintmax_t{1} << 32);
       }}};
  for (const auto &[name, make] : kinds) {
    SCOPED_TRACE(name);
    make();
    PutDword(HKEY_CURRENT_USER, ScratchKey, "number", 2);
    fs::remove_all(NameFile());
  }
}

} // namespace
