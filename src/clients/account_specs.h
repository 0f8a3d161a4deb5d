// The records that describe an account to an adapter. Texts are in the system's code page.
#pragma once

#include <array>
#include <cstdint>
#include <string>

// One mail account.
struct MailAccountSpec {
  std::string userId;         // the service ID; the POP3 user name
  std::string senderName;     // the name shown as sender
  std::string accountName;    // the account's title in the client, also what IsExistAccount matches on
  std::string reserved;       // no operation reads it
  std::string smtpServer;     // SMTP host
  std::string popServer;      // POP3 host
  std::string mailAddress;    // the full mail address
  std::string connectionName; // the dial-up connection; travels with the record, no adapter reads it
  int32_t secondAccount = 0;  // 1 in the second-mailer flow
  int32_t originalDomain = 0; // 1 in the original-domain flow
};

// A news account on up to two news servers, of which an operation works on the one at `serverIndex`.
struct NewsAccountSpec {
  std::string userId;                         // the service ID; the news user name
  std::string senderName;                     // the name shown as sender
  std::string accountName;                    // first part of the title; an adapter adds the server's display name
  std::string reserved;                       // no operation reads it
  std::array<std::string, 2> newsHosts;       // host names
  std::array<std::string, 2> newsServerNames; // display names
  std::string mailAddress;                    // the full mail address
  std::string connectionName;                 // as in MailAccountSpec
  std::array<int32_t, 2> newsServerOn{};      // 1 if the server is wanted
  int32_t serverIndex = 0;                    // 0 or 1

  // Of the server at `serverIndex`.
  const std::string &Host() const { return newsHosts[Index()]; }
  const std::string &ServerName() const { return newsServerNames[Index()]; }
  bool IsServerOn() const { return newsServerOn[Index()] == 1; }

private:
  size_t Index() const { return serverIndex == 1 ? 1 : 0; }
};
