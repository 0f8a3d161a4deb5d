// Each call of the system that an operation makes fails once, and once the process is killed there: afterwards the
// machine is as it was or as the operation leaves it, and nothing else is on it.
#include "acctkit/acctkit.h"

#include "clients/netscape6/netscape6_mail.h"
#include "clients/netscape6/netscape6_news.h"
#include "clients/registry_key.h"
#include "hooks/system_calls_hook.h"
#include "platform.h"
#include "sample_machine.h"
#include "support/client_machine.h"
#include "win32/linux/machine/system_calls.h"
#include "win32/linux/public/machine.h"
#include "win32/linux/public/transaction.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <map>
#include <optional>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

// What the sample machines need of the host program.
std::string platform::MachineName() { return machine::Folder().string(); }
fs::path platform::SamplePlugin() { return PLUGIN_DIR "/plugin_complete.dll"; }

namespace {

// ---- Operations ----

// An account whose title and texts are the user's name.
int32_t SetUpAccount(decltype(SetupMailAccount) setUp, int32_t client, const char *user, const char *key = "") {
  const std::string host = std::string(user) + ".example";
  const char *const spec[] = {user, user, user, "", host.c_str(), host.c_str(), user, "dialer", ""};
  return setUp(client, spec, key);
}
template <typename Adapter, typename Spec> int32_t SetUpNetscape6(Spec spec, const char *user, std::string key = "") {
  spec.userId = spec.accountName = user;
  machine::Transaction transaction;
  const int32_t answer = Adapter().SetupAccount(spec, key);
  return transaction.Commit() ? answer : 0;
}
int32_t SetUpNetscape6Mail(const char *user, const char *key = "") {
  return SetUpNetscape6<Netscape6Mail>(SampleMailSpec(), user, key);
}
int32_t SetUpNetscape6News(const char *user, const char *key = "") {
  return SetUpNetscape6<Netscape6News>(SampleNewsSpec(0), user, key);
}

int32_t SignUp() {
  const SignupRecord record = {"new", "", "new", "", "", "new", "", "", "http://new.example/", 0};
  return SetupAfterSignup(&record);
}

int32_t MakeSampleMachine() {
  machine::Transaction transaction;
  const bool made = InstallSamples({"oe5", "communicator", "netscape6", "mailer"}).empty();
  return transaction.Commit() && made ? 1 : 0;
}

// The accounts of the sample machine.
constexpr const char *MailAccount = "00000001";
constexpr const char *NewsAccount = "00000002";
constexpr const char *CommunicatorProfile = "home";
constexpr const char *Netscape6Profile = "C:\\WINDOWS\\Application Data\\Mozilla\\Users50\\default\\4x7q2k1m.slt";

struct Operation {
  const char *name;
  int32_t (*run)();
  const char *machine = "sample";
  bool tells = true; // whether the answer tells if it was done
};
const Operation Operations[] = {
    {"sign-up", SignUp, "sample", false}, // the answer is the plug-in's
    {"Outlook Express, new mail", [] { return SetUpAccount(SetupMailAccount, 0, "new"); }},
    {"Outlook Express, old mail", [] { return SetUpAccount(SetupMailAccount, 0, "new", MailAccount); }},
    {"Outlook Express, new news", [] { return SetUpAccount(SetupNewsAccount, 0, "new"); }},
    {"Outlook Express, old news", [] { return SetUpAccount(SetupNewsAccount, 0, "new", NewsAccount); }},
    {"Communicator, new mail", [] { return SetUpAccount(SetupMailAccount, 1, "new"); }},
    {"Communicator, old mail", [] { return SetUpAccount(SetupMailAccount, 1, "new", CommunicatorProfile); }},
    {"Communicator, new news", [] { return SetUpAccount(SetupNewsAccount, 1, "new"); }},
    {"Communicator, old news", [] { return SetUpAccount(SetupNewsAccount, 1, "new", CommunicatorProfile); }},
    {"Netscape 6, new mail", [] { return SetUpNetscape6Mail("new"); }},
    {"Netscape 6, old mail", [] { return SetUpNetscape6Mail("new", Netscape6Profile); }},
    {"Netscape 6, new news", [] { return SetUpNetscape6News("new"); }},
    {"Netscape 6, old news", [] { return SetUpNetscape6News("new", Netscape6Profile); }},
    {"OutlookDisable", OutlookDisable},
    {"Outlook Express, start page", [] { return SetBrowserStartPage(0, nullptr, "http://new.example/"); }},
    {"Communicator, start page", [] { return SetBrowserStartPage(1, CommunicatorProfile, "http://new.example/"); }},
    {"machine new", MakeSampleMachine, "empty"},
    {"registry call alone", [] { return WriteStringValue(HKEY_CURRENT_USER, "Software", "new", "text"); }},
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

// Runs a function in a process of its own. Whether the plan killed it.
template <typename Function> bool Kill(const CallPlan &plan, Function function) {
  const pid_t process = fork();
  if (process == 0) {
    const WatchedCalls watched(plan);
    function();
    _exit(0);
  }
  int status = 0;
  waitpid(process, &status, 0);
  return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

// Whoever opens the machine next ends what was broken off.
void Recover() {
  machine::Transaction transaction;
  transaction.Commit();
}

// What a call of that name may fail with.
std::vector<int> ErrorsOf(std::string_view name) {
  if (name == "Open")
    return {EIO, EACCES, EMFILE};
  if (name == "Create")
    return {ENOSPC, EIO, EACCES, EMFILE};
  return IsChange(name) ? std::vector{ENOSPC, EIO, EACCES} : std::vector{EIO};
}

// What is wrong with the operation when a plan befalls it, or when a process was killed in it; empty for nothing.
std::string Judge(const Operation &operation, const CleanRun &clean, const std::optional<CallPlan> &plan) {
  int32_t answer = 0;
  if (plan) {
    const WatchedCalls watched(plan);
    answer = operation.run();
  }
  const std::string fault = machine::TakeFault();
  Recover();
  const State state = FindState(clean);
  const bool isRefusal = plan && plan->error == EACCES; // of a file or hive for itself
  if (!state.isMixed || (!isRefusal && !state.isOld && !state.isNew))
    return "in between" + state.words;
  if (plan && !state.isNew && fault.empty())
    return "nothing is said" + state.words;
  if (plan && !isRefusal && operation.tells && answer != (state.isNew ? clean.answer : 0))
    return "it answers " + std::to_string(answer) + state.words + ": " + fault;

  // Called again it works as at first, or as the second time.
  answer = operation.run();
  const std::string another = machine::TakeFault();
  const bool isRight = state.isOld   ? answer == clean.answer && ReadMachine() == clean.after
                       : state.isNew ? answer == clean.answerOfTwo && ReadMachine() == clean.afterTwo
                                     : answer == clean.answer;
  return isRight && another.empty() ? "" : "called again it answers " + std::to_string(answer) + ": " + another;
}

class FaultTest : public MachineTest {
protected:
  fs::path root; // the test's own folder, which has the machines

  void SetUp() override {
    MachineTest::SetUp();
    root = machine::Folder();
    fs::create_directories(root / "empty/drive_c/windows");
    fs::create_directories(root / "sample/drive_c/windows");
    SetEnvironment("ACCTKIT_PLUGIN_NAME", "Mailer");
    SetEnvironment("ACCTKIT_PLUGIN_PATH", "C:\\Program Files\\Harveld\\SampleMailer\\mailer.exe");
    SetEnvironment("ACCTKIT_PLUGIN_KEEP", "/dev/null");
    SetEnvironment("ACCTKIT_MACHINE", root / "sample");
    EXPECT_EQ(MakeSampleMachine(), 1);
    EXPECT_EQ(SetUpAccount(SetupNewsAccount, 0, "old"), 1);
    EXPECT_EQ(SetUpAccount(SetupNewsAccount, 1, "old", CommunicatorProfile), 1);
    EXPECT_EQ(SetUpNetscape6Mail("old", Netscape6Profile) + SetUpNetscape6News("old", Netscape6Profile), 2);
    SetEnvironment("ACCTKIT_MACHINE", root / "machine");
  }

  // Makes the machine a fresh copy of the operation's.
  void Copy(const Operation &operation) const {
    fs::remove_all(root / "machine");
    fs::copy(root / operation.machine, root / "machine", fs::copy_options::recursive);
    machine::TakeFault();
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

TEST_F(FaultTest, AnOperationIsWholeOrNotDone) {
  for (const Operation &operation : Operations) {
    const CleanRun clean = RunCleanly(operation);
    EXPECT_NE(clean.before, clean.after) << operation.name;
    EXPECT_EQ(clean.answer, 1) << operation.name;
    const auto judge = [&](const std::string &what, const std::optional<CallPlan> &plan) {
      EXPECT_EQ(Judge(operation, clean, plan), "") << operation.name << ", " << what;
    };
    const auto fail = [&](const std::string &call, const CallPlan &plan) {
      Copy(operation);
      judge(call + ": " + std::strerror(plan.error), plan);
    };
    size_t number = 0;
    size_t changes = 0;
    for (const std::string &call : clean.calls) {
      const std::string name = call.substr(0, call.find(' '));
      ++number;
      for (const int error : ErrorsOf(name))
        fail(call, {.number = number, .error = error});
      changes += IsChange(name);
      for (const bool powerCut : {false, true})
        if (IsChange(name)) {
          Copy(operation);
          EXPECT_TRUE(Kill({.number = changes, .losesUnsynced = powerCut}, operation.run));
          judge(call + (powerCut ? ": power cut" : ": killed"), {});
        }
    }
    for (const char *call : {"Open", "Create", "Read", "Write", "Lock", "Sync", "Rename", "MakeFolder"})
      fail(std::string("each ") + call, {.name = call, .error = EIO});
  }
}

TEST_F(FaultTest, WhatIsAnsweredSurvivesAPowerCut) {
  for (const Operation &operation : Operations) {
    const CleanRun clean = RunCleanly(operation);
    Copy(operation);
    EXPECT_TRUE(Kill({.name = "Wait", .losesUnsynced = true}, [&] {
      operation.run();
      machine::sys::Wait();
    }));
    Recover();
    EXPECT_TRUE(FindState(clean).isNew) << operation.name << FindState(clean).words;
    for (const std::string &call : clean.calls)
      EXPECT_TRUE(!call.starts_with("Rename") || std::ranges::count(clean.calls, call) == 1) << call;
  }
}

TEST_F(FaultTest, AKilledRecoveryIsMadeUpFor) {
  const Operation &operation = Operations[0];
  const CleanRun clean = RunCleanly(operation);
  const auto kill = [&](size_t number) {
    Copy(operation);
    return Kill({.number = number}, operation.run);
  };
  for (size_t number = 1; kill(number); ++number)
    for (size_t second = 1; kill(number) && Kill({.number = second, .losesUnsynced = true}, Recover); ++second)
      EXPECT_EQ(Judge(operation, clean, {}), "")
          << "change " << number << ", then change " << second << " of the recovery";
}

} // namespace
