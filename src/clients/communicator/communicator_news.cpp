#include "clients/communicator/communicator_news.h"

#include "clients/communicator/communicator_profiles.h"
#include "clients/communicator/news_map.h"
#include "clients/format.h"
#include "clients/found_account.h"
#include "clients/profile_prefs.h"

#include <array>
#include <cstring>

using namespace communicator;

namespace {

constexpr const char *SameProfileLine = "プロファイル名：%s";

// How the line of just that preference begins.
std::string WholeLineStart(const char *key) { return LineStart(key) + '"'; }

PrefLine ServerLine(const NewsAccountSpec &spec) { return {NewsServerPref, QuotedPref(spec.Host())}; }

// The preferences at the end of the file.
std::array<PrefLine, 6> NewsPrefs(const NewsAccountSpec &spec) {
  return {{
      {ComposeHtmlPref, "false"},
      {UserPref, QuotedPref(spec.userId)},
      {RememberNewsPasswordPref, "true"},
      {StartPageOverridePref, "false"},
      {DownloadIncrementsPref, "2"},
      {DownloadByDatePref, "true"},
  }};
}

bool AllLinesFit(const NewsAccountSpec &spec) {
  const PrefLine others[] = {
      ServerLine(spec), {AddressPref, QuotedPref(spec.mailAddress)}, {SenderPref, QuotedPref(spec.senderName)}};
  return LinesFit(NewsPrefs(spec)) && LinesFit(others);
}

} // namespace

void CommunicatorNews::KeepOrFill(PrefsText &prefs, const char *key, const std::string &value) {
  keptLine[0] = '\0';
  const bool taken = TakePrefLine(key, prefs, keptLine, sizeof keptLine) != 0;
  if (taken && std::strstr(keptLine, "\"\"") == nullptr) {
    AppendPrefLine(prefs, (LineStart(keptLine) + '\n').c_str());
    return;
  }
  // A line that is too long to be kept stays where it is, and so does its value.
  if (!taken && HasPrefText(WholeLineStart(key).c_str(), prefs))
    return;
  AppendPref(prefs, {key, QuotedPref(value)});
}

void CommunicatorNews::EditNewsPrefs(PrefsText &prefs, const NewsAccountSpec &spec) {
  // The line that names the server goes as well, under whatever key it stands. An empty host names none.
  const std::string server = QuotedPref(spec.Host());
  for (const char *needle : {ComposeHtmlPref, DownloadIncrementsPref, DownloadByDatePref, UserPref, server.c_str(),
                             ComposeHtmlPref, RememberNewsPasswordPref, StartPageOverridePref})
    if (needle != server || !spec.Host().empty())
      RemovePrefLine(needle, prefs);

  if (spec.IsServerOn()) {
    const std::string line = LineText(ServerLine(spec));
    if (!InsertPrefLine(WholeLineStart(NewsServerPref).c_str(), prefs, line.c_str()))
      AppendPrefLine(prefs, line.c_str());
  }
  KeepOrFill(prefs, AddressPref, spec.mailAddress);
  KeepOrFill(prefs, SenderPref, spec.senderName);
  AppendPrefs(prefs, NewsPrefs(spec));
}

void CommunicatorNews::WriteNewsPrefs(const std::string &directory, const ProfilePrefs &prefs,
                                      const NewsAccountSpec &spec) {
  if (spec.IsServerOn())
    NewsMap(directory).Enter(spec.Host());
  prefs.Save(GENERIC_WRITE);
  MakeMailFolder(directory);
}

int32_t CommunicatorNews::SetupAccount(const NewsAccountSpec &spec, std::string &key) {
  const auto profile = ChooseProfile(key, spec.accountName);
  if (!profile || !AllLinesFit(spec))
    return 0;
  ProfilePrefs prefs(profile->directory);
  EditNewsPrefs(prefs.Text(), spec);
  if (!prefs.HasRoom() || (spec.IsServerOn() && !NewsMap(profile->directory).CanEnter(spec.Host())))
    return 0;

  if (profile->isNew) {
    ClearObsolete(profile->name);
    EnterSender(profile->name, spec.mailAddress, spec.senderName);
  }
  EnterDirectory(*profile);
  WriteNewsPrefs(profile->directory, prefs, spec);
  return 1;
}

int32_t CommunicatorNews::IsExistAccount(const NewsAccountSpec &spec, std::string &key, std::string &message) {
  return AnswerFound(FindProfile(spec.accountName), Format(SameProfileLine, spec.accountName), key, message);
}
