// Where Netscape 6 keeps what it knows: every key, value, file and preference that is read or written. What its
// profiles' directories have in common with Communicator's is in clients/profile_prefs.h.
#pragma once

#include "clients/format.h"
#include "clients/installed_program.h"

#include <string>

namespace netscape6 {

inline constexpr const char *ProductKey = "SOFTWARE\\Netscape\\Netscape 6"; // below HKEY_LOCAL_MACHINE
inline constexpr InstalledProgram Program = {"Netscape6 (Netscape)", "Netscp6.exe", ProductKey, "6.", ProductKey,
                                             CurrentVersionValue,    "X.00",        '.'};

// ---- Files below the user's application data ----

inline std::string RegistryDatPath(const std::string &appData) { return Below(appData, "Mozilla\\registry.dat"); }
// The folder of all directories that a profile of that name has had, and one of them. The last one that was made
// counts.
inline std::string ProfileFolder(const std::string &appData, const std::string &profile) {
  return Format("%s\\Mozilla\\Users50\\%s", appData, profile);
}

inline std::string NumberedDirectory(const std::string &profileFolder, int number) {
  return Format("%s\\zuvio%s.slt", profileFolder, std::to_string(number));
}

// ---- The profile registry ----

#define COMMON "Common"
#define PROFILES "Profiles"
inline constexpr const char *CommonKey = COMMON;
inline constexpr const char *ProfilesKey = PROFILES; // below CommonKey
// Their path, and the one of a profile.
inline constexpr const char *ProfilesPath = COMMON "\\" PROFILES;
#undef COMMON
#undef PROFILES
inline std::string ProfilePath(const std::string &profile) { return Below(ProfilesPath, profile); }
inline constexpr const char *CurrentProfileValue = "CurrentProfile";
inline constexpr const char *DirectoryValue = "directory";
inline constexpr const char *MigratedValue = "migrated";

// ---- Preferences; %s is the numbered name of an account, server, identity or SMTP server ----

// The beginnings of those names, as in "account1".
inline constexpr const char *AccountName = "account";
inline constexpr const char *ServerName = "server";
inline constexpr const char *IdentityName = "id";
inline constexpr const char *SmtpName = "smtp";

inline constexpr const char *AccountListPref = "mail.accountmanager.accounts";
inline constexpr const char *DefaultAccountPref = "mail.accountmanager.defaultaccount";
inline constexpr const char *AccountPrefs = "mail.account."; // the beginning of all of them
inline constexpr const char *AccountServerPref = "mail.account.%s.server";
inline constexpr const char *AccountIdentitiesPref = "mail.account.%s.identities";

inline constexpr const char *ServerTypePref = "mail.server.%s.type";
inline constexpr const char *ServerNamePref = "mail.server.%s.name";
inline constexpr const char *ServerUserPref = "mail.server.%s.userName";
inline constexpr const char *ServerHostPref = "mail.server.%s.hostname";
inline constexpr const char *ServerLeaveMailPref = "mail.server.%s.leave_on_server";

inline constexpr const char *IdentityAddressPref = "mail.identity.%s.useremail";
inline constexpr const char *IdentitySenderPref = "mail.identity.%s.fullName";
inline constexpr const char *IdentityHtmlPref = "mail.identity.%s.compose_html";

inline constexpr const char *SmtpListPref = "mail.smtpservers";
inline constexpr const char *DefaultSmtpPref = "mail.smtp.defaultserver";
inline constexpr const char *SmtpPrefs = "mail.smtpserver."; // the beginning of all of them
inline constexpr const char *SmtpHostPref = "mail.smtpserver.%s.hostname";
inline constexpr const char *SmtpSslPref = "mail.smtpserver.%s.try_ssl";

inline constexpr const char *RememberPasswordsPref = "signon.rememberSignons";
inline constexpr const char *ConvertedPref = "prefs.converted-to-utf8";

} // namespace netscape6
