#include "wizard/account_writing.h"

#include "clients/format.h"
#include "mfc/afxwin.h"

#include <algorithm>
#include <vector>

namespace {

// ---- Shared by both flows ----

// Asks the user a question; true for OK.
bool Confirmed(const std::string &question) { return AfxMessageBox(question.c_str(), MB_OKCANCEL) == IDOK; }

// Tells the user the result of a write. Returns whether the wizard is done.
bool TellResult(bool written, int32_t clientType) {
  if (written)
    AfxMessageBox("設定が完了しました。", MB_ICONINFORMATION);
  else if (clientType == ClientExternalMailer)
    return false;
  else
    AfxMessageBox("設定に失敗しました。");
  return true;
}

} // namespace

// ---- Mail ----

namespace {

constexpr UserQuestion BothQuestions[] = {&MailClient::IsExistUser, &MailClient::IsExistSecondUser};
constexpr UserQuestion SecondQuestion[] = {&MailClient::IsExistSecondUser};

// Asks the user about an existing account. False if it must stay; otherwise `key` names the account to overwrite, if
// any.
bool MayWrite(MailClient &client, const MailAccountSpec &spec, std::string &key, const UserQuestions &user) {
  std::string message;
  if (client.IsExistAccount(spec, key, message)) {
    if (!Confirmed(message))
      return false;
    if (!user.alsoWhenOverwriting)
      return true;
  }
  for (const UserQuestion question : user.questions) {
    std::string userKey = key; // the questions only warn
    if ((client.*question)(spec, userKey, message))
      return Confirmed(message);
  }
  return true;
}

} // namespace

const UserQuestions AnyUser = {BothQuestions, false};
const UserQuestions SecondUser = {SecondQuestion, false};
const UserQuestions OriginalDomainUser = {SecondQuestion, true};

bool WriteMailAccount(MailClient *client, const MailAccountSpec &spec, const UserQuestions &user) {
  if (client == nullptr) // every client has been removed since the search
    return TellResult(false, 0);
  PlatformCall call; // which the questions interrupt
  std::string key;
  if (!MayWrite(*client, spec, key, user))
    return false;
  const bool written = client->SetupAccount(spec, key) != 0;
  return TellResult(call.Commit() && written, client->GetClientType());
}

// ---- News ----

namespace {

// One account for each chosen server.
std::vector<NewsAccountSpec> WantedServers(NewsAccountSpec spec) {
  std::vector<NewsAccountSpec> wanted;
  for (; spec.serverIndex < static_cast<int32_t>(spec.newsServerOn.size()); ++spec.serverIndex)
    if (spec.newsServerOn[static_cast<size_t>(spec.serverIndex)] != 0)
      wanted.push_back(spec);
  return wanted;
}

// The questions about those of the accounts that exist already, each text once.
std::vector<std::string> FindExisting(NewsClient &client, const std::vector<NewsAccountSpec> &accounts) {
  std::vector<std::string> found;
  for (const NewsAccountSpec &account : accounts) {
    std::string key;
    std::string message;
    const auto isMessage = [&](const std::string &text) { return SameIgnoringCase(text, message); };
    if (client.IsExistAccount(account, key, message) && std::ranges::none_of(found, isMessage))
      found.push_back(message);
  }
  return found;
}

bool MayOverwrite(const std::vector<std::string> &existing) {
  if (existing.empty())
    return true;
  std::string prompt = "同名の設定が存在します。\n上書きしますか？\n";
  for (const std::string &text : existing)
    prompt += "\n" + text;
  return Confirmed(prompt);
}

bool SetUp(NewsClient &client, const std::vector<NewsAccountSpec> &accounts) {
  for (const NewsAccountSpec &account : accounts) {
    std::string key;
    std::string message;
    client.IsExistAccount(account, key, message);
    if (!client.SetupAccount(account, key))
      return false;
  }
  return true;
}

} // namespace

bool WriteNewsAccounts(NewsClient *client, const NewsAccountSpec &spec) {
  if (client == nullptr) // every client has been removed since the search
    return TellResult(false, 0);
  PlatformCall call; // which the question interrupts
  const std::vector<NewsAccountSpec> accounts = WantedServers(spec);
  if (!MayOverwrite(FindExisting(*client, accounts)))
    return false;
  const bool written = SetUp(*client, accounts);
  return TellResult(call.Commit() && written, client->GetClientType());
}
