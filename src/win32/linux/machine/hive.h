// A registry hive in Wine's text format ("WINE REGISTRY Version 2"): the tree of its keys, and the text they came from.
//
// What isn't edited keeps its text, byte for byte: a section (a key's heading and the lines below it) is divided into
// lines only when one of its values is asked for, and of an edited section only the lines of the values that changed
// are new.
#pragma once

#include "win32/linux/machine/hive_text.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace machine {

class Hive {
public:
  struct Key {
    Key *parent = nullptr;
    std::u16string name;
    std::map<std::u16string, std::unique_ptr<Key>, std::less<>> subkeys; // by their names in upper case
    std::vector<uint32_t> sections; // one as a rule; Wine merges those that a file has twice
    bool isLink = false;            // to the key that its value SymbolicLinkValue names
    std::vector<const Key *> order; // the subkeys by index, once somebody asked for one

    // The subkey at an index, null behind the last one.
    const Key *Subkey(size_t index);
  };

  // The text of a hive without keys, whose root the registry knows as `root` (as in "\\\\Machine").
  static std::string EmptyText(std::string_view root);

  // Takes over a hive's text. An empty answer if it is sound, else a line that says where it is damaged; the hive can't
  // be used then.
  std::string Load(std::string fileText);

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
  Found ReadValue(const Key &key, std::u16string_view name, HiveValue &value);
  void WriteValue(Key &key, const HiveValue &value);
  // False if there was no such value.
  bool RemoveValue(Key &key, std::u16string_view name);

private:
  friend struct HiveHooks; // of the tests

  // A line of a section: of a value with all its continuation lines, else just text.
  struct Line {
    std::string text;
    std::optional<std::u16string> valueName;
  };
  struct Section {
    std::string_view original; // into `loaded`; unused once `lines` are there
    std::vector<Line> lines;
    bool divided = false; // into lines
  };

  // The line that tells where the hive is damaged; `rest` begins at the damaged line.
  std::string Damage(std::string_view rest, std::string_view what) const;
  // These report an invalid line in `damage`.
  std::string LoadSections(std::string_view rest);
  Key *BeginSection(std::string_view heading, std::string_view &damage);
  Key *KeyOfHeading(std::string_view heading, std::string_view &damage);
  std::string_view ReadPlainLine(std::string_view line, Key *key);

  Key &Subkey(Key &parent, std::u16string_view name);
  // The names of a key and those above it, from the root down.
  static std::vector<std::u16string_view> PathOf(const Key &key);
  void AddSection(Key &key);
  std::vector<Line> &LinesOf(Section &section);
  // The line of a value, the last one that stands for it; null if there is none.
  Line *FindLine(const Key &key, std::u16string_view name, std::vector<Line> **owner);

  std::string loaded;
  std::string_view header; // all before the first key
  std::vector<Section> sections;
  Key root;
  bool is64Bit = false;
  // The heading that was read last and the keys along its path, each with where the names below it begin: the next
  // heading mostly differs in the last name alone.
  std::string_view lastHeading;
  std::vector<std::pair<size_t, Key *>> lastPath = {{1, &root}};
};

} // namespace machine
