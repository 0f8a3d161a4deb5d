// The rules for what the user types into the wizards' pages: the form of a service ID, and for each field its tests in
// order, each with the message for a text that fails it.
//
// All tests look at single bytes. No byte of a Japanese character is a control character or a blank, but each such
// character has a byte that isn't ASCII.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Brings an ID into its canonical form: three letters, a digit and four digits in upper case, or four letters and four
// digits in lower case; the prefix "ZVK-" is dropped. If the text is not an ID, returns 0 and empties it.
int32_t NormalizeServiceId(std::string &text);

// If a test refuses a text, its message is shown, and the control with the text gets the focus.
struct InputTest {
  bool (*refuses)(const std::string &text);
  const char *message;
  int control;
};

// Messages of tests that don't look at one text: of the ID pages and of the page of news servers.
extern const char *const WrongIdMessage;
extern const char *const NoServerMessage;

// The tests of each field. The fields of the original-domain and short wizards are trimmed of white space at their end
// before they are tested.
namespace input_tests {

using Tests = std::vector<InputTest>;

extern const Tests MailerDomain; // chosen from a list: mailer, news and short wizard
extern const Tests MailerUser;
extern const Tests MailerSender; // also of the second mailer

extern const Tests NewsUser; // may contain an at sign
extern const Tests NewsSender;

extern const Tests SecondDomain; // chosen or typed, tested as it is
extern const Tests SecondHost;   // the same text trimmed: one name before one of the service's domains
extern const Tests SecondUser;

extern const Tests OriginalAccount;
extern const Tests OriginalAddress;
extern const Tests OriginalSender; // also of the short wizard
extern const Tests OriginalPopServer;
extern const Tests OriginalSmtpServer;

extern const Tests ShortAlias;

} // namespace input_tests

// The first test that refuses the text, null if there is none.
const InputTest *FindRefusal(const input_tests::Tests &tests, const std::string &text);
