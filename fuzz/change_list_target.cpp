// Any list of a broken-off change: whoever opens the machine next finishes the change or leaves each file as it is, and
// touches no other file. A list that is whole is the same when it is written out and read again.
//
// The input is the list. The machine has the files a.txt and b.txt, with "old" in them, below C:\, and user.reg; the
// new files 0.new, 1.new and 2.new, with "new" in them, stand beside the list.
#include "win32/linux/machine/change_list.h"
#include "win32/linux/public/machine.h"
#include "win32/linux/public/transaction.h"

#include "fuzzing.h"
#include "support/scratch_machine.h"

#include <map>

namespace {

namespace fs = std::filesystem;

std::string Bytes(const fs::path &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// All files below a folder, with their bytes.
std::map<std::string, std::string> Files(const fs::path &folder) {
  std::map<std::string, std::string> files;
  for (const auto &entry : fs::recursive_directory_iterator(folder))
    if (entry.is_regular_file() && entry.path().string().find(".acctkit") == std::string::npos)
      files[entry.path().lexically_relative(folder)] = Bytes(entry.path());
  return files;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string text(data, data + size);
  machine::ChangeList list;
  const machine::ListState state = machine::ReadChangeList(text, list);
  if (state == machine::ListState::Whole) {
    machine::ChangeList again;
    REQUIRE(machine::ReadChangeList(list.Text(), again) == machine::ListState::Whole);
    REQUIRE(again.Text() == list.Text());
  }

  const ScratchMachine machine;
  const fs::path commit = machine.Folder() / ".acctkit/commit";
  fs::create_directories(commit);
  machine.PutFile("a.txt", "old");
  machine.PutFile("b.txt", "old");
  std::ofstream(machine.Folder() / "user.reg") << "WINE REGISTRY Version 2\n";
  const auto before = Files(machine.Folder());
  for (const char *form : {"0.new", "1.new", "2.new"})
    std::ofstream(commit / form) << "new";
  std::ofstream(commit / "list", std::ios::binary) << text;

  machine::Transaction().Commit();
  machine::TakeFault();
  const bool finished = machine::TakeNotice().ends_with("has been finished");
  REQUIRE(fs::exists(commit) == (state == machine::ListState::Newer) || state == machine::ListState::Whole);
  REQUIRE(!finished || state == machine::ListState::Whole);
  const auto after = Files(machine.Folder());
  REQUIRE(finished || after == before);
  for (const auto &[path, bytes] : after)
    REQUIRE(bytes == "new" || (before.contains(path) && before.at(path) == bytes));
  // What was there and is no more was so when the change began.
  for (const auto &[path, bytes] : before)
    REQUIRE((after.contains(path) && after.at(path) == bytes) ||
            std::any_of(list.files.begin(), list.files.end(),
                        [was = machine::DigestOf(bytes)](const auto &listed) { return listed.before == was; }));
  return 0;
}
