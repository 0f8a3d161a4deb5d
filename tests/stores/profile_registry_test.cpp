// registry.dat: real files are read and edited exactly, to the byte, and files that aren't sound are refused.
#include "stores/profile_registry.h"

#include "support/test_machine.h"

#include <cstring>

namespace {

class ProfileRegistryTest : public MachineTest {
protected:
  const std::string path = std::string(ScratchFolder) + "\\registry.dat";
  ProfileRegistry registry;

  int32_t Open(const std::string &bytes) {
    PutFile(path, bytes);
    return registry.Open(path);
  }
  void OpenSample(const char *name) {
    CopyOntoMachine(std::string(SAMPLE_DIR) + "/" + name, path);
    ASSERT_EQ(registry.Open(path), 1);
    registry.Parse();
  }
  std::string Value(const std::string &key, const char *name) {
    std::string value = "(none)";
    registry.GetValue(key, name, value);
    return value;
  }
  std::string Saved() {
    EXPECT_EQ(registry.Save(), 1);
    return GetFile(path).value_or("");
  }
};

void Put32(std::string &bytes, size_t offset, uint32_t number) { std::memcpy(&bytes[offset], &number, sizeof number); }
void Put16(std::string &bytes, size_t offset, uint16_t number) { std::memcpy(&bytes[offset], &number, sizeof number); }

// Adds strings and records as our own edits do, with any links that a test needs.
class Builder {
public:
  std::string bytes = std::string(162, '\0');
  Builder() {
    std::memcpy(&bytes[128], "/", 2);
    Fill(130, 128, 2, 1, 0);
  }
  uint32_t Text(const std::string &text) {
    bytes += text + '\0';
    return static_cast<uint32_t>(bytes.size() - text.size() - 1);
  }
  uint32_t Record(const std::string &name, uint16_t type, uint32_t parent) {
    const uint32_t nameOffset = Text(name);
    bytes.resize(bytes.size() + 32);
    const auto offset = static_cast<uint32_t>(bytes.size() - 32);
    Fill(offset, nameOffset, static_cast<uint16_t>(name.size() + 1), type, parent);
    return offset;
  }
  enum Field : size_t { Location = 0, Name = 4, Left = 12, Down = 16, Value = 20, ValueLength = 24, Parent = 28 };
  Builder &Set(uint32_t record, Field field, uint32_t number) {
    Put32(bytes, record + field, number);
    return *this;
  }

private:
  void Fill(uint32_t offset, uint32_t name, uint16_t namelen, uint16_t type, uint32_t parent) {
    Put32(bytes, offset, offset);
    Put32(bytes, offset + Name, name);
    Put16(bytes, offset + 8, namelen);
    Put16(bytes, offset + 10, type);
    Put32(bytes, offset + Parent, parent);
  }
};

TEST_F(ProfileRegistryTest, ReadsWhatAClientWrote) {
  OpenSample("profiles-small.dat");
  EXPECT_EQ(registry.NodeCount(), 23);
  EXPECT_EQ(Value("Common\\Profiles", "CurrentProfile"), "Home Office");
  EXPECT_EQ(Value("\\Common\\\\Profiles\\default\\", "migrated"), "yes");
  EXPECT_EQ(Value("Common\\Profiles\\Home Office", "NCEmailAddress"), "");
  EXPECT_EQ(Value("Common\\Profiles\\Version", "x"), "(none)"); // the name of a value isn't that of a key
  EXPECT_EQ(registry.FindPath("", ""), 0);
  EXPECT_EQ(registry.FindPath("common", ""), -1);
  EXPECT_EQ(registry.Node(registry.FindPath("Common\\Profiles\\default", "directory")).depth, 4U);
  const std::string before = GetFile(path).value();
  EXPECT_EQ(Saved(), before);

  OpenSample("profiles-ja.dat");
  EXPECT_EQ(Value("Common\\Profiles", "CurrentProfile"), "山田太郎");
  for (const char *name : {"表示用", "ソフト開発", "能力", "ﾃｽﾄ ｱｶｳﾝﾄ"})
    EXPECT_NE(Value(std::string("Common\\Profiles\\") + name, "directory").find(name), std::string::npos) << name;
  for (const char *name : {"\x95", "\x95\x5c"}) { // half a character, and one with the byte of the backslash
    const int32_t key = registry.AddKey(0, name);
    EXPECT_EQ(registry.FindPath(name, ""), key);
  }
}

TEST_F(ProfileRegistryTest, EntersAProfileBehindTheEnd) {
  OpenSample("profiles-small.dat");
  std::string expected = GetFile(path).value();
  const uint32_t end = registry.ImageLength();
  const int32_t profiles = registry.AddKey(registry.AddKey(0, "Common"), "Profiles");
  EXPECT_EQ(registry.ImageLength(), end);
  const int32_t profile = registry.AddKey(profiles, "\x95\x5c");
  EXPECT_EQ(registry.SetValue(profile, "migrated", "yes"), profile + 1);
  EXPECT_EQ(registry.SetValue(profile, "directory", "C:\\x"), profile + 2);
  EXPECT_EQ(registry.AddKey(profiles, "\x95\x5c"), profile);

  // The chain's last key and the new key link to the new records; nothing else changes.
  const uint32_t key = end + 3;
  const uint32_t migrated = key + 32 + 9 + 4;
  const uint32_t directory = migrated + 32 + 10 + 5;
  Put32(expected, 0x397 + Builder::Left, key); // "Home Office"
  Builder added;
  added.bytes = expected;
  EXPECT_EQ(added.Record("\x95\x5c", 1, 0x158), key);
  added.Set(key, Builder::Value, migrated);
  added.bytes += std::string("migrated\0yes\0", 13) + std::string(32, '\0');
  added.bytes += std::string("directory\0C:\\x\0", 15) + std::string(32, '\0');
  const auto value = [&](uint32_t record, uint32_t name, uint16_t namelen, uint32_t text, uint32_t length) {
    added.Set(record, Builder::Location, record).Set(record, Builder::Name, name);
    Put16(added.bytes, record + 8, namelen);
    Put16(added.bytes, record + 10, 17);
    added.Set(record, Builder::Value, text).Set(record, Builder::ValueLength, length).Set(record, Builder::Parent, key);
  };
  value(migrated, key + 32, 9, key + 41, 4);
  value(directory, migrated + 32, 10, migrated + 42, 5);
  added.Set(migrated, Builder::Left, directory);
  EXPECT_EQ(Saved(), added.bytes);

  registry.Parse();
  EXPECT_EQ(Value("Common\\Profiles\\\x95\x5c", "directory"), "C:\\x");
}

TEST_F(ProfileRegistryTest, ChangesAValueInItsRoomOrMovesIt) {
  OpenSample("profiles-small.dat");
  const uint32_t end = registry.ImageLength();
  const int32_t profiles = registry.FindPath("Common\\Profiles", "");
  const int32_t current = registry.FindPath("Common\\Profiles", "CurrentProfile");
  ASSERT_EQ(registry.Node(current).down, 12U); // the client's own code overwrites up to this length
  EXPECT_EQ(registry.SetValue(profiles, "CurrentProfile", "short"), current);
  EXPECT_EQ(registry.ImageLength(), end);
  EXPECT_EQ(registry.Node(current).valuelen, 6U);
  EXPECT_EQ(registry.SetValue(profiles, "CurrentProfile", "equal"), current);
  EXPECT_EQ(registry.ImageLength(), end);
  EXPECT_EQ(registry.Node(current).down, 12U);
  std::string expected = Saved();
  EXPECT_EQ(registry.SetValue(profiles, "CurrentProfile", "longer"), current);
  // The value has no spare room at its new position, and nothing else in its record changes.
  const uint32_t record = registry.Node(current).location;
  Put32(expected, record + Builder::Down, 0);
  Put32(expected, record + Builder::Value, end);
  Put32(expected, record + Builder::ValueLength, 7);
  EXPECT_EQ(Saved(), expected + std::string("longer\0", 7));
  ASSERT_EQ(registry.Open(path), 1);
  registry.Parse();
  EXPECT_EQ(Value("Common\\Profiles", "CurrentProfile"), "longer");
}

// Values of types that we don't use stay in their chain.
TEST_F(ProfileRegistryTest, LosesNoValueOfAnotherType) {
  Builder builder;
  const uint32_t key = builder.Record("key", 1, 130);
  const uint32_t number = builder.Record("number", 18, key);
  builder.Set(130, Builder::Down, key).Set(key, Builder::Value, number);
  ASSERT_EQ(Open(builder.bytes), 1);
  registry.Parse();
  EXPECT_EQ(registry.FindPath("key", "number"), -1);
  EXPECT_GE(registry.SetValue(registry.FindPath("key", ""), "text", "a"), 0);
  EXPECT_GE(registry.AddKey(registry.FindPath("key", ""), "below"), 0);
  registry.Parse();
  EXPECT_EQ(registry.Node(3).name, "number");
  EXPECT_EQ(Value("key", "text"), "a");
  EXPECT_GE(registry.FindPath("key\\below", ""), 0);
}

TEST_F(ProfileRegistryTest, RefusesStringsThatAreTooLong) {
  OpenSample("profiles-small.dat");
  const uint32_t end = registry.ImageLength();
  const std::string longest(1023, 'a');
  for (const std::string &name : {std::string(), longest + "a"}) {
    EXPECT_EQ(registry.AddKey(0, name), -1);
    EXPECT_EQ(registry.SetValue(0, name, "a"), -1);
  }
  EXPECT_EQ(registry.SetValue(0, "a", longest + "a"), -1);
  EXPECT_EQ(registry.AddKey(-1, "a"), -1);
  EXPECT_EQ(registry.AddKey(registry.FindPath("Common\\Profiles", "Version"), "a"), -1);
  EXPECT_EQ(registry.ImageLength(), end);
  EXPECT_GE(registry.SetValue(registry.AddKey(0, longest), longest, longest), 0);
}

TEST_F(ProfileRegistryTest, RefusesAFileThatIsNotSound) {
  const auto with = [](auto change) {
    Builder builder;
    const uint32_t key = builder.Record("key", 1, 130);
    const uint32_t value = builder.Record("value", 17, key);
    builder.Set(130, Builder::Down, key).Set(key, Builder::Value, value);
    builder.Set(value, Builder::Value, builder.Text("text")).Set(value, Builder::ValueLength, 5);
    change(builder, key, value);
    return builder.bytes;
  };
  EXPECT_EQ(Open(with([](Builder &, uint32_t, uint32_t) {})), 1);
  const std::pair<const char *, std::string> cases[] = {
      {"short", std::string(161, '\0')},
      {"root that is no key", std::string(200, '\0')},
      {"down behind the end", with([](Builder &b, uint32_t key, uint32_t) { b.Set(key, Builder::Down, 0xFFFFFFF0); })},
      {"record cut", with([](Builder &b, uint32_t key, uint32_t) {
         b.Set(key, Builder::Down, static_cast<uint32_t>(b.bytes.size() - 31));
       })},
      {"loop", with([](Builder &b, uint32_t key, uint32_t) { b.Set(key, Builder::Left, key); })},
      {"loop through the root", with([](Builder &b, uint32_t key, uint32_t) { b.Set(key, Builder::Down, 130); })},
      {"shared record", with([](Builder &b, uint32_t key, uint32_t value) { b.Set(key, Builder::Down, value); })},
      {"record elsewhere", with([](Builder &b, uint32_t key, uint32_t) { b.Set(key, Builder::Location, 130); })},
      {"another parent", with([](Builder &b, uint32_t, uint32_t value) { b.Set(value, Builder::Parent, 130); })},
      {"name without its end", with([](Builder &b, uint32_t key, uint32_t) {
         b.bytes += "name";
         b.Set(key, Builder::Name, static_cast<uint32_t>(b.bytes.size() - 4));
       })},
      {"value over a record",
       with([](Builder &b, uint32_t key, uint32_t value) { b.Set(value, Builder::Value, key); })},
      {"value over the header", with([](Builder &b, uint32_t, uint32_t value) { b.Set(value, Builder::Value, 8); })},
      {"room behind the end",
       with([](Builder &b, uint32_t, uint32_t value) { b.Set(value, Builder::ValueLength, 6); })},
  };
  for (const auto &[name, bytes] : cases) {
    EXPECT_EQ(Open(bytes), 0) << name;
    EXPECT_EQ(registry.Save(), 0) << name;
    EXPECT_EQ(GetFile(path), bytes) << name;
  }
  EXPECT_EQ(registry.Open("C:\\acctkit-test\\none.dat"), 0);
}

TEST_F(ProfileRegistryTest, FollowsATreeOfAnyDepth) {
  constexpr int Levels = 20000;
  Builder builder;
  uint32_t parent = 130;
  for (int level = 0; level < Levels; ++level) {
    const uint32_t key = builder.Record("k", 1, parent);
    builder.Set(parent, Builder::Down, key);
    parent = key;
  }
  ASSERT_EQ(Open(builder.bytes), 1);
  registry.Parse();
  EXPECT_EQ(registry.NodeCount(), Levels + 1);
  std::string deepest;
  for (int level = 0; level < Levels; ++level)
    deepest += "k\\";
  EXPECT_EQ(registry.FindPath(deepest, ""), Levels);
  EXPECT_EQ(registry.SetValue(0, "value", ""), Levels + 1); // its key still links to its subkeys
  registry.Parse();
  EXPECT_EQ(registry.NodeCount(), Levels + 2);
}

} // namespace
