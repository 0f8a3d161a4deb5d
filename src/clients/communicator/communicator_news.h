// Netscape Communicator 4.x as a news client: a news server in a profile's map and in its prefs.js. The twin of
// CommunicatorMail, on the same profiles.
#pragma once

#include "clients/communicator/communicator_layout.h"
#include "clients/installed_program.h"
#include "clients/news_client.h"
#include "stores/prefs_file.h"

class ProfilePrefs;

class CommunicatorNews : public NewsClient {
public:
  int32_t IsInstall() override { return IsInstalled(communicator::Program); }

  // Puts the record's server into the profile that the account's title names, or that `key` names: the profile's
  // registry values and directory, where the server is on the map of news servers and an empty newsrc file, and its
  // news preferences. A sender that prefs.js names already stays; a newsrc file of the server's name that isn't on the
  // map is emptied. 0, with nothing written, if Communicator's install directory can't be read or is empty, a new
  // profile's title is empty or can't be a folder's name, the host of a server that is on has no dot, a name, line or
  // path has more than 255 bytes, or prefs.js or the map has no room or a zero byte in it.
  int32_t SetupAccount(const NewsAccountSpec &spec, std::string &key) override;

  int32_t SetDefaultClient() override { return 1; }

  // Matches the profile's name as CommunicatorMail does; both servers of a record give the same answer.
  int32_t IsExistAccount(const NewsAccountSpec &spec, std::string &key, std::string &message) override;

  int32_t GetClientName(std::string &name) override { return ReadName(communicator::Program, name); }
  int32_t GetClientPath(std::string &path) override { return ReadProgramPath(communicator::Program, path); }
  int32_t GetClientVersion(std::string &version) override { return ReadVersion(communicator::Program, version); }
  int32_t GetClientType() override { return ClientCommunicator; }

private:
  // The edits of prefs.js, in memory and in their order.
  void EditNewsPrefs(PrefsText &prefs, const NewsAccountSpec &spec);
  // Puts the server on the profile's map, and the edited prefs.js in place.
  static void WriteNewsPrefs(const std::string &directory, const ProfilePrefs &prefs, const NewsAccountSpec &spec);
  // Moves the line of the preference to the end, or appends one with the value if it is missing or empty.
  void KeepOrFill(PrefsText &prefs, const char *key, const std::string &value);

  char keptLine[PrefValueSize]; // scratch space of KeepOrFill
};
