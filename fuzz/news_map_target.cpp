// A hostile map of news servers: what stands in it stays, a server is entered at most once, and neither the map nor a
// line of it outgrows its bounds. The text is the map, the commands choose what else stands there, and the servers.
#include "clients/communicator/news_map.h"

#include "fuzzing.h"
#include "support/scratch_machine.h"

#include <map>
#include <optional>

namespace {

namespace fs = std::filesystem;
using communicator::NewsMap;

const ScratchMachine Machine;
constexpr size_t LongestLine = 255;

// A profile on drive C:, with a news folder, a map in it, and the newsrc file of one server.
class Profile {
public:
  explicit Profile(const std::string &name) : directory("C:\\" + name), folder(Machine.Drive() / name) {
    fs::create_directories(News());
    Put("square.rc", "read: 1-500");
  }
  ~Profile() { fs::remove_all(folder); }

  fs::path News() const { return folder / "news"; }
  void Put(const char *name, const std::string &bytes) const {
    std::ofstream(News() / name, std::ios::binary) << bytes;
  }

  // All files by their paths, as they are read.
  std::map<std::string, std::string> Files() const {
    std::map<std::string, std::string> files;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(folder))
      if (entry.is_regular_file()) {
        std::ifstream file(entry.path(), std::ios::binary);
        files[entry.path().lexically_relative(News())] = {std::istreambuf_iterator<char>(file), {}};
      }
    return files;
  }

  const std::string directory;

private:
  const fs::path folder;
};

// Puts the map there, or something that can't be opened as one. The text of a map that can; an empty one if there is
// none yet.
std::optional<std::string> PutMap(const Profile &profile, const std::string &map, FuzzedDataProvider &input) {
  const fs::path path = profile.News() / "fat";
  switch (input.ConsumeIntegralInRange(0, 15)) {
  default:
    profile.Put("fat", map);
    return map;
  case 10: // by a link
    profile.Put("kept", map);
    fs::create_symlink("kept", path);
    return map;
  case 11:
    return "";
  case 12:
    fs::remove_all(profile.News());
    return "";
  case 13:
    profile.Put("fat", map);
    fs::permissions(path, fs::perms::owner_read);
    return std::nullopt;
  case 14:
    fs::create_directory(path);
    return std::nullopt;
  case 15:
    fs::create_symlink("nowhere", path);
    return std::nullopt;
  }
}

std::string TakeHost(FuzzedDataProvider &input, const std::string &map) {
  const char *const hosts[] = {"forum.example", "square.example", "sub\\dir.example", "fat.", ".", "nodot"};
  std::string host;
  switch (input.ConsumeIntegralInRange(0, 3)) {
  case 0:
    return input.PickValueInArray(hosts);
  case 1: // what may stand in the map already
    host = map.substr(input.ConsumeIntegralInRange<size_t>(0, map.size()), input.ConsumeIntegral<uint8_t>());
    break;
  case 2:
    host = input.ConsumeRandomLengthString(40);
    break;
  default:
    host.assign(input.ConsumeIntegral<uint8_t>(), 'h');
    host.append(1, '.').append(input.ConsumeIntegral<uint8_t>(), 'o');
  }
  return host.substr(0, host.find('\0'));
}

// What is behind a map once the server is entered.
std::string Addition(const std::string &map, const std::string &record) {
  const std::string heading =
      map.find("netscape-newsrc-map-file") == std::string::npos ? "netscape-newsrc-map-file\n" : "";
  return (map.empty() || map.ends_with('\n') ? "" : "\n") + heading + record;
}

// Enters a server if it can be. Keeps the text that the map then has.
void EnterServer(const Profile &profile, std::optional<std::string> &map, const std::string &host) {
  const NewsMap news(profile.directory);
  const std::string first = host.substr(0, host.find('.'));
  const std::string newsrc = profile.directory + "\\news\\" + first + ".rc";
  const std::string record = "newsrc-" + host + "\t" + newsrc + "\tFALSE\n";
  const auto before = profile.Files();
  const bool fits = first.size() < host.size() && (profile.directory + "\\news\\fat").size() <= LongestLine &&
                    newsrc.size() <= LongestLine && record.size() <= LongestLine;
  const bool stands = map && map->find(host) != std::string::npos;
  const bool hasRoom = !map || (map->size() <= NewsMap::Capacity && map->find('\0') == std::string::npos &&
                                (stands || map->size() + Addition(*map, record).size() <= NewsMap::Capacity));
  REQUIRE(news.CanEnter(host) == (fits && hasRoom));
  REQUIRE(profile.Files() == before);
  if (!fits || !hasRoom)
    return;

  news.Enter(host);
  const auto after = profile.Files();
  if (map && !stands) {
    map->append(Addition(*map, record));
    REQUIRE(map->size() <= NewsMap::Capacity);
    const char *const file = before.contains("kept") ? "kept" : "fat";
    REQUIRE(after.contains(file) && after.at(file) == *map && after.at("fat") == *map);
    // Besides, one file is empty now, the server's.
    int emptied = 0;
    for (const auto &[path, bytes] : after)
      if (path != "fat" && path != file && (!before.contains(path) || before.at(path) != bytes))
        REQUIRE(bytes.empty() && ++emptied == 1);
    for (const auto &[path, bytes] : before)
      REQUIRE(after.contains(path));
    REQUIRE(first.find_first_not_of("abcdefghijklmnopqrstuvwxyz") != std::string::npos ||
            (after.contains(first + ".rc") && after.at(first + ".rc").empty()));
  } else {
    REQUIRE(after == before);
  }
  REQUIRE(news.CanEnter(host));
  news.Enter(host);
  REQUIRE(profile.Files() == after);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  TextAndCommands input(data, size);
  std::string text = input.text;
  // Sometimes a map that nearly fills the room for it, and a profile whose paths nearly fill theirs.
  if (input.commands.ConsumeIntegralInRange(0, 7) == 7)
    text.insert(0,
                NewsMap::Capacity + 1 -
                    std::min(NewsMap::Capacity + 1, text.size() + input.commands.ConsumeIntegral<uint8_t>()),
                '\n');
  const Profile profile(std::string(
      input.commands.ConsumeIntegralInRange(0, 7) == 7 ? input.commands.ConsumeIntegralInRange<size_t>(200, 250) : 7,
      'p'));
  std::optional<std::string> map = PutMap(profile, text, input.commands);
  for (int number = 0; number < 4; ++number)
    EnterServer(profile, map, TakeHost(input.commands, text));
  return 0;
}
