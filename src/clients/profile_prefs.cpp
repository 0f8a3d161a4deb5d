#include "clients/profile_prefs.h"

#include "clients/format.h"
#include "win32/win32.h"

std::string PrefsPath(const std::string &directory) { return directory + "\\prefs.js"; }

void MakeMailDirectory(const std::string &directory) { CreateDirectoryA((directory + "\\mail").c_str(), nullptr); }

std::string SameProfileQuestion(const std::string &profile) {
  return Format("同名のプロファイルが存在します。\nプロファイル名：%sを上書きしますか？", profile);
}
