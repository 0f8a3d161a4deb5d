#include "clients/profile_prefs.h"

#include "clients/file_queries.h"
#include "clients/format.h"

std::string PrefsPath(const std::string &directory) { return Below(directory, "prefs.js"); }

bool PrefsPathFits(const std::string &directory) {
  constexpr size_t PathSize = 256;
  return PrefsPath(directory).size() < PathSize;
}

std::string MailFolder(const std::string &directory) { return Below(directory, "mail"); }

void MakeMailFolder(const std::string &directory) { CreateDirectoryA(MailFolder(directory).c_str(), nullptr); }

std::string SameProfileQuestion(const std::string &profile) {
  return Format("同名のプロファイルが存在します。\nプロファイル名：%sを上書きしますか？", profile);
}

ProfilePrefs::ProfilePrefs(const std::string &directory)
    : path(PrefsPath(directory)), prefs(std::make_unique<PrefsText>()), missing(PathIsMissing(path.c_str())) {
  if (!missing)
    LoadPrefsText(path.c_str(), *prefs);
}

bool ProfilePrefs::HasRoom() const { return prefs->whole || (!missing && !prefs->read); }

void ProfilePrefs::Save(DWORD access) const { SavePrefsText(path.c_str(), *prefs, access); }
