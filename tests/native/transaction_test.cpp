// What a transaction shows to whom, what is left of one that was broken off, and an undo.
#include "support/test_machine.h"

#include "acctkit/acctkit.h"
#include "clients/registry_key.h"
#include "hooks/system_calls_hook.h"
#include "stores/file_handle.h"
#include "win32/linux/public/machine.h"
#include "win32/linux/public/transaction.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sys/stat.h>
#include <thread>
#include <tuple>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr const char *Path = "C:\\acctkit-test\\file.txt";

class TransactionTest : public MachineTest {
protected:
  static fs::path Store() { return machine::Folder() / ".acctkit"; }
  static fs::path Hive() { return machine::Folder() / "user.reg"; }
  static fs::path OnDisk() { return machine::Folder() / "drive_c/acctkit-test/file.txt"; }

  static std::string Bytes(const fs::path &path) {
    if (!fs::is_regular_file(path))
      return {};
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  static void Write(const std::string &text) {
    PutFile(Path, text);
    PutString(HKEY_CURRENT_USER, ScratchKey, "name", text);
  }
  static std::string Read() {
    return GetFile(Path).value_or("none") + ' ' + GetString(HKEY_CURRENT_USER, ScratchKey, "name").value_or("none");
  }
  // What another process reads.
  static std::string ReadElsewhere() {
    return Bytes(OnDisk()) + (Bytes(Hive()).find("\"new\"") != std::string::npos ? " new" : "");
  }
  // The same as one change, whose calls may fail.
  static bool WriteWhole(const std::string &text) {
    machine::Transaction transaction;
    FileHandle file = OpenFileAlone(Path, GENERIC_WRITE, CREATE_ALWAYS);
    DWORD written = 0;
    const bool isFileWritten =
        file && WriteFile(file.Get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr) && file.Close();
    return WriteStringValue(HKEY_CURRENT_USER, ScratchKey, "name", text.c_str()) && isFileWritten &&
           transaction.Commit();
  }
};

TEST_F(TransactionTest, IsSeenWithinAndOutsideOnceItIsCommitted) {
  Write("old");
  {
    machine::Transaction transaction;
    Write("new");
    MakeFolders("C:\\acctkit-test\\a\\B");
    PutFile("C:\\acctkit-test\\A\\b\\deep.txt", "deep");
    EXPECT_EQ(Read(), "new new");
    EXPECT_EQ(GetFile("C:\\ACCTKIT-TEST\\A\\B\\DEEP.TXT"), "deep");
    WIN32_FIND_DATAA found;
    EXPECT_TRUE(FindClose(FindFirstFileA("C:\\acctkit-test\\a\\b\\*.txt", &found)));
    EXPECT_STREQ(found.cFileName, "deep.txt");
    EXPECT_EQ(ReadElsewhere(), "old");
    EXPECT_EQ(machine::PendingChanges().size(), 5U);
    EXPECT_TRUE(transaction.Commit());
  }
  EXPECT_EQ(ReadElsewhere(), "new new");
  EXPECT_EQ(Read(), "new new");
  EXPECT_EQ(GetFile("C:\\acctkit-test\\a\\B\\deep.txt"), "deep");
}

TEST_F(TransactionTest, DropsWhatIsNotCommitted) {
  Write("old");
  for (const auto purpose : {machine::Purpose::Change, machine::Purpose::Look, machine::Purpose::Rehearse}) {
    machine::Transaction transaction(purpose);
    Write("new");
    MakeFolders("C:\\acctkit-test\\folder");
    EXPECT_EQ(Read(), "new new");
    EXPECT_TRUE(purpose == machine::Purpose::Change || transaction.Commit());
  }
  EXPECT_EQ(Read(), "old old");
  EXPECT_EQ(ReadElsewhere(), "old");
  EXPECT_FALSE(fs::exists(OnDisk().parent_path() / "folder"));
}

TEST_F(TransactionTest, ThreadsWaitForItsEnd) {
  Write("old");
  std::string read;
  machine::Transaction transaction;
  Write("half");
  std::thread other([&] { read = Read(); });
  usleep(20000);
  Write("new");
  EXPECT_TRUE(transaction.Commit());
  other.join();
  EXPECT_EQ(read, "new new");
}

// Somebody who doesn't ask for the lock changes a file meanwhile.
TEST_F(TransactionTest, DoesNotOverwriteWhatItHasNotRead) {
  for (const fs::path &file : {OnDisk(), Hive()}) {
    Write("old");
    const std::string before = Bytes(file);
    machine::Transaction transaction;
    Write("new");
    std::ofstream(file, std::ios::app) << "\n";
    EXPECT_FALSE(transaction.Commit());
    EXPECT_NE(machine::TakeFault().find(file.filename().string() + ": another program has changed it"),
              std::string::npos);
    EXPECT_EQ(Bytes(file), before + "\n");
    EXPECT_EQ(Read().find("new"), std::string::npos);
  }
}

TEST_F(TransactionTest, KeepsModeAndOwnersOfWhatItReplaces) {
  Write("old");
  ASSERT_EQ(chmod(OnDisk().c_str(), 0640), 0);
  const bool isRoot = geteuid() == 0;
  ASSERT_TRUE(!isRoot || chown(OnDisk().c_str(), 12, 34) == 0);
  EXPECT_TRUE(WriteWhole("new"));
  struct stat status;
  ASSERT_EQ(stat(OnDisk().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
  EXPECT_TRUE(!isRoot || (status.st_uid == 12 && status.st_gid == 34));
}

TEST_F(TransactionTest, CanBeTakenBackOnce) {
  Write("old");
  machine::Transaction transaction;
  Write("new");
  MakeFolders("C:\\acctkit-test\\folder");
  PutFile("C:\\acctkit-test\\folder\\made.txt", "made");
  EXPECT_TRUE(transaction.Commit());
  for (const auto &entry : fs::directory_iterator(Store() / "last")) {
    struct stat status;
    ASSERT_EQ(stat(entry.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U) << entry.path();
  }
  const std::string after = Bytes(OnDisk());
  std::ofstream(OnDisk()) << "changed";
  EXPECT_NE(machine::UndoLastChange().refusal.find("changed since"), std::string::npos);
  EXPECT_EQ(Bytes(OnDisk()), "changed");
  std::ofstream(OnDisk()) << after;
  {
    const WatchedCalls watched(CallPlan{.name = "ChangeMode", .error = EPERM}); // of a file that another user owns
    EXPECT_NE(machine::UndoLastChange().refusal, "");
    EXPECT_EQ(Read(), "new new");
  }

  const machine::Undone undone = machine::UndoLastChange();
  EXPECT_EQ(undone.refusal, "");
  EXPECT_EQ(undone.restored.size(), 4U);
  EXPECT_EQ(Read(), "old old");
  EXPECT_FALSE(fs::exists(OnDisk().parent_path() / "folder"));
  EXPECT_NE(machine::UndoLastChange().refusal, "");
}

TEST_F(TransactionTest, ReplacesFilesOnOtherDisksAndBehindLinks) {
  const fs::path elsewhere = fs::temp_directory_path() / ("acctkit-elsewhere-" + std::to_string(getpid()));
  fs::create_directories(elsewhere / "acctkit-test");
  fs::remove_all(machine::Folder() / "drive_c");
  fs::create_directory_symlink(elsewhere, machine::Folder() / "drive_c");
  fs::create_symlink(elsewhere / "hive", machine::Folder() / "user.reg");
  std::ofstream(elsewhere / "hive") << "WINE REGISTRY Version 2\n";
  Write("old");
  EXPECT_TRUE(WriteWhole("new"));
  EXPECT_TRUE(fs::is_symlink(machine::Folder() / "user.reg"));
  EXPECT_EQ(machine::UndoLastChange().refusal, "");
  EXPECT_EQ(Read(), "old old");
  EXPECT_EQ(std::distance(fs::directory_iterator(elsewhere / "acctkit-test"), {}), 1);
  fs::remove_all(elsewhere);
}

TEST_F(TransactionTest, FollowsNoLinkInItsStore) {
  const fs::path other = machine::Folder() / "drive_c/other";
  fs::create_directory(other);
  std::ofstream(other / "file") << "bytes";
  Write("old");
  for (const char *name : {"staging", "commit", "last"}) {
    fs::remove_all(Store() / name);
    fs::create_directory_symlink(other, Store() / name);
    EXPECT_TRUE(WriteWhole(name));
    EXPECT_EQ(Bytes(other / "file"), "bytes");
  }
}

// ---- What was broken off ----

TEST_F(TransactionTest, WhatWasBrokenOffIsFinishedOrLeftAlone) {
  constexpr std::string_view Finished = "has been finished";
  constexpr std::string_view Damaged = "is damaged";
  constexpr std::string_view Later = "a later version";
  constexpr std::string_view Changed = "changed since";
  const auto replace = [](const fs::path &list, const std::string &from, const std::string &to) {
    std::string text = Bytes(list);
    text.replace(text.find(from), from.size(), to);
    std::ofstream(list) << text;
  };
  // The damage to what a killed process has left, and what is said of it.
  const std::tuple<const char *, std::function<void(const fs::path &commit)>, std::string_view> cases[] = {
      {"whole", [](const fs::path &) {}, Finished},
      {"one file in place", [](const fs::path &commit) { fs::rename(commit / "0.new", OnDisk()); }, Finished},
      {"list cut", [](const fs::path &commit) { fs::resize_file(commit / "list", 60); }, Damaged},
      {"list empty", [](const fs::path &commit) { fs::resize_file(commit / "list", 0); }, Damaged},
      {"list missing", [](const fs::path &commit) { fs::remove(commit / "list"); }, Damaged},
      {"foreign list", [](const fs::path &commit) { std::ofstream(commit / "list") << "hello\n"; }, Damaged},
      {"form elsewhere", [&](const fs::path &commit) { replace(commit / "list", " 0.new", " ../x"); }, Damaged},
      {"later version", [&](const fs::path &commit) { replace(commit / "list", "changes 1", "changes 2"); }, Later},
      {"out of it", [&](const fs::path &commit) { replace(commit / "list", "C:\\", "Q:\\"); }, "on this machine"},
      {"new file cut", [](const fs::path &commit) { fs::resize_file(commit / "0.new", 1); }, Damaged},
      {"new file missing", [](const fs::path &commit) { fs::remove(commit / "0.new"); }, Damaged},
      {"changed since", [](const fs::path &) { std::ofstream(Hive(), std::ios::app) << "\n"; }, Changed},
      {"folder in its place", [](const fs::path &) { fs::remove(OnDisk()) && fs::create_directory(OnDisk()); },
       Changed},
  };
  for (const auto &[what, damage, said] : cases) {
    SCOPED_TRACE(what);
    const bool stays = said == Later;
    ResetMachine();
    Write("old");
    // A process that is killed once it is decided.
    const std::string hive = Bytes(Hive());
    ASSERT_TRUE(WriteWhole("new"));
    const std::string newHive = Bytes(Hive());
    fs::rename(Store() / "last", Store() / "commit");
    std::ofstream(Store() / "commit/0.new") << "new";
    std::ofstream(Store() / "commit/1.new") << newHive;
    std::ofstream(OnDisk()) << "old";
    std::ofstream(Hive()) << hive;
    fs::create_directory(Store() / "staging"); // of another one
    machine::TakeNotice();
    damage(Store() / "commit");

    const auto state = [] { return Bytes(OnDisk()) + Bytes(Hive()); };
    const std::string left = state();
    machine::Transaction(machine::Purpose::Look).Commit(); // also finishes what it finds
    EXPECT_EQ(state(), said == Finished ? "new" + newHive : left);
    EXPECT_EQ(WriteWhole("newer"), !stays && !fs::is_directory(OnDisk()));
    const std::string line = stays ? machine::TakeFault() : machine::TakeNotice();
    EXPECT_NE(line.find(said), std::string::npos) << line;
    EXPECT_EQ(fs::exists(Store() / "commit"), stays);
    EXPECT_FALSE(fs::exists(Store() / "staging"));
  }
}

// ---- Odd folders ----

TEST_F(TransactionTest, AStoreThatIsNoFolderOfOurOwnIsRefused) {
  Write("old");
  const std::function<void()> cases[] = {
      [] { std::ofstream(Store()) << ""; },
      [] { fs::create_directory_symlink("drive_c", Store()); },
      [] {
        fs::create_directory(Store());
        fs::create_symlink("/tmp/acctkit-no-lock", Store() / "lock");
      },
      [] { fs::create_directories(Store() / "lock"); },
      [] { // somebody else's
        fs::create_directory(Store());
        EXPECT_EQ(geteuid() == 0 ? chown(Store().c_str(), 12, 34) : chmod(Store().c_str(), 0), 0);
      },
  };
  for (const auto &make : cases) {
    fs::remove_all(Store());
    make();
    EXPECT_FALSE(WriteWhole("new"));
    EXPECT_NE(machine::TakeFault().find(".acctkit"), std::string::npos);
    EXPECT_EQ(Read(), "old old"); // which can be read all the same
  }
  fs::remove_all(Store());
}

TEST_F(TransactionTest, AHiveThatCannotBeReadEndsTheCall) {
  const char *const spec[] = {"user", "name", "title", "", "smtp.example", "pop.example", "a@b.example", "c", nullptr};
  const fs::path hive = Hive();
  Write("old");
  const std::string sound = Bytes(hive);
  const std::function<void()> cases[] = {
      [&] { std::ofstream(hive) << sound << "damage\n"; },
      [&] { fs::create_directory(hive); },
      [&] { fs::create_symlink("nowhere", hive); },
      [&] { ASSERT_EQ(mkfifo(hive.c_str(), 0666), 0); },
      [&] { // larger than memory
        std::ofstream(hive) << sound;
        fs::resize_file(hive, uintmax_t{3} << 30);
      },
  };
  for (const auto &make : cases) {
    fs::remove(hive);
    make();
    EXPECT_EQ(SetupMailAccount(0, spec, ""), 0);
    EXPECT_NE(machine::TakeFault().find("user.reg"), std::string::npos);
    machine::Transaction transaction;
    PutFile(Path, "new");
    EXPECT_FALSE(KeyThere(HKEY_CURRENT_USER, ScratchKey));
    EXPECT_FALSE(transaction.Commit());
    EXPECT_EQ(Bytes(OnDisk()), "old");
    machine::TakeFault();
  }
}

} // namespace
