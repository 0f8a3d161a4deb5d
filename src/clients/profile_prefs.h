// A user's profile as both Netscape clients have it: a directory with a prefs.js and a folder for mail in it.
#pragma once

#include "clients/pref_lines.h"
#include "win32/win32.h"

#include <memory>
#include <string>

std::string PrefsPath(const std::string &directory);
// Whether that path fits the clients' buffers of 256 bytes.
bool PrefsPathFits(const std::string &directory);
std::string MailFolder(const std::string &directory);
void MakeMailFolder(const std::string &directory);
// Whether a profile of that name may be overwritten.
std::string SameProfileQuestion(const std::string &profile);

// The prefs.js of a profile while it is edited. Nothing is written before Save, so an operation that finds no room for
// its edits can still leave everything as it was:
//
//   ProfilePrefs prefs(directory);
//   ReplacePref(prefs.Text(), {"mail.pop_name", QuotedPref(user)});
//   if (!prefs.HasRoom())
//     return 0;
//   prefs.Save();
class ProfilePrefs {
public:
  // Reads the file. A missing one counts as empty.
  explicit ProfilePrefs(const std::string &directory);

  PrefsText &Text() { return *prefs; }

  // Whether the edits found room, and the file had no zero byte in it. A file that can't be read counts as having room:
  // it stays as it is, and the account goes without it.
  bool HasRoom() const;

  // Replaces the file, or makes it; one that couldn't be read, or has no room, stays. No failure is reported.
  void Save(DWORD access = GENERIC_READ | GENERIC_WRITE) const;

private:
  std::string path;
  std::unique_ptr<PrefsText> prefs;
  bool missing;
};
