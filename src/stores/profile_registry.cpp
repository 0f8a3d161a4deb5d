#include "stores/profile_registry.h"

#include "stores/file_handle.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <utility>

namespace {

constexpr uint16_t KeyType = ProfileRegistryNode::KeyType;
constexpr uint16_t StringType = ProfileRegistryNode::StringType;

// A record as it is in the file, little-endian like every machine that AcctKit runs on.
struct Record {
  uint32_t location;
  uint32_t name;
  uint16_t namelen;
  uint16_t type;
  uint32_t left;
  uint32_t down;
  uint32_t value;
  uint32_t valuelen;
  uint32_t parent;
};
static_assert(sizeof(Record) == 32);

Record RecordAt(std::string_view image, uint32_t offset) {
  Record record;
  std::memcpy(&record, image.data() + offset, sizeof record);
  return record;
}

// Room for the additions of a usual edit, so that they don't copy the whole file.
constexpr size_t EditRoom = 4096;

// ---- Walking the tree ----

// Where a record belongs: to one of the two chains of an owner, whose number counts the records in the order of the
// walk.
struct Position {
  uint32_t offset;
  uint32_t level;
  int32_t owner;
  bool inValues;
};

// Visits every record of the chain that starts at an offset, in the order of the nodes: a key, its subkeys with
// everything below them, its values, the next record. `visit` reads the record at a position, and ends the walk by
// returning false. A list holds the records still to visit, instead of recursive calls, which a deep tree could make
// too many.
template <typename Visit> bool Walk(uint32_t offset, uint32_t level, Visit visit) {
  std::vector<Position> ahead;
  const auto push = [&](uint32_t next, uint32_t nextLevel, int32_t owner, bool inValues) {
    if (next != 0)
      ahead.push_back({next, nextLevel, owner, inValues});
  };
  push(offset, level, -1, false);
  for (int32_t number = 0; !ahead.empty(); ++number) {
    const Position position = ahead.back();
    ahead.pop_back();
    Record record;
    if (!visit(position, record))
      return false;
    push(record.left, position.level, position.owner, position.inValues);
    if (record.type == KeyType) {
      push(record.value, position.level + 1, number, true);
      push(record.down, position.level + 1, number, false);
    }
  }
  return true;
}

// ---- Checking an untrusted file ----

// Marks the bytes of records and strings during the walk. No byte may belong to two of them: this excludes loops, and
// the file's size limits how much is read.
class SoundnessCheck {
public:
  explicit SoundnessCheck(std::string_view file) : image(file), taken(file.size() / WordBits + 1) {}

  // The number of records; 0 if the file isn't sound.
  size_t Count() {
    constexpr uint32_t Root = ProfileRegistry::RootOffset;
    if (image.size() < Root + sizeof(Record) || RecordAt(image, Root).type != KeyType)
      return 0;
    std::vector<uint32_t> locations; // of the records, in the order of the walk
    const bool sound = Walk(Root, 0, [&](const Position &position, Record &record) {
      if (!Take(position.offset, sizeof(Record), Root))
        return false;
      record = RecordAt(image, position.offset);
      locations.push_back(position.offset);
      const bool knowsItself = record.location == position.offset;
      const bool knowsItsKey = position.owner < 0 || record.parent == locations[static_cast<size_t>(position.owner)];
      return knowsItself && knowsItsKey && TakeString(record.name, 0, 0) &&
             (record.type != StringType || TakeString(record.value, record.valuelen, Root));
    });
    return sound ? locations.size() : 0;
  }

private:
  // Marks bytes, which must be inside the file and not before `lowest`.
  bool Take(uint32_t offset, size_t size, uint32_t lowest) {
    if (offset < lowest || offset > image.size() || size > image.size() - offset)
      return false;
    bool free = true;
    for (size_t at = offset; at < offset + size;) {
      const size_t count = std::min(WordBits - at % WordBits, offset + size - at);
      const uint64_t bits = ~uint64_t{0} >> (WordBits - count) << at % WordBits;
      free = free && (taken[at / WordBits] & bits) == 0;
      taken[at / WordBits] |= bits;
      at += count;
    }
    return free;
  }

  // Marks a string with its terminator, and its room.
  bool TakeString(uint32_t offset, uint32_t room, uint32_t lowest) {
    if (offset == 0)
      return true;
    const size_t end = offset < image.size() ? image.find('\0', offset) : std::string_view::npos;
    return end != std::string_view::npos && Take(offset, std::max<size_t>(end + 1 - offset, room), lowest);
  }

  static constexpr size_t WordBits = 64;

  std::string_view image;
  std::vector<uint64_t> taken; // a bit for each byte of the file
};

} // namespace

// ---- File ----

int32_t ProfileRegistry::Open(const std::string &path) {
  image.clear();
  ClearNodes();
  FileHandle file = OpenFileAlone(path.c_str(), GENERIC_READ, OPEN_EXISTING);
  try {
    recordCount = file && ReadWholeFile(file, LargestFile, image, EditRoom) ? SoundnessCheck(image).Count() : 0;
  } catch (const std::exception &) { // out of memory
    recordCount = 0;
  }
  if (file && recordCount == 0)
    PlatformCall::Report(path.c_str(), "damaged, or too large");
  if (recordCount == 0)
    image.clear();
  filePath = path;
  return recordCount != 0 ? 1 : 0;
}

int32_t ProfileRegistry::Save() const {
  return !image.empty() && WriteWholeFile(filePath.c_str(), GENERIC_WRITE, image) ? 1 : 0;
}

// ---- Nodes ----

void ProfileRegistry::ClearNodes() { nodes.clear(); }

void ProfileRegistry::Parse() {
  ClearNodes();
  if (image.empty())
    return;
  nodes.reserve(recordCount + EditRoom / sizeof(Record));
  ParseChain(RootOffset, 0);
}

void ProfileRegistry::ParseChain(uint32_t offset, uint32_t level) {
  Walk(offset, level, [this](const Position &position, Record &record) {
    record = RecordAt(image, position.offset);
    ReadNode(nodes.emplace_back(), position.offset);
    nodes.back().depth = position.level;
    return true;
  });
}

void ProfileRegistry::ReadNode(ProfileRegistryNode &node, uint32_t offset) const {
  const Record record = RecordAt(image, offset);
  node.location = record.location;
  node.nameOffset = record.name;
  node.namelen = record.namelen;
  node.type = record.type;
  node.left = record.left;
  node.down = record.down;
  node.valueOffset = record.value;
  node.valuelen = record.valuelen;
  node.parent = record.parent;
  node.name = record.name != 0 ? image.data() + record.name : "";
  node.value = record.type == StringType && record.value != 0 ? image.data() + record.value : "";
}

void ProfileRegistry::WriteNode(uint32_t offset, const ProfileRegistryNode &node) {
  const Record record = {node.location, node.nameOffset,  node.namelen,  node.type,  node.left,
                         node.down,     node.valueOffset, node.valuelen, node.parent};
  std::memcpy(image.data() + offset, &record, sizeof record);
}

// ---- Searching ----

int32_t ProfileRegistry::FindChild(int32_t index, const std::string &name, int32_t wantKey) const {
  if (index < 0 || index >= NodeCount())
    return -1;
  const uint32_t parent = Node(index).location;
  const uint16_t type = wantKey != 0 ? KeyType : StringType;
  const auto found = std::ranges::find_if(nodes, [&](const ProfileRegistryNode &node) {
    return node.parent == parent && node.type == type && node.name == name;
  });
  return found == nodes.end() ? -1 : static_cast<int32_t>(found - nodes.begin());
}

std::vector<std::string> ProfileRegistry::SplitPath(const std::string &path) {
  std::vector<std::string> names;
  std::string name;
  const auto finish = [&] {
    if (!name.empty())
      names.push_back(std::exchange(name, {}));
  };
  for (size_t index = 0; index < path.size(); ++index) {
    if (path[index] == '\\') {
      finish();
      continue;
    }
    name += path[index];
    if (IsDBCSLeadByte(static_cast<BYTE>(path[index])) && index + 1 < path.size())
      name += path[++index]; // no separator, even if it is the byte of a backslash
  }
  finish();
  return names;
}

int32_t ProfileRegistry::FindPath(const std::string &keyPath, const std::string &valueName) const {
  int32_t index = nodes.empty() ? -1 : 0;
  for (const std::string &name : SplitPath(keyPath))
    index = FindChild(index, name, 1);
  return valueName.empty() ? index : FindChild(index, valueName, 0);
}

int32_t ProfileRegistry::GetValue(const std::string &keyPath, const std::string &valueName, std::string &out) const {
  const int32_t index = FindPath(keyPath, valueName);
  if (index < 0)
    return 0;
  out = Node(index).value;
  return 1;
}

// ---- Editing ----

uint32_t ProfileRegistry::GrowImage(size_t bytes) {
  const uint32_t end = ImageLength();
  image.resize(image.size() + bytes);
  return end;
}

void ProfileRegistry::WriteString(uint32_t offset, const std::string &text) {
  std::memcpy(image.data() + offset, text.c_str(), StoredSize(text));
}

bool ProfileRegistry::CanAdd(int32_t parentIndex, const std::string &name, const std::string &value) const {
  const size_t added = StoredSize(name) + StoredSize(value) + sizeof(Record);
  return parentIndex >= 0 && parentIndex < NodeCount() && Node(parentIndex).type == KeyType && !name.empty() &&
         name.size() <= LongestString && value.size() <= LongestString && image.size() + added <= LargestFile;
}

int32_t ProfileRegistry::AddNode(int32_t parentIndex, const std::string &name, uint16_t type,
                                 const std::string &value) {
  ProfileRegistryNode node;
  node.name = name;
  node.value = value;
  node.type = type;
  node.parent = Node(parentIndex).location;
  node.nameOffset = GrowImage(StoredSize(name));
  node.namelen = static_cast<uint16_t>(StoredSize(name));
  WriteString(node.nameOffset, name);
  if (type == StringType) {
    node.valueOffset = GrowImage(StoredSize(value));
    node.valuelen = static_cast<uint32_t>(StoredSize(value));
    WriteString(node.valueOffset, value);
  }
  node.location = GrowImage(sizeof(Record));
  WriteNode(node.location, node);

  ProfileRegistryNode &parent = nodes[static_cast<size_t>(parentIndex)];
  ProfileRegistryNode &last = LastOfChain(parent, type == KeyType);
  (&last != &parent ? last.left : type == KeyType ? parent.down : parent.valueOffset) = node.location;
  WriteNode(last.location, last);
  nodes.push_back(std::move(node));
  return NodeCount() - 1;
}

// The last record may have any type: clients also have values of types that we don't use.
ProfileRegistryNode &ProfileRegistry::LastOfChain(ProfileRegistryNode &key, bool ofSubkeys) {
  uint32_t last = key.location;
  for (uint32_t next = ofSubkeys ? key.down : key.valueOffset; next != 0; next = RecordAt(image, next).left)
    last = next;
  return *std::ranges::find(nodes, last, &ProfileRegistryNode::location);
}

int32_t ProfileRegistry::AddKey(int32_t parentIndex, const std::string &name) {
  const int32_t existing = FindChild(parentIndex, name, 1);
  if (existing >= 0)
    return existing;
  return CanAdd(parentIndex, name, {}) ? AddNode(parentIndex, name, KeyType, {}) : -1;
}

int32_t ProfileRegistry::SetValue(int32_t keyIndex, const std::string &name, const std::string &value) {
  if (!CanAdd(keyIndex, name, value))
    return -1;
  const int32_t existing = FindChild(keyIndex, name, 0);
  if (existing < 0)
    return AddNode(keyIndex, name, StringType, value);
  ChangeValue(existing, value);
  return existing;
}

void ProfileRegistry::ChangeValue(int32_t index, const std::string &value) {
  ProfileRegistryNode &node = nodes[static_cast<size_t>(index)];
  if (node.valueOffset == 0 || StoredSize(value) > node.valuelen) {
    node.valueOffset = GrowImage(StoredSize(value));
    node.down = 0; // a client would write up to the old room at the new position
  }
  WriteString(node.valueOffset, value);
  node.value = value;
  node.valuelen = static_cast<uint32_t>(StoredSize(value));
  WriteNode(node.location, node);
}
