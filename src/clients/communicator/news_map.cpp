#include "clients/communicator/news_map.h"

#include "clients/communicator/communicator_layout.h"
#include "clients/communicator/communicator_profiles.h"
#include "clients/file_queries.h"
#include "stores/file_handle.h"

namespace communicator {

namespace {

bool Holds(const std::string &map, const std::string &text) { return map.find(text) != std::string::npos; }

// The map's text; nothing if it can't be opened, is too large, or isn't a text.
std::optional<std::string> ReadMap(const std::string &path, const FileHandle &file) {
  std::string map(NewsMap::Capacity + 1, '\0');
  DWORD read = 0;
  if (!file || !ReadFile(file.Get(), map.data(), static_cast<DWORD>(map.size()), &read, nullptr))
    return std::nullopt;
  map.resize(read);
  if (read <= NewsMap::Capacity && !Holds(map, std::string(1, '\0')))
    return map;
  PlatformCall::Report(path.c_str(), "too long, or with a zero byte in it");
  return std::nullopt;
}

} // namespace

NewsMap::NewsMap(const std::string &profileDirectory)
    : folder(NewsFolder(profileDirectory)), path(NewsMapPath(profileDirectory)) {}

std::string NewsMap::NewsrcPath(const std::string &host) const {
  return communicator::NewsrcPath(folder, host.substr(0, host.find('.')));
}

std::string NewsMap::Record(const std::string &host) const {
  return NewsRecordPrefix + host + '\t' + NewsrcPath(host) + "\tFALSE\n";
}

std::string NewsMap::WithServer(const std::string &map, const std::string &host) const {
  const bool lineIsOpen = !map.empty() && map.back() != '\n';
  return map + (lineIsOpen ? "\n" : "") + (Holds(map, NewsMapHeading) ? "" : NewsMapHeading + std::string("\n")) +
         Record(host);
}

bool NewsMap::CanEnter(const std::string &host) const {
  if (host.find('.') == std::string::npos || path.size() >= LineSize || NewsrcPath(host).size() >= LineSize ||
      Record(host).size() >= LineSize)
    return false;
  if (!PathExists(path.c_str()))
    return true;
  const FileHandle file = OpenFileAlone(path.c_str(), GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING);
  if (!file)
    return true;
  const std::optional<std::string> map = ReadMap(path, file);
  return map && (Holds(*map, host) || WithServer(*map, host).size() <= Capacity);
}

void NewsMap::Enter(const std::string &host) const {
  CreateDirectoryA(folder.c_str(), nullptr);
  const std::optional<std::string> map =
      ReadMap(path, OpenFileAlone(path.c_str(), GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS));
  if (!map || Holds(*map, host))
    return;
  if (WriteWholeFile(path.c_str(), GENERIC_WRITE, WithServer(*map, host)))
    WriteWholeFile(NewsrcPath(host).c_str(), GENERIC_WRITE, "");
}

} // namespace communicator
