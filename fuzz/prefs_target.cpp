// Untrusted prefs.js: every operation changes the text as a plain operation on a std::string does, and no edit of an
// account loses a line that doesn't belong to the account.
#include "clients/communicator/communicator_mail.h"
#include "clients/communicator/communicator_news.h"
#include "clients/netscape6/netscape6_mail.h"
#include "clients/netscape6/netscape6_news.h"
#include "clients/registry_key.h"
#include "stores/prefs_file.h"

#include "fuzzing.h"
#include "support/scratch_machine.h"

#include <memory>
#include <optional>

namespace {

constexpr const char *Profile = "profile";
constexpr const char *ProfileDirectory = "C:\\Users\\profile";
constexpr const char *Path = "C:\\Users\\profile\\prefs.js";
constexpr const char *PrefsFile = "Users/profile/prefs.js";

// A machine whose Communicator, installed in C:\, has a profile; the adapters of Netscape 6 get that profile's folder.
struct ProfileMachine : ScratchMachine {
  ProfileMachine() {
    std::filesystem::create_directories(Drive() / "Users/profile");
    WriteValuesFullAccess(HKEY_CURRENT_USER, "Software\\Netscape\\Netscape Navigator\\Main",
                          {{"Install Directory", {"C:"}}});
  }
};
const ProfileMachine Machine;

// ---- The operations on a text of any length ----

struct PlainPrefs {
  std::string text;
  bool whole = true;

  explicit PlainPrefs(const std::string &file) : text(file.substr(0, PrefsCapacity)) {
    text.resize(std::min(text.find('\0'), text.size()));
    whole = text.size() == file.size();
    if (!text.empty() && text.back() != '\n')
      Insert(text.size(), "\n");
  }

  // The line of a needle, from the LF before it to its own LF.
  struct Span {
    size_t begin, needle, end;
  };
  std::optional<Span> Find(const std::string &needle) const {
    const size_t position = text.find(needle);
    const size_t end = text.find('\n', position);
    if (position == std::string::npos || end == std::string::npos)
      return std::nullopt;
    const size_t before = text.rfind('\n', position);
    const size_t begin = before == std::string::npos ? 0 : before;
    return position - begin > 1024 ? std::nullopt : std::optional<Span>({begin, position, end});
  }
  void Insert(size_t position, const std::string &line) {
    if (text.size() + line.size() > PrefsCapacity)
      whole = false;
    else
      text.insert(position, line);
  }
  std::optional<std::string> Value(const std::string &needle) const {
    size_t position = text.find(needle);
    for (int quotes = 0; quotes < 2 && position != std::string::npos; ++quotes)
      position = text.find('"', position) == std::string::npos ? std::string::npos : text.find('"', position) + 1;
    const size_t end = position == std::string::npos ? position : text.find('"', position);
    return end == std::string::npos ? std::nullopt : std::optional(text.substr(position, end - position));
  }
};

// A buffer of exactly this many bytes.
struct Buffer {
  explicit Buffer(int32_t room) : size(room), bytes(new char[static_cast<size_t>(room)]) {
    std::fill_n(bytes.get(), size, '?');
  }
  bool Holds(const std::optional<std::string> &text) const {
    return text && text->size() < static_cast<size_t>(size) ? *text == bytes.get() : size == 0 || bytes[0] == '\0';
  }
  bool IsUntouched() const {
    return std::all_of(bytes.get(), bytes.get() + size, [](char c) { return c == '?'; });
  }

  int32_t size;
  std::unique_ptr<char[]> bytes;
};

void RequireSame(const PrefsText &prefs, const PlainPrefs &plain) {
  REQUIRE(std::string_view(prefs.text, prefs.length) == plain.text && prefs.whole == plain.whole);
  static const std::string Zeros(sizeof prefs.text, '\0');
  REQUIRE(Zeros.compare(prefs.length, std::string::npos, prefs.text + prefs.length, Zeros.size() - prefs.length) == 0);
}

std::string TakeText(FuzzedDataProvider &input, size_t longest) {
  std::string text = input.ConsumeRandomLengthString(longest);
  text.resize(std::min(text.find('\0'), text.size()));
  return text;
}

// A needle: a part of the text, a key that clients use, or random bytes.
std::string TakeNeedle(FuzzedDataProvider &input, const std::string &text) {
  const char *const keys[] = {"mail.pop_name", "mail.server.server1.name", "user_pref(\"", "\"", "\n", ""};
  switch (input.ConsumeIntegralInRange(0, 2)) {
  case 0:
    return text.substr(input.ConsumeIntegralInRange<size_t>(0, text.size()),
                       input.ConsumeIntegralInRange<size_t>(0, 40));
  case 1:
    return input.PickValueInArray(keys);
  default:
    return TakeText(input, 40);
  }
}

void Operate(PrefsText &prefs, PlainPrefs &plain, FuzzedDataProvider &input) {
  const std::string needle = TakeNeedle(input, plain.text);
  const Buffer out(input.ConsumeIntegralInRange(0, 300));
  const auto found = plain.Find(needle);
  switch (input.ConsumeIntegralInRange(0, 5)) {
  case 0:
    REQUIRE(RemovePrefLine(needle.c_str(), prefs) == found.has_value());
    if (found)
      plain.text.erase(found->begin, found->end - found->begin);
    break;
  case 1: {
    const auto kept =
        found ? std::optional(plain.text.substr(found->needle, found->end - found->needle)) : std::nullopt;
    const bool takes = kept && kept->size() < static_cast<size_t>(out.size);
    REQUIRE(TakePrefLine(needle.c_str(), prefs, out.bytes.get(), out.size) == takes);
    REQUIRE(takes ? out.Holds(kept) : out.IsUntouched());
    if (takes)
      plain.text.erase(found->begin, found->end - found->begin);
    break;
  }
  case 2: {
    const std::string line = TakeText(input, 400);
    AppendPrefLine(prefs, line.c_str());
    plain.Insert(plain.text.size(), line);
    break;
  }
  case 3: {
    const std::string line = TakeText(input, 400);
    const size_t position = plain.text.find(needle);
    const size_t end = position == std::string::npos ? position : plain.text.find('\n', position);
    REQUIRE(InsertPrefLine(needle.c_str(), prefs, line.c_str()) == (end != std::string::npos));
    if (end != std::string::npos)
      plain.Insert(end + 1, line);
    break;
  }
  case 4: {
    const auto value = plain.Value(needle);
    const bool fits = value && value->size() < static_cast<size_t>(out.size);
    REQUIRE(FindPrefValue(needle.c_str(), prefs) == value);
    REQUIRE(ReadPrefValue(needle.c_str(), prefs, out.bytes.get(), out.size) == fits && out.Holds(value));
    REQUIRE(HasPrefText(needle.c_str(), prefs) == (plain.text.find(needle) != std::string::npos));
    break;
  }
  default: {
    const std::string list = input.ConsumeBool() ? plain.Value(needle).value_or("") : needle;
    const int32_t index = input.ConsumeIntegralInRange(0, 12);
    size_t begin = 0;
    for (int32_t skipped = 0; skipped < index && begin != std::string::npos; ++skipped)
      begin = list.find(',', begin) == std::string::npos ? std::string::npos : list.find(',', begin) + 1;
    REQUIRE(CountListItems(list.c_str()) == 1 + std::count(list.begin(), list.end(), ','));
    const int32_t result = GetListItem(list.c_str(), index, out.bytes.get(), out.size);
    if (begin == std::string::npos) {
      REQUIRE(result == 0 && out.IsUntouched());
      break;
    }
    const std::string item = list.substr(begin, list.find(',', begin) - begin);
    REQUIRE(result == (item.size() < static_cast<size_t>(out.size)) && out.Holds(item));
  }
  }
}

// ---- The adapters' edits ----

// An edit may remove a line that contains one of these.
constexpr const char *AccountWords[] = {"mail.",
                                        "network.hosts.",
                                        "news.remember_password",
                                        "browser.startup.homepage",
                                        "offline.news.download.",
                                        "signon.rememberSignons",
                                        "\"forum.example\""};

bool IsForeign(std::string_view line) {
  return std::none_of(std::begin(AccountWords), std::end(AccountWords),
                      [&](const char *word) { return line.find(word) != std::string_view::npos; });
}

template <typename Adapter, typename Spec>
void EditAccount(const std::string &file, const Spec &spec, std::string key, const char *written) {
  Adapter adapter;
  const int32_t result = adapter.SetupAccount(spec, key);
  const std::string after = Machine.GetFile(PrefsFile);
  if (result == 0) {
    REQUIRE(after == file);
    return;
  }
  REQUIRE(result == 1 && file.find('\0') == std::string::npos && after.size() <= PrefsCapacity);
  REQUIRE(KeepsLines(file, after, IsForeign));
  REQUIRE(after.find(written) != std::string::npos);
}

void EditAccounts(const std::string &file, FuzzedDataProvider &input) {
  std::filesystem::remove_all(Machine.Drive() / "Users/profile/news");
  const int client = input.ConsumeIntegralInRange(0, 3);
  if (client < 2) {
    MailAccountSpec spec;
    spec.userId = "ABC01234";
    spec.senderName = "Taro";
    spec.accountName = "account";
    spec.smtpServer = "smtp.example";
    spec.popServer = "pop.example";
    spec.mailAddress = "taro@mail.example";
    if (client == 0)
      EditAccount<CommunicatorMail>(file, spec, Profile, "user_pref(\"mail.pop_name\", \"ABC01234\");\n");
    else
      EditAccount<Netscape6Mail>(file, spec, ProfileDirectory, ".userName\", \"ABC01234\");\n");
    return;
  }
  NewsAccountSpec spec;
  spec.userId = "ABC01234";
  spec.senderName = "Taro";
  spec.accountName = "account";
  spec.newsHosts = {"forum.example", ""};
  spec.newsServerNames = {"forum", ""};
  spec.mailAddress = "taro@mail.example";
  spec.serverIndex = input.ConsumeIntegralInRange(0, 1);
  spec.newsServerOn = {1, 0};
  if (client == 2)
    EditAccount<CommunicatorNews>(file, spec, Profile, "user_pref(\"mail.pop_name\", \"ABC01234\");\n");
  else
    EditAccount<Netscape6News>(file, spec, ProfileDirectory, ".userName\", \"ABC01234\");\n");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  TextAndCommands input(data, size);
  std::string file = input.text;
  // Sometimes a file that nearly fills the room for it.
  if (input.commands.ConsumeIntegralInRange(0, 15) == 15)
    file.insert(0, PrefsCapacity - std::min(PrefsCapacity, file.size() + input.commands.ConsumeIntegral<uint8_t>()),
                input.commands.ConsumeBool() ? '\n' : '/');
  Machine.PutFile(PrefsFile, file);

  if (input.commands.ConsumeBool()) {
    EditAccounts(file, input.commands);
    return 0;
  }
  const auto prefs = std::make_unique<PrefsText>();
  LoadPrefsText(Path, *prefs);
  PlainPrefs plain(file);
  RequireSame(*prefs, plain);
  for (int number = 0; number < 16 && input.commands.remaining_bytes() > 0; ++number) {
    Operate(*prefs, plain, input.commands);
    RequireSame(*prefs, plain);
  }
  SavePrefsText(Path, *prefs);
  REQUIRE(Machine.GetFile(PrefsFile) == (plain.whole ? plain.text : file));

  char converted[PrefValueSize];
  const std::string value = TakeText(input.commands, 300);
  const int32_t result = ToUtf8Value(value.c_str(), converted);
  REQUIRE(std::find(converted, std::end(converted), '\0') != std::end(converted));
  REQUIRE(result == 1 || converted[0] == '\0');
  return 0;
}
