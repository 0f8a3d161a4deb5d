// Processes and threads that write at the same time lose nothing of each other.
#include "acctkit/acctkit.h"

#include "clients/registry_key.h"
#include "support/client_machine.h"

#include <map>
#include <set>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

// Starts a function in a process of its own.
template <typename Function> pid_t Start(Function function) {
  const pid_t process = fork();
  if (process == 0) {
    function();
    _exit(::testing::Test::HasFailure() ? 1 : 0);
  }
  return process;
}

// Four processes with two threads each, by the exports.
TEST_F(ClientTest, ExportsLoseNothingOfEachOther) {
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
  for (const pid_t process : processes) {
    int status = 1;
    waitpid(process, &status, 0);
    EXPECT_EQ(status, 0);
  }

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

} // namespace
