#include "account_commands.h"

#include "acctkit/acctkit.h"
#include "communicator_texts.h"
#include "usage.h"
#include "utf8.h"

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

namespace {

// An account's texts, by their index in the plain exports' array. Indexes 4 and 5 are SMTP and POP host for mail,
// host and display name of the server for news.
constexpr size_t TextCount = 8;
enum TextIndex : size_t { User, Name, Title, Reserved, FirstServer, SecondServer, Address, Connection };

constexpr int Communicator = 1; // as a client index

struct Options {
  int client = 0;
  bool zuvio = false;
  bool kerm = false;
  int server = 0;
  std::array<std::string, TextCount> texts;
  std::string key;
};

using SearchExport = int32_t(ACCTKIT_CALL *)(int32_t, const char *const *, char *, char *);
using SetupExport = int32_t(ACCTKIT_CALL *)(int32_t, const char *const *, const char *);

// A family of exports: what it searches and writes with, which texts its array takes, in order, and by which of them it
// finds an account.
struct Family {
  const char *option; // that chooses it
  SearchExport search;
  SetupExport setup;
  std::vector<TextIndex> indexes;
  std::vector<TextIndex> matched;
};

const std::vector<TextIndex> AllTexts = {User, Name, Title, Reserved, FirstServer, SecondServer, Address, Connection};
const Family PlainMail = {"", IsExistMailAccount, SetupMailAccount, AllTexts, {Title}};
const Family PlainNews = {"", IsExistNewsAccount, SetupNewsAccount, AllTexts, {Title, SecondServer}};
const Family ZuvioMail = {"--zuvio", IsExistZuvioMailAccount, SetupZuvioMailAccount, {User, Name, Address}, {User}};
const Family ZuvioNews = {"--zuvio", IsExistZuvioNewsAccount, SetupZuvioNewsAccount, {User, Name, Address}, {User}};
const Family KermMail = {"--kerm",
                         IsExistKERMMailAccount,
                         SetupKERMMailAccount,
                         {User, Name, Address, FirstServer, SecondServer},
                         {Address}};

struct Text {
  const char *option; // empty for the one that nobody gives
  const char *help;
  bool isPreference = false; // whether Communicator gets it in its preference file
};
struct Kind {
  bool news;
  const char *name;
  const char *known; // what an account is found by
  std::array<Text, TextCount> texts;
};
constexpr Text UserText = {"--user", "the user, as a rule the subscriber's ID", true};
constexpr Text NameText = {"--name", "the name shown as sender", true};
constexpr Text ReservedText = {"", ""};
constexpr Text AddressText = {"--address", "the mail address", true};
constexpr Text ConnectionText = {"--connection", "the dial-up connection"};
constexpr Kind Mail = {false,
                       "mail",
                       "its title, with --zuvio its user, with --kerm its address",
                       {UserText,
                        NameText,
                        {"--title", "the account's title, in Communicator the profile's name"},
                        ReservedText,
                        {"--smtp", "the SMTP host", true},
                        {"--pop", "the POP host", true},
                        AddressText,
                        ConnectionText}};
constexpr Kind News = {true,
                       "news",
                       "its title and its server's name, with --zuvio its user and --server",
                       {UserText,
                        NameText,
                        {"--title", "the first part of the account's title, in Communicator the profile's name"},
                        ReservedText,
                        {"--host", "the news host", true},
                        {"--server-name", "the server's name, the second part of the account's title"},
                        AddressText,
                        ConnectionText}};

const Family &ChosenFamily(const Kind &kind, const Options &options) {
  if (kind.news)
    return options.zuvio ? ZuvioNews : PlainNews;
  return options.zuvio ? ZuvioMail : options.kerm ? KermMail : PlainMail;
}

bool Has(const std::vector<TextIndex> &indexes, TextIndex index) {
  return std::ranges::find(indexes, index) != indexes.end();
}

// A search needs what it finds an account by, and takes the rest too.
bool IsNeeded(const Family &family, TextIndex index, bool sets, int client) {
  if (sets)
    return Has(family.indexes, index) && index != Reserved && index != Connection;
  const bool unread = index == SecondServer && client == Communicator;
  return Has(family.matched, index) && !unread;
}

// What the family needs must have been given, and nothing that it doesn't take.
void CheckTexts(const Kind &kind, const Options &options, bool sets) {
  const Family &family = ChosenFamily(kind, options);
  for (const TextIndex index : AllTexts) {
    const bool given = !options.texts[index].empty();
    const std::string option = kind.texts[index].option;
    if (given && !Has(family.indexes, index))
      throw UsageError(option + " doesn't go with " + family.option);
    if (!given && IsNeeded(family, index, sets, options.client))
      throw UsageError(option + " is required");
  }
}

// The array that the export takes: its texts, and the news server's number in place of a pointer.
std::vector<const char *> ExportArray(const Family &family, const Options &options) {
  std::vector<const char *> array;
  for (const TextIndex index : family.indexes)
    array.push_back(options.texts[index].c_str());
  if (family.search == IsExistZuvioNewsAccount)
    array.push_back(reinterpret_cast<const char *>(static_cast<intptr_t>(options.server)));
  array.push_back(nullptr); // no account of the original domain
  return array;
}

Outcome Search(const Kind &kind, const Options &options) {
  const Family &family = ChosenFamily(kind, options);
  char key[ACCTKIT_KEY_SIZE] = "";
  char message[ACCTKIT_MESSAGE_SIZE] = "";
  if (family.search(options.client, ExportArray(family, options).data(), key, message) == 0)
    return {1, "no such account\n"};
  return {0, "key: " + ToUtf8(key) + '\n' + ToUtf8(message) + '\n'};
}

void CheckPreferences(const Kind &kind, const Options &options) {
  std::vector<NamedText> texts;
  for (const TextIndex index : AllTexts)
    if (kind.texts[index].isPreference)
      texts.push_back({kind.texts[index].option, options.texts[index]});
  CheckCommunicatorTexts(texts);
}

Outcome Setup(const Kind &kind, const Options &options) {
  if (options.client == Communicator)
    CheckPreferences(kind, options);
  const Family &family = ChosenFamily(kind, options);
  const bool done = family.setup(options.client, ExportArray(family, options).data(), options.key.c_str()) != 0;
  return done ? Outcome(0, "done\n") : Outcome(1, "not written\n");
}

void AddCommand(CLI::App &group, const Kind &kind, bool sets, Action &action, bool &writes) {
  const auto options = std::make_shared<Options>();
  CLI::App *const command =
      sets ? group.add_subcommand("set", "Writes the account")
           : group.add_subcommand("exists",
                                  std::string("Tells whether there is such an account, found by ") + kind.known);
  AddClientOption(*command, options->client)->required();
  for (const TextIndex index : AllTexts)
    if (const Text &text = kind.texts[index]; *text.option != '\0')
      AddTextOption(*command, text.option, options->texts[index], text.help);
  CLI::Option *const zuvio = command->add_flag("--zuvio", options->zuvio, "the service's own titles and servers");
  if (kind.news)
    command->add_option("--server", options->server, "with --zuvio: 1 forum, 2 second server")
        ->needs(zuvio)
        ->check(CLI::Range(1, 2));
  else
    command->add_flag("--kerm", options->kerm, "the original-domain service: the address is the title")
        ->excludes(zuvio);
  if (sets)
    AddTextOption(*command, "--key", options->key, "the account to overwrite, as `exists` names it");
  command->callback([&action, &writes, &kind, sets, options] {
    if (kind.news && options->zuvio && options->server == 0)
      throw UsageError("--server is required with --zuvio");
    CheckTexts(kind, *options, sets);
    writes = sets;
    action = [&kind, sets, options] { return sets ? Setup(kind, *options) : Search(kind, *options); };
  });
}

} // namespace

void AddAccountCommands(CLI::App &app, Action &action, bool &writes) {
  for (const Kind *const kind : {&Mail, &News}) {
    CLI::App *const group =
        app.add_subcommand(kind->name, std::string("Looks for or writes one ") + kind->name + " account");
    group->require_subcommand(1);
    for (const bool sets : {false, true})
      AddCommand(*group, *kind, sets, action, writes);
  }
}
