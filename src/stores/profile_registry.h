// registry.dat of Netscape 6: a tree of named keys with named values in one binary file. It is read whole into memory
// and edited there. Existing records are overwritten in place, new ones are added at the end. Nothing is deleted, and
// the bytes before the root record are never changed.
//
// Names and values are byte strings that aren't converted. Lengths and positions are in bytes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// One record: a key, a value, or one of a type that we don't use. The fields after `value` are the record's own.
struct ProfileRegistryNode {
  static constexpr uint16_t KeyType = 1;
  static constexpr uint16_t StringType = 17;

  std::string name;
  std::string value;       // of a string value; else empty
  uint32_t location = 0;   // the record's own offset
  uint32_t nameOffset = 0; // 0 for none, as with all offsets
  uint16_t namelen = 0;    // with its terminator
  uint16_t type = 0;
  uint32_t left = 0;        // the next record of the same chain
  uint32_t down = 0;        // of a key: its first subkey; of a value: the room it has, if the client noted it
  uint32_t valueOffset = 0; // of a key: its first value record; of a string value: the text
  uint32_t valuelen = 0;    // of a string value: length of the text with its terminator
  uint32_t parent = 0;      // location of the parent key
  uint32_t depth = 0;       // level in the tree as it was parsed, the root's is 0
};

class ProfileRegistry {
public:
  // Offset of the root record.
  static constexpr uint32_t RootOffset = 130;
  // Longest name or value that is written, without its terminator.
  static constexpr size_t LongestString = 1023;
  // Largest file that is read; clients' files have some kilobytes.
  static constexpr size_t LargestFile = size_t{64} << 20;

  ProfileRegistry() = default;
  virtual ~ProfileRegistry() = default;
  ProfileRegistry(const ProfileRegistry &) = delete;
  ProfileRegistry &operator=(const ProfileRegistry &) = delete;

  // Reads the file. 0 if it can't be read, has more than 64 MB, or isn't sound: every record and string must be inside
  // the file and overlap no other, every record must hold its own offset and that of its parent key, and the root must
  // be a key. So editing an accepted file damages nothing else in it.
  int32_t Open(const std::string &path);

  // Builds the list of nodes from the file's bytes; searches and edits need it. Order: a key, the whole tree of its
  // subkeys, its values, then the next key of its level.
  void Parse();

  // Index of a key's subkey of that name, or of its string value if `wantKey` is 0; -1 if there is none. Names must
  // match exactly; the first of several is returned.
  int32_t FindChild(int32_t index, const std::string &name, int32_t wantKey) const;

  // Index of the key at a path below the root, or of one of its values if `valueName` isn't empty; -1 if there is none.
  // The path's names are separated by backslashes.
  int32_t FindPath(const std::string &keyPath, const std::string &valueName) const;

  // Returns 1 and the value's text, or 0 with `out` unchanged.
  int32_t GetValue(const std::string &keyPath, const std::string &valueName, std::string &out) const;

  // Index of a key's subkey, which is made if there is none. -1, with nothing changed, for a name that is empty or too
  // long, or a file that would grow past its largest size.
  int32_t AddKey(int32_t parentIndex, const std::string &name);

  // Sets a key's string value, which is made if there is none, and returns its index. A text that fits overwrites the
  // old one; a longer one is added at the end, with no room in its record. -1 as for AddKey, and for a text that is too
  // long.
  int32_t SetValue(int32_t keyIndex, const std::string &name, const std::string &value);

  // Replaces the file. 0 if it can't be written.
  int32_t Save() const;

  const ProfileRegistryNode &Node(int32_t index) const { return nodes[static_cast<size_t>(index)]; }
  int32_t NodeCount() const { return static_cast<int32_t>(nodes.size()); }
  uint32_t ImageLength() const { return static_cast<uint32_t>(image.size()); }

private:
  void ParseChain(uint32_t offset, uint32_t level);
  void ReadNode(ProfileRegistryNode &node, uint32_t offset) const;
  void WriteNode(uint32_t offset, const ProfileRegistryNode &node);
  void ChangeValue(int32_t index, const std::string &value);
  uint32_t GrowImage(size_t bytes);
  static size_t StoredSize(const std::string &text) { return text.size() + 1; }
  void WriteString(uint32_t offset, const std::string &text);
  static std::vector<std::string> SplitPath(const std::string &path);
  void ClearNodes();

  // The node of the last record in one of a key's chains; the key's own if the chain is empty.
  ProfileRegistryNode &LastOfChain(ProfileRegistryNode &key, bool ofSubkeys);
  // Whether a child with this name, these strings and a new record can be added below the node.
  bool CanAdd(int32_t parentIndex, const std::string &name, const std::string &value) const;
  // Adds a child with its strings at the end of the file, links it to its key, and returns the index of its node.
  int32_t AddNode(int32_t parentIndex, const std::string &name, uint16_t type, const std::string &value);

  std::string image;
  std::vector<ProfileRegistryNode> nodes;
  size_t recordCount = 0; // in the file, counted by Open
  std::string filePath;
};
