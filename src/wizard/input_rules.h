// The rules by which the wizards' pages take what is typed: the form of a service ID, and for each field the tests that
// it has to pass, in their order, with the message for the first that it doesn't.
//
// All tests look at single bytes: no byte of a Japanese character is a control character or a blank, but every one has
// a byte that isn't ASCII.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Brings an ID into its canonical form: three letters, a digit and four digits in upper case, or four letters and four
// digits in lower case; the prefix "ZVK-" is dropped. 0 with an empty text if it is no ID.
int32_t NormalizeServiceId(std::string &text);

// Where a test refuses a text its message is shown, and the control that the text stands in gets the focus.
struct InputTest {
  bool (*refuses)(const std::string &text);
  const char *message;
  int control;
};

// The messages of the ID pages and of the page of news servers, whose tests aren't on one text.
extern const char *const WrongIdMessage;
extern const char *const NoServerMessage;

// The fields of the pages. Those of an original domain and of the short wizard are trimmed of white space at their end
// before they are tested.
namespace input_tests {

using Tests = std::vector<InputTest>;

extern const Tests MailerDomain; // chosen from a list: mailer, news and short wizard
extern const Tests MailerUser;
extern const Tests MailerSender; // also of the second mailer

extern const Tests NewsUser; // may have an at sign
extern const Tests NewsSender;

extern const Tests SecondDomain; // chosen or typed, tested as it is
extern const Tests SecondHost;   // the same trimmed: a host within one of the service's domains
extern const Tests SecondUser;

extern const Tests OriginalAccount;
extern const Tests OriginalAddress;
extern const Tests OriginalSender; // also of the short wizard
extern const Tests OriginalPopServer;
extern const Tests OriginalSmtpServer;

extern const Tests ShortAlias;

} // namespace input_tests

// The first test that refuses the text, null if it passes all.
const InputTest *FindRefusal(const input_tests::Tests &tests, const std::string &text);
