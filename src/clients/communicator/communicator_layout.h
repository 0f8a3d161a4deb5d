// Where Netscape Communicator 4.x keeps what it knows: every key, value, file and preference that is read or written.
// What its profiles' directories have in common with Netscape 6's is in clients/profile_prefs.h.
#pragma once

#include "clients/format.h"
#include "clients/installed_program.h"
#include "clients/profile_prefs.h"

#include <string>

namespace communicator {

#define NAVIGATOR "\\Netscape\\Netscape Navigator"

// ---- Below HKEY_LOCAL_MACHINE ----

inline constexpr const char *ProductKey = "SOFTWARE" NAVIGATOR;
// The version of its conference program, as in "4.75 [ja]", stands for the client's.
inline constexpr InstalledProgram Program = {"NetscapeCommunicator (Netscape)", "NETSCAPE.EXE",      ProductKey, "4.",
                                             "SOFTWARE\\Netscape\\Conference",  CurrentVersionValue, "4.xx",     '.'};

// Its name in the system's list of mail programs.
inline constexpr const char *MailProgramName = "Netscape Messenger";

// All profiles, and one.
inline constexpr const char *UsersKey = "SOFTWARE" NAVIGATOR "\\Users";
inline std::string UserKey(const std::string &profile) { return Below(UsersKey, profile); }
inline constexpr const char *AddressValue = "EmailAddr";
inline constexpr const char *SenderValue = "UserName";
inline constexpr const char *DirectoryValue = "DirRoot";
inline constexpr const char *ObsoleteValue = "Obsoleted";

// ---- Below HKEY_CURRENT_USER ----

inline constexpr const char *SettingsKey = "Software" NAVIGATOR;
inline constexpr const char *MainKey = "Software" NAVIGATOR "\\Main";
inline constexpr const char *InstallDirectoryValue = "Install Directory";

// The profiles for which the client looks for new mail, one of them, its POP servers, and one of those.
inline constexpr const char *BiffUsersKey = "Software" NAVIGATOR "\\biff\\users";
inline std::string BiffUserKey(const std::string &profile) { return Below(BiffUsersKey, profile); }
inline std::string BiffServersKey(const std::string &profile) { return Below(BiffUserKey(profile), "servers"); }
inline std::string BiffServerKey(const std::string &profile, const std::string &server) {
  return Below(BiffServersKey(profile), server);
}
inline constexpr const char *DefaultServerValue = "defaultServer";
inline constexpr const char *MailboxStateValue = "popstatePath";

#undef NAVIGATOR

// ---- Files ----

// The folder of all profiles and the directory of one, below the install directory.
inline std::string ProfilesFolder(const std::string &installDirectory) { return Below(installDirectory, "Users"); }
inline std::string ProfileDirectory(const std::string &installDirectory, const std::string &profile) {
  return Below(ProfilesFolder(installDirectory), profile);
}

// The state of the POP mailbox.
inline std::string MailboxStatePath(const std::string &profileDirectory) {
  return Below(MailFolder(profileDirectory), "popstate.dat");
}

// The folder for news, below a profile's directory, and in it the map of news servers. Each of its records begins with
// the prefix.
inline std::string NewsFolder(const std::string &profileDirectory) { return Below(profileDirectory, "news"); }
inline std::string NewsMapPath(const std::string &profileDirectory) {
  return Below(NewsFolder(profileDirectory), "fat");
}
inline constexpr const char *NewsMapHeading = "netscape-newsrc-map-file";
inline constexpr const char *NewsRecordPrefix = "newsrc-";
// The newsrc file of a news server, beside the map, by the first part of the server's host.
inline std::string NewsrcPath(const std::string &newsFolder, const std::string &hostPart) {
  return Below(newsFolder, hostPart + ".rc");
}

// ---- Preferences ----

inline constexpr const char *AddressPref = "mail.identity.useremail";
inline constexpr const char *SenderPref = "mail.identity.username";
inline constexpr const char *UserPref = "mail.pop_name";
inline constexpr const char *PopServerPref = "network.hosts.pop_server";
inline constexpr const char *SmtpServerPref = "network.hosts.smtp_server";
inline constexpr const char *LeaveOnServerPref = "mail.leave_on_server";
inline constexpr const char *ComposeHtmlPref = "mail.html_compose";
inline constexpr const char *RememberMailPasswordPref = "mail.remember_password";
inline constexpr const char *NewsServerPref = "network.hosts.nntp_server";
inline constexpr const char *RememberNewsPasswordPref = "news.remember_password";
inline constexpr const char *DownloadIncrementsPref = "offline.news.download.increments";
inline constexpr const char *DownloadByDatePref = "offline.news.download.by_date";
inline constexpr const char *StartPagePref = "browser.startup.homepage";
inline constexpr const char *StartPageOverridePref = "browser.startup.homepage_override";

} // namespace communicator
