// The end of a wizard: what is there already is put to the user, the account is written, and the user is told how that
// went. All answer whether the wizard is done: false if it is to stay open, because the user doesn't want to overwrite
// what is there, or because the external mailer, which tells its failures itself, has failed.
#pragma once

#include "clients/mail_client.h"
#include "clients/news_client.h"

#include <cstdint>
#include <span>
#include <string>

// What is asked about the user of a mail account, in order until one question is put to the user.
using UserQuestion = int32_t (MailClient::*)(const MailAccountSpec &spec, std::string &key, std::string &message);
struct UserQuestions {
  std::span<const UserQuestion> questions;
  bool alsoWhenOverwriting; // also if there is an account of the title, which the user agreed to overwrite
};
extern const UserQuestions AnyUser;
extern const UserQuestions SecondUser;
extern const UserQuestions OriginalDomainUser;

// Writes a mail account once the user has agreed to what is there already: an account of the title, which is then
// overwritten, or one of the user, which only is a warning. The client is null if every one has gone since it was
// found.
bool WriteMailAccount(MailClient *client, const MailAccountSpec &spec, const UserQuestions &user);

// Writes the accounts of the news servers that are wanted, once the user has agreed to overwrite what is there already.
bool WriteNewsAccounts(NewsClient *client, const NewsAccountSpec &spec);
