// Where Outlook Express and its browser keep what they know: every key and value that is read or written.
#pragma once

#include "clients/format.h"
#include "clients/installed_program.h"

#include <cstdint>
#include <string>

namespace outlook_express {

inline constexpr const char *ProductKey = "SOFTWARE\\Microsoft\\Outlook Express"; // below HKEY_LOCAL_MACHINE
inline constexpr InstalledProgram Program = {
    "OutlookExpress (Microsoft)", "msimn.exe", ProductKey, nullptr, ProductKey, "MediaVer", "4.00.0", ','};

// Its name in the system's list of mail programs.
inline constexpr const char *MailProgramName = "Outlook Express";

// ---- Below HKEY_CURRENT_USER: accounts ----

#define INTERNET_ACCOUNT_MANAGER "Software\\Microsoft\\Internet Account Manager"
inline constexpr const char *ManagerKey = INTERNET_ACCOUNT_MANAGER;
inline constexpr const char *DefaultMailAccountValue = "Default Mail Account";
// An account's title; of ManagerKey, the number that the next new account takes.
inline constexpr const char *AccountNameValue = "Account Name";

inline constexpr const char *AccountsKey = INTERNET_ACCOUNT_MANAGER "\\Accounts";
#undef INTERNET_ACCOUNT_MANAGER
// The key of an account, which is named by its number in eight hexadecimal digits.
inline std::string AccountKey(const std::string &name) { return Below(AccountsKey, name); }

// A mail account has a POP3 or an SMTP server, a news account an NNTP server.
inline constexpr const char *Pop3ServerValue = "POP3 Server";
inline constexpr const char *Pop3UserValue = "POP3 User Name";
inline constexpr const char *Pop3SkipValue = "POP3 Skip Account";
inline constexpr const char *Pop3PromptValue = "POP3 Prompt for Password";
inline constexpr const char *LeaveOnServerValue = "Leave Mail On Server";
inline constexpr const char *SmtpServerValue = "SMTP Server";
inline constexpr const char *SmtpAddressValue = "SMTP Email Address";
inline constexpr const char *SmtpSenderValue = "SMTP Display Name";
inline constexpr const char *NntpServerValue = "NNTP Server";
inline constexpr const char *NntpUserValue = "NNTP User Name";
inline constexpr const char *NntpAddressValue = "NNTP Email Address";
inline constexpr const char *NntpSenderValue = "NNTP Display Name";
inline constexpr const char *NntpPromptValue = "NNTP Prompt for Password";
inline constexpr const char *NntpSplitValue = "NNTP Split Messages";
inline constexpr const char *NntpSplitSizeValue = "NNTP Split Message Size"; // in kilobytes

inline constexpr const char *ConnectoidValue = "Connectoid"; // the name of the dial-up connection
inline constexpr const char *ConnectionTypeValue = "Connection Type";
// A dial-up connection, and the client's own default in each version.
inline constexpr uint32_t DialUpConnection = 2;
inline constexpr uint32_t ConnectionOfVersion4 = 1;
inline constexpr uint32_t ConnectionOfVersion5 = 3;

// ---- Below HKEY_CURRENT_USER: settings of the client ----

inline constexpr const char *SettingsKey = "Software\\Microsoft\\Outlook Express";
// In version 5 each of the user's identities has settings of its own.
inline constexpr const char *IdentitiesKey = "Identities";
inline constexpr const char *DefaultIdentityValue = "Default User ID";
inline std::string IdentitySettingsKey(const std::string &identity) {
  return Format("%s\\%s\\%s\\5.0", IdentitiesKey, identity, SettingsKey);
}

// Below the settings.
inline std::string MailSettingsKey(const std::string &settings) { return Below(settings, "Mail"); }
inline std::string NewsSettingsKey(const std::string &settings) { return Below(settings, "News"); }

inline constexpr const char *SendHtmlValue = "Message Send HTML";
inline constexpr const char *KeepDaysValue = "Cache Delete Message Days";
inline constexpr const char *KeepReadValue = "Cache Read Messages";
inline constexpr const char *CompactionValue = "Background Compaction";

// ---- Below HKEY_CURRENT_USER: the browser ----

inline constexpr const char *BrowserKey = "Software\\Microsoft\\Internet Explorer\\Main";
inline constexpr const char *StartPageValue = "Start Page";

} // namespace outlook_express
