// Processes that write at the same time, or whose disk is full: nothing is lost.
#include "acctkit/acctkit.h"

#include "clients/registry_key.h"
#include "stores/prefs_file.h"
#include "support/client_machine.h"
#include "win32/linux/public/machine.h"
#include "win32/linux/public/transaction.h"

#include <csignal>
#include <map>
#include <memory>
#include <set>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr const char *PrefsPath = "C:\\acctkit-test\\prefs.js";

class CrashTest : public ClientTest {
protected:
  // Runs a function in a process of its own.
  template <typename Function> static pid_t Start(Function function) {
    const pid_t process = fork();
    if (process == 0) {
      function();
      _exit(::testing::Test::HasFailure() ? 1 : 0);
    }
    return process;
  }
  static int Wait(pid_t process) {
    int status = 0;
    waitpid(process, &status, 0);
    return status;
  }

  static std::string Number(int number) { return std::to_string(number); }

  // Only what belongs to the machine is there: no file that a replacement left.
  static std::vector<std::string> HiddenFiles() {
    std::vector<std::string> hidden;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(machine::Folder()))
      if (const std::string name = entry.path().filename(); name.starts_with(".") && name != ".acctkit")
        hidden.push_back(entry.path().string());
    return hidden;
  }
};

// Hive and prefs.js hold the same letter all through, another one with every round.
void WriteRound(char letter) {
  for (const char *name : {"first", "second"})
    PutString(HKEY_CURRENT_USER, ScratchKey, name, std::string(2000, letter));
  auto prefs = std::make_unique<PrefsText>();
  AppendPrefLine(*prefs, (std::string(50000, letter) + "\n").c_str());
  SavePrefsText(PrefsPath, *prefs);
}

// Two processes with two threads each.
TEST_F(CrashTest, WritersLoseNothing) {
  constexpr int Count = 75;
  const auto writeInThread = [](const std::string &name) {
    for (int number = 0; number < Count; ++number) {
      PutDword(HKEY_CURRENT_USER, ScratchKey, (name + Number(number)).c_str(), 1);
      machine::Transaction transaction; // reads, decides and writes
      const DWORD total = GetDword(HKEY_CURRENT_USER, ScratchKey, "total").value_or(0);
      PutDword(HKEY_CURRENT_USER, ScratchKey, "total", total + 1);
      EXPECT_TRUE(transaction.Commit());
    }
  };
  const auto write = [&](const std::string &name) {
    return Start([&writeInThread, name] {
      std::thread other(writeInThread, name + "'s other ");
      writeInThread(name);
      other.join();
    });
  };
  const pid_t first = write("first");
  const pid_t second = write("second");
  EXPECT_EQ(Wait(first), 0);
  EXPECT_EQ(Wait(second), 0);
  EXPECT_EQ(GetDword(HKEY_CURRENT_USER, ScratchKey, "total"), DWORD{4 * Count});
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, ScratchKey).size(), size_t{4 * Count + 1});
}

// Four processes with two threads each, by the exports.
TEST_F(CrashTest, ExportsLoseNothingOfEachOther) {
  constexpr int Count = 10;
  InstallOutlookExpress("5,50,4522,1200");
  InstallCommunicator();
  std::vector<std::string> names;
  for (char process = 'a'; process <= 'd'; ++process)
    for (char thread = 'a'; thread <= 'b'; ++thread)
      for (int number = 0; number < Count; ++number)
        names.push_back({process, thread, static_cast<char>('0' + number)});
  const auto writeInThread = [&names](size_t begin) {
    for (size_t index = begin; index < begin + Count; ++index) {
      const std::string &name = names[index];
      const std::string host = name + ".example";
      const char *const spec[] = {"user", "sender",     name.c_str(), "",     host.c_str(),
                                  "name", "taro@zuvio", "dialer",     nullptr};
      EXPECT_EQ(SetupMailAccount(0, spec, ""), 1);
      EXPECT_EQ(SetupNewsAccount(1, spec, "profile"), 1);
    }
  };
  std::vector<pid_t> processes;
  for (size_t begin = 0; begin < names.size(); begin += 2 * Count)
    processes.push_back(Start([&writeInThread, begin] {
      std::thread other(writeInThread, begin + Count);
      writeInThread(begin);
      other.join();
    }));
  for (const pid_t process : processes)
    EXPECT_EQ(Wait(process), 0);

  std::set<std::string> titles;
  for (const std::string &account : SubkeyNames(HKEY_CURRENT_USER, AccountsKey))
    titles.insert(GetString(HKEY_CURRENT_USER, std::string(AccountsKey) + '\\' + account, "Account Name").value_or(""));
  const std::string folder = CommunicatorFolder() + "\\Users\\profile\\";
  const std::string map = GetFile(folder + "news\\fat").value_or("");
  const std::string prefs = GetFile(folder + "prefs.js").value_or("");
  std::map<std::string, int> lost;
  for (const std::string &name : names) {
    lost["accounts"] += !titles.contains(name);
    lost["map records"] += map.find("newsrc-" + name) == std::string::npos;
    lost["news lines"] += prefs.find('"' + name + ".example\"") == std::string::npos;
  }
  EXPECT_EQ(lost, (std::map<std::string, int>{{"accounts", 0}, {"map records", 0}, {"news lines", 0}}));
}

// A limit on the size of files stands for the full disk: a write fails in its middle.
TEST_F(CrashTest, AFullDiskLeavesTheOldFiles) {
  WriteRound('a');
  const int status = Wait(Start([] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {1000, 1000};
    setrlimit(RLIMIT_FSIZE, &limit);
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, ScratchKey, 0, KEY_ALL_ACCESS, &key), ERROR_SUCCESS);
    const DWORD number = 1;
    EXPECT_NE(RegSetValueExA(key, "number", 0, REG_DWORD, reinterpret_cast<const BYTE *>(&number), sizeof number),
              ERROR_SUCCESS);
    EXPECT_NE(machine::TakeFault().find("user.reg: File too large"), std::string::npos);
    EXPECT_EQ(RegQueryValueExA(key, "number", nullptr, nullptr, nullptr, nullptr), ERROR_FILE_NOT_FOUND);
    auto prefs = std::make_unique<PrefsText>();
    LoadPrefsText(PrefsPath, *prefs);
    AppendPrefLine(*prefs, "line\n");
    SavePrefsText(PrefsPath, *prefs);
    EXPECT_NE(machine::TakeFault().find("prefs.js"), std::string::npos);
  }));
  EXPECT_EQ(status, 0);
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, ScratchKey, "second"), std::string(2000, 'a'));
  EXPECT_EQ(GetFile(PrefsPath), std::string(50000, 'a') + "\n");
  EXPECT_EQ(HiddenFiles(), std::vector<std::string>());
}

} // namespace
