// The end of a wizard: it asks the user about an existing account, writes the account, and tells the user the result.
// Each function returns whether the wizard is done. It is false if the wizard should stay open: the user doesn't want
// to overwrite the existing account, or the external mailer failed, which tells the user itself.
#pragma once

#include "clients/mail_client.h"
#include "clients/news_client.h"

#include <cstdint>
#include <span>
#include <string>

// A search for accounts of the user of a mail account. The searches run in order, until one of them leads to a
// question.
using UserQuestion = int32_t (MailClient::*)(const MailAccountSpec &spec, std::string &key, std::string &message);
struct UserQuestions {
  std::span<const UserQuestion> questions;
  bool alsoWhenOverwriting; // also if the user agreed to overwrite an account with the same title
};
extern const UserQuestions AnyUser;
extern const UserQuestions SecondUser;
extern const UserQuestions OriginalDomainUser;

// Writes a mail account after the user agreed. An existing account with the same title is overwritten; for one with the
// same user there is only a warning. `client` is null if every client has been removed since the search.
bool WriteMailAccount(MailClient *client, const MailAccountSpec &spec, const UserQuestions &user);

// Writes the accounts of the chosen news servers, after the user agreed to overwrite the existing ones.
bool WriteNewsAccounts(NewsClient *client, const NewsAccountSpec &spec);
