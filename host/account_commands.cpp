#include "account_commands.h"

#include "acctkit/acctkit.h"
#include "text.h"
#include "usage.h"

#include <array>
#include <memory>
#include <vector>

namespace {

// An account's texts, by their place in the plain exports' array. Positions 4 and 5 are SMTP and POP host for mail,
// host and display name of the server for news.
constexpr size_t TextCount = 8;
enum Position : size_t { User, Name, Title, Reserved, FirstServer, SecondServer, Address, Connection };

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

// A family of exports: what it searches and writes with, and which texts its array takes, in order.
struct Family {
  SearchExport search;
  SetupExport setup;
  std::vector<Position> positions;
};

const Family PlainMail = {IsExistMailAccount,
                          SetupMailAccount,
                          {User, Name, Title, Reserved, FirstServer, SecondServer, Address, Connection}};
const Family PlainNews = {IsExistNewsAccount, SetupNewsAccount, PlainMail.positions};
const Family ZuvioMail = {IsExistZuvioMailAccount, SetupZuvioMailAccount, {User, Name, Address}};
const Family ZuvioNews = {IsExistZuvioNewsAccount, SetupZuvioNewsAccount, {User, Name, Address}};
const Family KermMail = {
    IsExistKERMMailAccount, SetupKERMMailAccount, {User, Name, Address, FirstServer, SecondServer}};

struct Kind {
  bool news;
  const char *name;
  std::array<const char *, TextCount> options;
};
constexpr Kind Mail = {
    false, "mail", {"--user", "--name", "--title", "", "--smtp", "--pop", "--address", "--connection"}};
constexpr Kind News = {
    true, "news", {"--user", "--name", "--title", "", "--host", "--server-name", "--address", "--connection"}};
constexpr std::array<const char *, TextCount> Help = {"the user, as a rule the subscriber's ID",
                                                      "the name shown as sender",
                                                      "the account's title",
                                                      "",
                                                      "the SMTP host, or the news host",
                                                      "the POP host, or the news server's display name",
                                                      "the mail address",
                                                      "the dial-up connection"};

const Family &ChosenFamily(const Kind &kind, const Options &options) {
  if (kind.news)
    return options.zuvio ? ZuvioNews : PlainNews;
  return options.zuvio ? ZuvioMail : options.kerm ? KermMail : PlainMail;
}

// The array that the export takes: its texts, and the news server's number in place of a pointer. What the family needs
// must have been given.
std::vector<const char *> ExportArray(const Kind &kind, const Family &family, const Options &options) {
  std::vector<const char *> array;
  for (const Position position : family.positions) {
    if (options.texts[position].empty() && position != Reserved && position != Connection)
      throw UsageError(std::string(kind.options[position]) + " is required");
    array.push_back(options.texts[position].c_str());
  }
  if (family.search == IsExistZuvioNewsAccount)
    array.push_back(reinterpret_cast<const char *>(static_cast<intptr_t>(options.server)));
  array.push_back(nullptr); // no account of the original domain
  return array;
}

Outcome Search(const Kind &kind, const Options &options) {
  const Family &family = ChosenFamily(kind, options);
  char key[ACCTKIT_KEY_SIZE] = "";
  char message[ACCTKIT_MESSAGE_SIZE] = "";
  if (family.search(options.client, ExportArray(kind, family, options).data(), key, message) == 0)
    return {1, "no such account\n"};
  return {0, "key: " + ToUtf8(key) + '\n' + ToUtf8(message) + '\n'};
}

Outcome Setup(const Kind &kind, const Options &options) {
  const Family &family = ChosenFamily(kind, options);
  const bool done = family.setup(options.client, ExportArray(kind, family, options).data(), options.key.c_str()) != 0;
  return done ? Outcome(0, "done\n") : Outcome(1, "not written\n");
}

void AddCommand(CLI::App &group, const Kind &kind, bool sets, Action &action, bool &writes) {
  const auto options = std::make_shared<Options>();
  CLI::App *const command = sets ? group.add_subcommand("set", "Writes the account")
                                 : group.add_subcommand("exists", "Tells whether there is such an account");
  AddClientOption(*command, options->client)->required();
  for (size_t position = 0; position < TextCount; ++position)
    if (*kind.options[position] != '\0')
      AddTextOption(*command, kind.options[position], options->texts[position], Help[position]);
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
    ExportArray(kind, ChosenFamily(kind, *options), *options);
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
