// Where a path leads a 32-bit process: Wow6432Node, links, and the keys that both kinds of process share.
#include "win32/linux/machine/wow64.h"

#include "win32/linux/text/code_page.h"
#include "win32/linux/text/names.h"

#include <algorithm>

namespace machine {

namespace {

constexpr std::u16string_view Node = u"WOW6432NODE";

// What processes of both kinds share below `Software`, as Wine has it. Its prefixes say so themselves, by links below
// `Wow6432Node`; where a link is missing the list counts, which Wine makes the links by again. Windows shares `Clients`
// and `RegisteredApplications` besides.
constexpr std::u16string_view SharedKeys[] = {
    u"Classes",
    u"Microsoft\\Clients",
    u"Microsoft\\Cryptography\\Calais\\Current",
    u"Microsoft\\Cryptography\\Calais\\Readers",
    u"Microsoft\\Cryptography\\Services",
    u"Microsoft\\CTF\\SystemShared",
    u"Microsoft\\CTF\\TIP",
    u"Microsoft\\DFS",
    u"Microsoft\\Driver Signing",
    u"Microsoft\\EnterpriseCertificates",
    u"Microsoft\\EventSystem",
    u"Microsoft\\MSMQ",
    u"Microsoft\\Non-Driver Signing",
    u"Microsoft\\Notepad\\DefaultFonts",
    u"Microsoft\\OLE",
    u"Microsoft\\RAS",
    u"Microsoft\\RPC",
    u"Microsoft\\SystemCertificates",
    u"Microsoft\\TermServLicensing",
    u"Microsoft\\Transaction Server",
    u"Microsoft\\Windows\\CurrentVersion\\App Paths",
    u"Microsoft\\Windows\\CurrentVersion\\Control Panel\\Cursors\\Schemes",
    u"Microsoft\\Windows\\CurrentVersion\\Explorer\\AutoplayHandlers",
    u"Microsoft\\Windows\\CurrentVersion\\Explorer\\DriveIcons",
    u"Microsoft\\Windows\\CurrentVersion\\Explorer\\KindMap",
    u"Microsoft\\Windows\\CurrentVersion\\Group Policy",
    u"Microsoft\\Windows\\CurrentVersion\\Policies",
    u"Microsoft\\Windows\\CurrentVersion\\PreviewHandlers",
    u"Microsoft\\Windows\\CurrentVersion\\Setup",
    u"Microsoft\\Windows\\CurrentVersion\\Telephony\\Locations",
    u"Microsoft\\Windows NT\\CurrentVersion\\Console",
    u"Microsoft\\Windows NT\\CurrentVersion\\FontDpi",
    u"Microsoft\\Windows NT\\CurrentVersion\\FontLink",
    u"Microsoft\\Windows NT\\CurrentVersion\\FontMapper",
    u"Microsoft\\Windows NT\\CurrentVersion\\Fonts",
    u"Microsoft\\Windows NT\\CurrentVersion\\FontSubstitutes",
    u"Microsoft\\Windows NT\\CurrentVersion\\Gre_Initialize",
    u"Microsoft\\Windows NT\\CurrentVersion\\Image File Execution Options",
    u"Microsoft\\Windows NT\\CurrentVersion\\LanguagePack",
    u"Microsoft\\Windows NT\\CurrentVersion\\NetworkCards",
    u"Microsoft\\Windows NT\\CurrentVersion\\Perflib",
    u"Microsoft\\Windows NT\\CurrentVersion\\Ports",
    u"Microsoft\\Windows NT\\CurrentVersion\\Print",
    u"Microsoft\\Windows NT\\CurrentVersion\\ProfileList",
    u"Microsoft\\Windows NT\\CurrentVersion\\Time Zones",
    u"Policies",
    u"Registered Applications",
};

Hive::Key *Child(Hive::Key &key, std::u16string_view upperName) {
  const auto found = key.Subkeys().find(upperName);
  return found != key.Subkeys().end() ? found->second.get() : nullptr;
}

// Takes all names of another path off a path; false if it doesn't begin with them.
bool TakePath(std::u16string_view &path, std::u16string_view other) {
  for (auto name = text::TakeName(other); !name.empty(); name = text::TakeName(other))
    if (!text::SameName(text::TakeName(path), name))
      return false;
  return true;
}

// Goes along a path, name by name.
class Walk {
public:
  Walk(HiveFile &file, Hive::Key &from) : hive(file.Content()), key(&from) {
    if (!hive.Is64Bit() || !file.IsLocalMachine())
      return;
    software = Child(hive.Root(), u"SOFTWARE");
    classes = software != nullptr ? Child(*software, u"CLASSES") : nullptr;
  }

  Reached Go(std::u16string_view path) {
    const std::u16string upper = text::ToUpper(path);
    std::u16string_view rest = upper;
    std::u16string_view ahead = rest;
    for (auto name = text::TakeName(ahead); !name.empty(); name = text::TakeName(ahead)) {
      if (!Step(name, ahead)) {
        if (!LookAmongShared(rest))
          return {key, path.substr(path.size() - rest.size())};
        break;
      }
      rest = ahead;
    }
    return {key, {}};
  }

private:
  // Goes on by a name; `ahead` is the path behind it.
  bool Step(std::u16string_view name, std::u16string_view ahead) {
    ChooseClasses(name);
    Hive::Key *const next = Child(*key, name);
    if (next == nullptr)
      return false;
    key = next;
    if (hive.Is64Bit())
      Redirect(name, text::TakeName(ahead));
    return true;
  }

  // Replaces the key just reached by the one that a 32-bit process sees.
  void Redirect(std::u16string_view name, std::u16string_view nextName) {
    Hive::Key *const target = key->isLink && software != nullptr ? Target(*key) : nullptr;
    key = target != nullptr ? target : key;
    Hive::Key *const node = Child(*key, Node);
    if (node != nullptr && key != classes && name != Node && nextName != Node)
      key = node;
  }

  // `Software\Classes` is shared name by name: a subkey that its Wow6432Node lacks is looked up, and made, in the key
  // itself.
  void ChooseClasses(std::u16string_view name) {
    Hive::Key *const node = classes != nullptr ? Child(*classes, Node) : nullptr;
    if (node != nullptr && name != Node && (key == classes || key == node))
      key = Child(*node, name) != nullptr ? node : classes;
  }

  // Finds what of a shared key isn't below Software\Wow6432Node, and no link there leads to.
  bool LookAmongShared(std::u16string_view rest) {
    if (software == nullptr)
      return false;
    std::u16string path(rest);
    const Hive::Key *above = key;
    for (; above != nullptr && above->parent != software; above = above->parent)
      path.insert(0, above->name + u'\\');
    const auto begins = [&](std::u16string_view shared) {
      std::u16string_view ahead = path;
      return TakePath(ahead, shared);
    };
    if (above == nullptr || !text::SameName(above->name, Node) || !std::ranges::any_of(SharedKeys, begins))
      return false;
    Hive::Key *const found = hive.Find(*software, path);
    key = found != nullptr ? found : key;
    return found != nullptr;
  }

  // The key that a link leads to, null if it isn't there. Software\Wow6432Node\Classes leads to the one within
  // `Classes`.
  Hive::Key *Target(const Hive::Key &link) {
    HiveValue value;
    if (hive.ReadValue(link, u"SymbolicLinkValue", value) != Hive::Found::Yes)
      return nullptr;
    const std::u16string target = text::WideOf(value.data);
    std::u16string_view path = target;
    Hive::Key *const found = TakePath(path, u"Registry\\Machine") ? hive.Find(hive.Root(), path) : nullptr;
    return found != nullptr && found->parent == classes && text::SameName(found->name, Node) ? classes : found;
  }

  Hive &hive;
  Hive::Key *key; // the one just reached
  // Of HKEY_LOCAL_MACHINE alone.
  Hive::Key *software = nullptr;
  Hive::Key *classes = nullptr;
};

} // namespace

Reached Reach(HiveFile &file, Hive::Key &from, std::u16string_view path) { return Walk(file, from).Go(path); }

} // namespace machine
