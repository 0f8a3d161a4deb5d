// A registry hive in Wine's text format ("WINE REGISTRY Version 2"): the text of each section (a key's heading and the
// lines below it), and the tree of its keys.
//
// A hive has thousands of keys, of which few are asked for. So loading only looks whether the text is sound; the
// subkeys of a key are made when somebody asks for one of them. Values are read from the text of their section and
// written into it: what isn't edited keeps its text, byte for byte.
#pragma once

#include "win32/linux/machine/hive_text.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace machine {

class Hive {
public:
  // A heading and the lines below it.
  struct Section {
    std::string_view text;               // into the text as loaded, or into `edited`
    std::unique_ptr<std::string> edited; // once it was
    uint32_t shared = 0; // where the first name in the heading begins that the heading before it doesn't have
    bool isLink = false;
  };
  // Sections in a row whose keys are all below one key.
  struct Run {
    std::span<Section> sections;
    size_t at = 0; // where the names below that key begin in the headings
  };
  struct Key {
    using KeyMap = std::map<std::u16string, std::unique_ptr<Key>, std::less<>>;

    Key *parent = nullptr;
    std::u16string name;
    std::vector<Section *> sections; // one as a rule; Wine merges those that a file has twice
    bool isLink = false;             // to the key that its value SymbolicLinkValue names

    // The subkeys by their names in upper case.
    KeyMap &Subkeys() {
      if (!runs.empty())
        MakeSubkeys();
      return subkeys;
    }
    // The subkey at an index, null behind the last one.
    const Key *Subkey(size_t index);

  private:
    friend class Hive;
    void MakeSubkeys();
    // Finds a subkey, or makes it.
    Key &MakeSubkey(std::u16string_view subkeyName);

    std::vector<Run> runs; // that the subkeys are made from
    KeyMap subkeys;
    std::vector<const Key *> order; // the subkeys by index, once somebody asked for one
  };

  // The text of a hive without keys, whose root the registry knows as `root` (as in "\\\\Machine").
  static std::string EmptyText(std::string_view root);

  // Takes over a hive's text. An empty answer if it is sound, else a line that says where it is damaged; the hive can't
  // be used then.
  std::string Load(std::string fileText);

  // The text as it was loaded, without the edits.
  const std::string &Loaded() const { return loaded; }
  // The text to be written: what was loaded, with all edits.
  std::string Text() const;

  // Whether the hive says that it is of a 64-bit Windows.
  bool Is64Bit() const { return is64Bit; }

  Key &Root() { return root; }

  // The key at a path of names divided by backslashes below another one, null if there is none.
  Key *Find(Key &from, std::u16string_view path);
  // The same, making what is missing. Null for a name of more than 255 characters or a path of more than 512 names.
  Key *Create(Key &from, std::u16string_view path);

  enum class Found { Yes, No, Damaged };
  Found ReadValue(const Key &key, std::u16string_view name, HiveValue &value) const;
  void WriteValue(Key &key, const HiveValue &value);
  // False if there was no such value.
  bool RemoveValue(Key &key, std::u16string_view name);

private:
  // A part of a section's text.
  struct Part {
    Section *section = nullptr;
    std::string_view text;
  };

  // The text to be written in pieces one behind the other, few where little was edited.
  std::vector<std::string_view> Pieces() const;
  // The line that tells where the hive is damaged; `rest` begins at the damaged line.
  std::string Damage(std::string_view rest, std::string_view what) const;
  std::string LoadSections(std::string_view rest);
  // What is wrong with a line that has neither key nor value, nothing if it is sound.
  std::string_view ReadPlainLine(std::string_view line);

  // The names of a key and those above it, from the root down.
  static std::vector<std::u16string_view> PathOf(const Key &key);
  void AddSection(Key &key);
  // The lines of a value, the last ones if it has several; no section if it has none.
  static Part FindValue(const Key &key, std::u16string_view name);
  static void Replace(const Part &part, std::string_view text);

  std::string loaded;
  std::string_view header; // all before the first key
  std::vector<Section> sections;
  std::deque<Section> added; // of keys that weren't in the text as loaded
  Key root;
  bool is64Bit = false;
};

} // namespace machine
