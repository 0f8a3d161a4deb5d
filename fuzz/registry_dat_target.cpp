// Untrusted registry.dat: a file is refused, or can be searched and edited without damage to its other content. The
// input is the file; its bytes also choose the edits.
#include "stores/profile_registry.h"

#include "fuzzing.h"
#include "support/scratch_machine.h"

#include <cstring>
#include <map>

namespace {

const ScratchMachine Machine;
constexpr const char *FileName = "registry.dat";
constexpr const char *Path = "C:\\registry.dat";

bool IsString(const ProfileRegistryNode &node) { return node.type == ProfileRegistryNode::StringType; }
bool IsKey(const ProfileRegistryNode &node) { return node.type == ProfileRegistryNode::KeyType; }

// Writes into every record of the chains its own offset and that of its key, so that more random files are sound.
void Mend(std::string &file) {
  constexpr size_t Type = 10, Left = 12, Down = 16, Value = 20, Parent = 28, RecordSize = 32;
  std::vector<std::pair<uint32_t, uint32_t>> ahead = {{ProfileRegistry::RootOffset, 0}};
  for (int number = 0; number < 500 && !ahead.empty(); ++number) {
    const auto [offset, parent] = ahead.back();
    ahead.pop_back();
    if (offset < ProfileRegistry::RootOffset || offset + RecordSize > file.size())
      continue;
    char *const record = file.data() + offset;
    const auto next = [&](size_t field) {
      uint32_t linked = 0;
      std::memcpy(&linked, record + field, sizeof linked);
      return linked;
    };
    std::memcpy(record, &offset, sizeof offset);
    std::memcpy(record + Parent, &parent, sizeof parent);
    ahead.emplace_back(next(Left), parent);
    if (record[Type] == ProfileRegistryNode::KeyType && record[Type + 1] == 0) {
      ahead.emplace_back(next(Down), offset);
      ahead.emplace_back(next(Value), offset);
    }
  }
}

// The result of FindChild, computed from the fields of the nodes alone.
int32_t Scan(const ProfileRegistry &registry, int32_t parent, const std::string &name, bool wantKey) {
  for (int32_t index = 1; index < registry.NodeCount(); ++index) {
    const ProfileRegistryNode &node = registry.Node(index);
    if (node.parent == registry.Node(parent).location && node.name == name && (wantKey ? IsKey(node) : IsString(node)))
      return index;
  }
  return -1;
}

std::map<uint32_t, int32_t> IndexesByLocation(const ProfileRegistry &registry) {
  std::map<uint32_t, int32_t> indexes;
  for (int32_t index = 0; index < registry.NodeCount(); ++index)
    REQUIRE(indexes.emplace(registry.Node(index).location, index).second);
  return indexes;
}

// Searches for every node by its key and name, and along its path.
void Search(const ProfileRegistry &registry) {
  const std::map<uint32_t, int32_t> indexes = IndexesByLocation(registry);
  std::vector<std::string> paths(static_cast<size_t>(registry.NodeCount())); // of the keys that have a path
  for (int32_t index = 1; index < registry.NodeCount(); ++index) {
    const ProfileRegistryNode &node = registry.Node(index);
    const auto above = indexes.find(node.parent);
    if (above == indexes.end())
      continue; // beside the root: nothing says which key the record belongs to
    const int32_t parent = above->second;
    const int32_t found = registry.FindChild(parent, node.name, IsKey(node));
    REQUIRE(found == Scan(registry, parent, node.name, IsKey(node)));

    const bool plain = !node.name.empty() && std::all_of(node.name.begin(), node.name.end(),
                                                         [](char byte) { return byte > ' ' && byte != '\\'; });
    const std::string &path = paths[static_cast<size_t>(parent)];
    if (found != index || !plain || (parent != 0 && path.empty()))
      continue;
    if (IsKey(node)) {
      paths[static_cast<size_t>(index)] = path + "\\" + node.name;
      REQUIRE(registry.FindPath(path + "\\" + node.name, "") == index);
    } else if (IsString(node)) {
      std::string value;
      REQUIRE(registry.FindPath(path, node.name) == index);
      REQUIRE(registry.GetValue(path, node.name, value) == 1 && value == node.value);
    }
  }
  REQUIRE(registry.FindChild(-1, "a", 1) == -1 && registry.FindChild(registry.NodeCount(), "a", 0) == -1);
}

// Makes some keys and values. Returns the new texts by the locations of their records.
std::map<uint32_t, std::string> Edit(ProfileRegistry &registry, FuzzedDataProvider &input) {
  constexpr size_t Longest = ProfileRegistry::LongestString;
  const std::string names[] = {
      "Common", "Profiles", "directory", "\x95\x5c", "", std::string(Longest, 'n'), std::string(Longest + 1, 'n')};
  std::map<uint32_t, std::string> edited;
  const auto text = [&] {
    if (input.ConsumeBool())
      return input.PickValueInArray(names);
    return std::string(input.ConsumeIntegralInRange<size_t>(0, 40), input.ConsumeIntegralInRange('a', 'z'));
  };
  for (int number = input.ConsumeIntegralInRange(1, 8); number > 0; --number) {
    const int32_t parent = input.ConsumeIntegralInRange(-1, registry.NodeCount());
    const bool isKey = parent >= 0 && parent < registry.NodeCount() && IsKey(registry.Node(parent));
    const bool addsKey = input.ConsumeBool();
    const std::string name = text();
    const std::string value = addsKey ? "" : text();
    const uint32_t length = registry.ImageLength();
    const int32_t index = addsKey ? registry.AddKey(parent, name) : registry.SetValue(parent, name, value);
    // An existing key is found, even if its name could not be added.
    const bool fits = isKey && !name.empty() && name.size() <= Longest && value.size() <= Longest;
    REQUIRE((index >= 0) == fits || (addsKey && index >= 0 && index == registry.FindChild(parent, name, 1)));
    if (index < 0) {
      REQUIRE(registry.ImageLength() == length);
      continue;
    }
    REQUIRE(index == Scan(registry, parent, name, addsKey) && registry.Node(index).value == value);
    if (!addsKey)
      edited[registry.Node(index).location] = value;
  }
  return edited;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  std::string file(data, data + size);
  FuzzedDataProvider input(data, size);
  if (input.ConsumeBool())
    Mend(file);
  Machine.PutFile(FileName, file);
  ProfileRegistry before;
  if (before.Open(Path) == 0)
    return 0;
  before.Parse();
  Search(before);
  REQUIRE(before.Save() == 1 && Machine.GetFile(FileName) == file);

  ProfileRegistry registry;
  REQUIRE(registry.Open(Path) == 1);
  registry.Parse();
  const std::map<uint32_t, std::string> edited = Edit(registry, input);
  Search(registry);
  REQUIRE(registry.Save() == 1);
  const std::string saved = Machine.GetFile(FileName);
  REQUIRE(saved.size() == registry.ImageLength());
  REQUIRE(saved.compare(0, ProfileRegistry::RootOffset, file, 0, ProfileRegistry::RootOffset) == 0);

  ProfileRegistry after;
  REQUIRE(after.Open(Path) == 1);
  after.Parse();
  REQUIRE(after.NodeCount() == registry.NodeCount());
  const std::map<uint32_t, int32_t> indexes = IndexesByLocation(after);
  const auto now = [&](int32_t index) { return indexes.at(before.Node(index).location); };
  for (int32_t index = 0; index < before.NodeCount(); ++index) {
    const ProfileRegistryNode &old = before.Node(index);
    const ProfileRegistryNode &node = after.Node(now(index));
    REQUIRE(node.name == old.name && node.type == old.type && node.parent == old.parent);
    REQUIRE(edited.contains(node.location) || node.value == old.value);
  }
  for (const auto &[location, value] : edited)
    REQUIRE(after.Node(indexes.at(location)).value == value);
  Search(after);
  return 0;
}
