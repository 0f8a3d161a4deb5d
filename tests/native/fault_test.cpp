// Each call of the system that an operation makes fails once, and once the process is killed there: afterwards the
// machine is as it was or as the operation leaves it, and nothing else is on it.
#include "acctkit/acctkit.h"

#include "clients/netscape6/netscape6_mail.h"
#include "clients/netscape6/netscape6_news.h"
#include "clients/service_names.h"
#include "hooks/system_calls_hook.h"
#include "platform.h"
#include "sample_machine.h"
#include "support/client_machine.h"
#include "win32/linux/machine/system_calls.h"
#include "win32/linux/public/machine.h"
#include "win32/linux/public/transaction.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

// What the sample machines need of the host program.
std::string platform::MachineName() { return machine::Folder().string(); }
fs::path platform::SamplePlugin() { return PLUGIN_DIR "/plugin_complete.dll"; }

namespace {

// ---- Operations ----

using SetUpExport = int32_t (*)(int32_t client, const char *const *spec, const char *key);

// The user's name is in whatever is written.
int32_t SetUpAccount(SetUpExport setUp, int32_t client, const std::string &user, const char *title, const char *key) {
  const std::string host = user + ".example";
  const char *const spec[] = {user.c_str(), user.c_str(), title,    "", host.c_str(),
                              host.c_str(), user.c_str(), "dialer", ""};
  return setUp(client, spec, key);
}
template <typename Adapter, typename Spec>
int32_t SetUpNetscape6(Spec spec, const char *user, const char *title, std::string key) {
  spec.userId = user;
  spec.accountName = title;
  machine::Transaction transaction;
  const int32_t answer = Adapter().SetupAccount(spec, key);
  return transaction.Commit() ? answer : 0;
}
constexpr auto SetUpNetscape6Mail = SetUpNetscape6<Netscape6Mail, MailAccountSpec>;
constexpr auto SetUpNetscape6News = SetUpNetscape6<Netscape6News, NewsAccountSpec>;
const std::string Netscape6Profile = MozillaFolder() + "\\Users50\\old\\zuvio0.slt";

int32_t SignUp() {
  const SignupRecord record = {"new", "", "new", "", "", "new", "", "", "http://new.example/", 0};
  return SetupAfterSignup(&record);
}

int32_t MakeSampleMachine() {
  machine::Transaction transaction;
  const bool made = InstallSamples({"oe5", "communicator", "netscape6", "mailer"}).empty();
  return transaction.Commit() && made ? 1 : 0;
}

struct Operation {
  const char *name;
  int32_t (*run)();
  const char *machine = "prepared";
  bool tells = true; // whether the answer tells if it was done
};
const Operation Operations[] = {
    {"sign-up", SignUp, "prepared", false}, // the answer is the plug-in's
    {"Outlook Express, new mail", [] { return SetUpAccount(SetupMailAccount, 0, "new", "new", ""); }},
    {"Outlook Express, old mail", [] { return SetUpAccount(SetupMailAccount, 0, "new", "new", "00000001"); }},
    {"Outlook Express, new news", [] { return SetUpAccount(SetupNewsAccount, 0, "new", "new", ""); }},
    {"Outlook Express, old news", [] { return SetUpAccount(SetupNewsAccount, 0, "new", "new", "00000002"); }},
    {"Communicator, new mail", [] { return SetUpAccount(SetupMailAccount, 1, "new", "new", ""); }},
    {"Communicator, old mail", [] { return SetUpAccount(SetupMailAccount, 1, "new", "old", "old"); }},
    {"Communicator, new news", [] { return SetUpAccount(SetupNewsAccount, 1, "new", "new", ""); }},
    {"Communicator, old news", [] { return SetUpAccount(SetupNewsAccount, 1, "new", "old", "old"); }},
    {"Netscape 6, new mail", [] { return SetUpNetscape6Mail(SampleMailSpec(), "new", "new", ""); }},
    {"Netscape 6, old mail", [] { return SetUpNetscape6Mail(SampleMailSpec(), "new", "old", Netscape6Profile); }},
    {"Netscape 6, new news", [] { return SetUpNetscape6News(SampleNewsSpec(0), "new", "new", ""); }},
    {"Netscape 6, old news", [] { return SetUpNetscape6News(SampleNewsSpec(0), "new", "old", Netscape6Profile); }},
    {"OutlookDisable", OutlookDisable},
    {"Outlook Express, start page", [] { return SetBrowserStartPage(0, nullptr, "http://new.example/"); }},
    {"Communicator, start page", [] { return SetBrowserStartPage(1, "old", "http://new.example/"); }},
    {"machine new", MakeSampleMachine, "empty"},
};

// ---- Machines ----

// The files of a machine by their paths in it.
using Files = std::map<std::string, std::string>;

// Drops the times at which the keys of a hive were made.
void DropTimes(std::string &hive) {
  for (const std::string_view mark : {"] ", "#time="})
    for (size_t at = 0; (at = hive.find(mark, at)) != std::string::npos; ++at)
      hive.erase(at, hive.find('\n', at) - at);
}

Files ReadMachine() {
  Files files;
  for (auto entry = fs::recursive_directory_iterator(machine::Folder()); entry != fs::end(entry); ++entry) {
    const fs::path path = entry->path().lexically_relative(machine::Folder());
    if (path == ".acctkit/last" || path == ".acctkit/lock") { // the layer's own, which stays
      entry.disable_recursion_pending();
    } else if (entry->is_regular_file()) {
      std::ifstream file(entry->path(), std::ios::binary);
      std::string &bytes = files[path];
      bytes.assign(std::istreambuf_iterator<char>(file), {});
      if (path.extension() == ".reg")
        DropTimes(bytes);
    } else if (path.parent_path() == ".acctkit") {
      files[path]; // a change that was broken off
    }
  }
  return files;
}

// An operation when nothing fails, and when it is called again.
struct CleanRun {
  Files before, after, afterTwo;
  int32_t answer = 0, answerOfTwo = 0;
  std::vector<std::string> calls;
};

// How the files of the machine stand to those.
struct State {
  bool isOld = true, isNew = true;
  bool isMixed = true; // each file for itself is old, or new, or is made and has only some of what was to be in it
  std::string words;   // what differs
};
State FindState(const CleanRun &clean) {
  const Files now = ReadMachine();
  const auto same = [&](const Files &files, const std::string &path) {
    return now.count(path) == files.count(path) && (!now.contains(path) || now.at(path) == files.at(path));
  };
  Files all = now;
  for (const Files *files : {&clean.before, &clean.after})
    all.insert(files->begin(), files->end());
  State state;
  for (const auto &[path, bytes] : all) {
    const bool isOld = same(clean.before, path);
    const bool isNew = same(clean.after, path);
    state.isOld &= isOld;
    state.isNew &= isNew;
    state.isMixed &= isOld || isNew || (!clean.before.contains(path) && clean.after.contains(path));
    if (!isOld || !isNew)
      state.words += ", " + path + (isOld ? " is old" : isNew ? " is new" : " is odd");
  }
  return state;
}

// ---- Faults ----

// Runs a function in a process of its own. Its answer; none if it was killed.
template <typename Function> std::optional<std::string> InProcess(Function function) {
  constexpr size_t Size = 1 << 20;
  static char *const answer =
      static_cast<char *>(mmap(nullptr, Size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  *answer = '\0';
  const pid_t process = fork();
  if (process == 0) {
    std::snprintf(answer, Size, "%s", std::string(function()).c_str());
    _exit(0);
  }
  int status = 0;
  waitpid(process, &status, 0);
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL)
    return std::nullopt;
  return status == 0 ? answer : "the process ended with status " + std::to_string(status);
}

// Whether a call changes anything: a kill before another one leaves what a kill before the next change leaves.
bool IsChange(const std::string &call) {
  return std::ranges::none_of(std::array{"Open", "Read", "Lock", "Sync"},
                              [&](const char *name) { return call.starts_with(name); });
}

// What a call may fail with.
std::vector<int> ErrorsOf(const std::string &call) {
  if (call.starts_with("Open"))
    return {EIO, EACCES, EMFILE};
  if (call.starts_with("Create"))
    return {ENOSPC, EIO, EACCES, EMFILE};
  return IsChange(call) ? std::vector{ENOSPC, EIO, EACCES} : std::vector{EIO};
}

// Whoever opens the machine next ends what was broken off.
void Recover() {
  machine::Transaction transaction;
  transaction.Commit();
}

class FaultTest : public ClientTest {
protected:
  fs::path root; // the test's own folder, which has the machines

  void SetUp() override {
    ClientTest::SetUp();
    root = machine::Folder();
    fs::create_directories(root / "empty/drive_c/windows");
    fs::create_directories(root / "prepared/drive_c/acctkit-test");
    SetEnvironment("ACCTKIT_MACHINE", root / "prepared");
    InstallOutlookExpress("5,50,4522,1200");
    InstallCommunicator();
    InstallNetscape6();
    InstallPlugin("plugin_complete");
    PutString(HKEY_CURRENT_USER, "Software\\Microsoft\\Internet Explorer\\Main", "Start Page", "http://old.example/");
    for (const int32_t client : {0, 1})
      EXPECT_EQ(SetUpAccount(SetupMailAccount, client, "old", "old", "") +
                    SetUpAccount(SetupNewsAccount, client, "old", "old", client == 0 ? "" : "old"),
                2);
    EXPECT_EQ(SetUpNetscape6Mail(SampleMailSpec(), "old", "old", "") +
                  SetUpNetscape6News(SampleNewsSpec(0), "old", "old", Netscape6Profile),
              2);
    for (const char *account : {"\\00000001", "\\00000002"}) {
      PutDword(HKEY_CURRENT_USER, std::string(AccountsKey) + account, "Connection Type", 2);
      PutString(HKEY_CURRENT_USER, std::string(AccountsKey) + account, "Connectoid", ServiceConnectionName);
    }
    SetEnvironment("ACCTKIT_MACHINE", root / "machine");
  }

  // Makes the machine a fresh copy of the operation's.
  void Copy(const Operation &operation) const {
    fs::remove_all(root / "machine");
    fs::copy(root / operation.machine, root / "machine", fs::copy_options::recursive);
  }

  // Runs a function on the machine in a process of its own, which is killed by the plan.
  template <typename Function> static void Kill(const CallPlan &plan, Function function) {
    const auto end = InProcess([&] {
      const WatchedCalls watched(plan);
      function();
      return "";
    });
    EXPECT_EQ(end, std::nullopt);
  }

  CleanRun RunCleanly(const Operation &operation) const {
    CleanRun clean;
    Copy(operation);
    clean.before = ReadMachine();
    {
      const WatchedCalls watched;
      clean.answer = operation.run();
      clean.calls = watched.All();
    }
    clean.after = ReadMachine();
    clean.answerOfTwo = operation.run();
    clean.afterTwo = ReadMachine();
    return clean;
  }
};

// What is wrong with the operation when a plan befalls it, or when an earlier process was killed in it; empty for
// nothing.
std::string Judge(const Operation &operation, const CleanRun &clean, const std::optional<CallPlan> &plan) {
  int32_t answer = 0;
  if (plan) {
    const WatchedCalls watched(*plan);
    answer = operation.run();
  }
  const std::string fault = machine::TakeFault();
  Recover();
  const State found = FindState(clean);
  const bool isRefusal = plan && plan->error == EACCES; // of a file or hive for itself
  if (!found.isMixed || (!isRefusal && !found.isOld && !found.isNew))
    return "in between" + found.words;
  if (plan && !found.isNew && fault.empty())
    return "nothing is said" + found.words;
  if (plan && !isRefusal && operation.tells && answer != (found.isNew ? clean.answer : 0))
    return "it answers " + std::to_string(answer) + found.words + ": " + fault;

  // Called again it works as at first, or as the second time.
  answer = operation.run();
  const std::string another = machine::TakeFault();
  const bool isRight = found.isOld   ? answer == clean.answer && ReadMachine() == clean.after
                       : found.isNew ? answer == clean.answerOfTwo && ReadMachine() == clean.afterTwo
                                     : answer == clean.answer;
  return isRight && another.empty() ? "" : "called again it answers " + std::to_string(answer) + ": " + another;
}

TEST_F(FaultTest, AnOperationIsWholeOrNotDone) {
  for (const Operation &operation : Operations) {
    const CleanRun clean = RunCleanly(operation);
    EXPECT_NE(clean.before, clean.after) << operation.name;
    EXPECT_EQ(clean.answer, 1) << operation.name;
    const auto judge = [&](const std::string &fault, const std::optional<CallPlan> &plan) {
      EXPECT_EQ(InProcess([&] { return Judge(operation, clean, plan); }), "") << operation.name << ", " << fault;
    };
    const auto fail = [&](const std::string &fault, const CallPlan &plan) {
      Copy(operation);
      judge(fault + ": " + std::strerror(plan.error), plan);
    };
    for (size_t number = 1; number <= clean.calls.size(); ++number) {
      const std::string &call = clean.calls[number - 1];
      const std::string fault = std::to_string(number) + ". " + call;
      for (const int error : ErrorsOf(call))
        fail(fault, {.number = number, .error = error});
      for (const bool powerCut : {false, true})
        if (IsChange(call)) {
          Copy(operation);
          Kill({.number = number, .losesUnsynced = powerCut}, operation.run);
          judge(fault + (powerCut ? ": power cut" : ": killed"), {});
        }
    }
    for (const char *call : {"Open", "Create", "Read", "Write", "Lock", "Sync", "Rename", "MakeFolder"})
      fail(std::string("each ") + call, {.name = call, .error = EIO});
  }
}

TEST_F(FaultTest, WhatIsAnsweredSurvivesAPowerCut) {
  for (const Operation &operation : Operations) {
    const CleanRun clean = RunCleanly(operation);
    for (const std::string &call : clean.calls)
      EXPECT_TRUE(!call.starts_with("Rename") || std::ranges::count(clean.calls, call) == 1) << call;
    Copy(operation);
    Kill({.name = "Wait", .losesUnsynced = true}, [&] {
      operation.run();
      machine::sys::Wait();
    });
    Recover();
    const State state = FindState(clean);
    EXPECT_TRUE(state.isNew) << operation.name << state.words;
  }
}

TEST_F(FaultTest, AKilledRecoveryIsMadeUpFor) {
  const Operation &operation = Operations[0];
  const CleanRun clean = RunCleanly(operation);
  for (size_t number = 1; number <= clean.calls.size(); ++number) {
    const auto kill = [&] {
      Copy(operation);
      Kill({.number = number}, operation.run);
    };
    if (!IsChange(clean.calls[number - 1]))
      continue;
    kill();
    const std::vector<std::string> calls = [] {
      const WatchedCalls watched;
      Recover();
      return watched.All();
    }();
    for (size_t recovery = 1; recovery <= calls.size(); ++recovery)
      if (IsChange(calls[recovery - 1])) {
        kill();
        Kill({.number = recovery, .losesUnsynced = true}, Recover);
        EXPECT_EQ(InProcess([&] { return Judge(operation, clean, {}); }), "")
            << clean.calls[number - 1] << ", then " << calls[recovery - 1];
      }
  }
}

} // namespace
