// Any path against a machine with links, loops and odd names: what is found lies within the machine folder or a folder
// that dosdevices names, has no link on its way, and is the same by another spelling; what is written is read again.
//
// The input is a text. A line begins with a letter, and a blank or anything else behind it:
//   d PATH          a folder, by its path below the machine folder
//   f PATH          a file
//   l PATH>TARGET   a link; a slash at the target's beginning stands for the folder two above the machine's
//   e PATH          the path of the running program
//   p PATH          a path of the calls, to be looked for
//   w PATH          ... to be written
//   m PATH          ... to be made a folder
#include "stores/file_handle.h"
#include "win32/linux/machine/paths.h"
#include "win32/linux/text/code_page.h"
#include "win32/linux/text/names.h"

#include "fuzzing.h"
#include "support/scratch_machine.h"

#include <optional>
#include <set>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using machine::DiskPath;
using machine::FindOnDisk;

// ---- The machine ----

// Stands two folders deep, so that no link up from it leads further.
class OddMachine {
public:
  OddMachine() {
    fs::create_directories(machine);
    fs::create_directories(Outside());
    std::ofstream(Outside() / "secret") << "secret";
    setenv("ACCTKIT_MACHINE", machine.c_str(), 1);
    setenv("ACCTKIT_PROGRAM", "", 1);
  }
  ~OddMachine() { fs::remove_all(around); }

  void PutFolder(std::string_view path) {
    if (const fs::path place = Place(path); !place.empty())
      mkdir(place.c_str(), 0777);
  }
  void PutFile(std::string_view path) {
    if (const fs::path place = Place(path); !place.empty() && !fs::exists(fs::symlink_status(place)))
      std::ofstream(place) << "old";
  }
  void PutLink(std::string_view path, std::string_view target) {
    std::error_code ignored;
    const std::string leads = Target(target);
    if (const fs::path place = Place(path); !place.empty() && !leads.empty())
      fs::create_symlink(leads, place, ignored);
  }

  // Called when something was made by another way.
  void Changed() { seen.reset(); }

  // Whether a path of the machine may lead to a path on disk, which has no links.
  bool Allows(const fs::path &path) {
    const std::vector<fs::path> &folders = See().allowed;
    return std::any_of(folders.begin(), folders.end(), [&](const fs::path &folder) {
      return path == folder || path.native().starts_with(folder == "/" ? "/" : folder.native() + '/');
    });
  }

  // Whether a folder has two names that differ in case alone.
  bool HasTwins() { return See().hasTwins; }

  // A folder beside the machine's, whose name begins with that one's.
  fs::path Outside() const { return machine.string() + "-2"; }
  // Whether nothing changed outside of the machine.
  bool OutsideIsKept() const {
    const auto count = [](const fs::path &folder) { return std::distance(fs::directory_iterator(folder), {}); };
    std::string bytes;
    std::ifstream(Outside() / "secret") >> bytes;
    return bytes == "secret" && count(Outside()) == 1 && count(around) == 1 && count(machine.parent_path()) == 2;
  }

private:
  static bool IsName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.size() < 256 && name.find('\0') == name.npos;
  }

  // Where a path of names leads, with the folders on its way made. Empty if something else stands on it: nothing is
  // made by way of a link.
  fs::path Place(std::string_view path) {
    Changed();
    fs::path place = machine;
    for (;;) {
      const std::string_view name = path.substr(0, path.find('/'));
      if (!IsName(name))
        return {};
      place /= name;
      if (name.size() == path.size())
        return place;
      path.remove_prefix(name.size() + 1);
      mkdir(place.c_str(), 0777);
      if (!fs::is_directory(fs::symlink_status(place)))
        return {};
    }
  }

  // A link's target: names, behind at most two steps up or the folder two above.
  std::string Target(std::string_view target) const {
    std::string begin;
    if (target.starts_with('/')) {
      begin = around.native() + '/';
      target.remove_prefix(1);
    }
    for (int steps = 0; steps < 2 && begin.size() <= 3 && target.starts_with(".."); ++steps) {
      begin += "../";
      target.remove_prefix(std::min<size_t>(target.size(), 3));
    }
    for (std::string_view rest = target; !rest.empty();) {
      const std::string_view name = rest.substr(0, rest.find('/'));
      if (!IsName(name))
        return {};
      rest.remove_prefix(std::min(name.size() + 1, rest.size()));
    }
    return begin + std::string(target);
  }

  struct Seen {
    std::vector<fs::path> allowed;
    bool hasTwins;
  };
  const Seen &See() {
    if (!seen)
      seen = {AllowedFolders(), FindTwins()};
    return *seen;
  }

  // The machine's folder, and those of its drives.
  std::vector<fs::path> AllowedFolders() const {
    std::vector<fs::path> folders = {machine};
    std::error_code error;
    if (!fs::exists(machine / "dosdevices", error))
      folders.push_back(fs::canonical(machine / "drive_c", error));
    else if (fs::is_directory(machine / "dosdevices", error))
      for (const fs::directory_entry &drive : fs::directory_iterator(machine / "dosdevices"))
        folders.push_back(fs::canonical(drive, error));
    std::erase(folders, fs::path());
    return folders;
  }
  bool FindTwins() const {
    std::set<std::u16string> names;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(around)) {
      std::u16string name;
      if (text::Utf8ToWide(entry.path().native(), name) && !names.insert(text::ToUpper(name)).second)
        return true;
    }
    return false;
  }

  static const ScratchMachine Scratch;
  const fs::path around = fs::canonical(Scratch.Folder()) / "around";
  const fs::path machine = around / "user/machine";
  std::optional<Seen> seen;
};
const ScratchMachine OddMachine::Scratch;

// ---- Paths ----

// Another spelling of a path; empty if it can't be spelled so.
std::string Respelled(OddMachine &machine, const std::string &path) {
  const std::u16string wide = machine::WidePath(path.c_str());
  if (wide.empty() || wide == u"\\")
    return {};
  const std::u16string spelling = (machine.HasTwins() ? wide : text::ToUpper(wide)) + u"\\. . \\none\\..\\";
  const std::string other = text::FromWide(spelling);
  return spelling.size() < MAX_PATH && machine::WidePath(other.c_str()) == spelling ? other : std::string();
}

DiskPath Find(OddMachine &machine, const std::string &path) {
  const DiskPath found = FindOnDisk(path.c_str());
  REQUIRE(!found.IsLink() && !(found.exists && (found.missing || found.path.empty())));
  if (!found.path.empty()) {
    REQUIRE(machine.Allows(found.path));
    const fs::path there = found.exists ? found.path : found.path.parent_path();
    std::error_code error;
    REQUIRE(fs::canonical(there, error) == there);
    REQUIRE(found.path.filename() != ".." && found.path.filename() != ".");
  }

  if (const std::string spelling = Respelled(machine, path); !spelling.empty()) {
    const DiskPath other = FindOnDisk(spelling.c_str());
    REQUIRE(other.exists == found.exists && other.missing == found.missing);
    REQUIRE(found.exists ? other.path == found.path : other.path.parent_path() == found.path.parent_path());
  }
  return found;
}

std::optional<std::string> ReadBytes(const std::string &path) {
  std::string bytes;
  const FileHandle file = OpenFileAlone(path.c_str(), GENERIC_READ, OPEN_EXISTING);
  return file && ReadWholeFile(file, 100, bytes) ? std::optional(bytes) : std::nullopt;
}

void LookFor(OddMachine &machine, const std::string &path) {
  const DiskPath found = Find(machine, path);
  REQUIRE(ReadBytes(path).has_value() == found.IsFile());
}

void Write(OddMachine &machine, const std::string &path) {
  const DiskPath before = Find(machine, path);
  const bool written = WriteWholeFile(path.c_str(), GENERIC_WRITE, "new");
  if (written && !before.exists)
    machine.Changed();
  const DiskPath after = Find(machine, path);
  REQUIRE(after.path == before.path && after.exists == (written || before.exists));
  REQUIRE(!written || (after.IsFile() && ReadBytes(path) == "new"));
}

void MakeFolder(OddMachine &machine, const std::string &path) {
  const DiskPath before = Find(machine, path);
  const bool made = CreateDirectoryA(path.c_str(), nullptr) != FALSE;
  if (made)
    machine.Changed();
  const DiskPath after = Find(machine, path);
  REQUIRE(after.path == before.path && after.exists == (made || before.exists));
  REQUIRE(!made || (after.IsFolder() && !before.exists));
}

void Do(OddMachine &machine, char letter, std::string_view rest) {
  const std::string path(rest.substr(0, rest.find('\0')));
  const size_t end = std::min(rest.find('>'), rest.size());
  switch (letter) {
  case 'd':
    return machine.PutFolder(rest);
  case 'f':
    return machine.PutFile(rest);
  case 'l':
    return machine.PutLink(rest.substr(0, end), rest.substr(std::min(end + 1, rest.size())));
  case 'e':
    setenv("ACCTKIT_PROGRAM", path.c_str(), 1);
    return;
  case 'p':
    return LookFor(machine, path);
  case 'w':
    return Write(machine, path);
  case 'm':
    return MakeFolder(machine, path);
  default:
    return;
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string text(data, data + size);
  OddMachine machine;
  size_t number = 0;
  for (const std::string_view line : Lines(text))
    if (line.size() > 2 && ++number <= 40)
      Do(machine, line[0], line.substr(2));
  if (!machine.Allows(machine.Outside() / "secret"))
    REQUIRE(machine.OutsideIsKept());
  return 0;
}
