// acctkit: a host program for AcctKit. Exit status 0 for yes or done, 1 for no or failed, 2 for wrong usage.
#include "account_commands.h"
#include "accounts.h"
#include "acctkit/acctkit.h"
#include "clients/external_mailer_layout.h"
#include "clients/registry_key.h"
#include "communicator_texts.h"
#include "options.h"
#include "platform.h"
#include "sample_machine.h"
#include "signup_file.h"
#include "usage.h"
#include "utf8.h"
#include "wizard_command.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <new>
#include <optional>

namespace {

// The command that was chosen, once all arguments are read.
struct Chosen {
  Action action;
  bool writes = false;
  bool writesInSteps = false; // and holds nothing between them: a wizard, which waits for its user, and an undo
  bool makesMachine = false;
  bool isDryRun = false;
  bool asJson = false; // what a dry run prints
};

Outcome Tell(bool done) { return done ? Outcome(0, "done\n") : Outcome(1, "failed\n"); }

// Says why in one line: the fault beneath the calls if there was one.
int Fail(const std::string &why) {
  const std::string fault = platform::TakeFault();
  std::cerr << "acctkit: " << (fault.empty() ? why : fault) << '\n';
  return 1;
}

void TellNotice() {
  if (const std::string notice = platform::TakeNotice(); !notice.empty())
    std::cerr << "acctkit: " << notice << '\n';
}

// Refuses unknown names, and two versions of one client.
void CheckClients(const std::vector<std::string> &clients) {
  for (const std::string &client : clients)
    if (std::ranges::find(SampleClients, client) == SampleClients.end())
      throw UsageError("--with: there is no client " + client);
  if (std::ranges::count_if(clients, [](const std::string &client) { return client.starts_with("oe"); }) > 1)
    throw UsageError("--with: a machine has one of oe4 and oe5");
}

void AddMachineCommand(CLI::App &app, Chosen &chosen) {
  CLI::App *const machine = app.add_subcommand("machine", "Makes a sample machine");
  machine->require_subcommand(1);
  CLI::App *const made = machine->add_subcommand("new", "Makes a sample machine with clients installed");
  const auto clients = std::make_shared<std::vector<std::string>>(
      std::vector<std::string>{"oe5", "communicator", "netscape6", "mailer"});
  made->add_option("--with", *clients,
                   "the clients, of oe4 oe5 communicator netscape6 mailer, with commas between them")
      ->delimiter(',')
      ->type_name("LIST");
  made->callback([&chosen, clients] {
    CheckClients(*clients);
    chosen.makesMachine = true;
    chosen.action = [&chosen, clients]() -> Outcome {
      if (!chosen.isDryRun)
        if (const std::string fault = platform::MakeMachine(); !fault.empty())
          return Fail(fault);
      platform::MachineCall call(platform::Purpose::Change); // only now is there a folder
      std::string fault = InstallSamples(*clients);
      if (fault.empty() && !call.Commit())
        fault = platform::MachineName() + ": the samples can't be written";
      if (!fault.empty())
        return Fail(fault);
      const std::string where = platform::HasMachineFolders() ? " in " + platform::MachineName() : "";
      return {0, "made a sample machine" + where + '\n'};
    };
  });
}

void AddViewCommands(CLI::App &app, Chosen &chosen) {
  app.add_subcommand("status", "Shows the clients and their versions")->callback([&chosen] {
    chosen.action = [] {
      PrintStatus();
      return 0;
    };
  });
  CLI::App *const accounts = app.add_subcommand("accounts", "Shows every account and where its values stand");
  const auto asJson = std::make_shared<bool>(false);
  accounts->add_flag("--json", *asJson, "as one JSON document");
  accounts->callback([&chosen, asJson] {
    chosen.action = [asJson] {
      PrintAccounts(*asJson);
      return 0;
    };
  });
}

// What of a sign-up goes into Communicator's preference file. The servers of the normal service are the build's.
std::vector<NamedText> CommunicatorTexts(const SignupRecord &record) {
  const NamedText senderName = {"senderName", record.senderName};
  const NamedText mailAddress = {"mailAddress", record.mailAddress};
  const NamedText startPage = {"startPage", record.startPage};
  if (record.serviceKind == 0)
    return {{"serviceId", record.serviceId}, senderName, mailAddress, startPage};
  return {senderName,
          {"mailUser", record.mailUser},
          mailAddress,
          {"popServer", record.popServer},
          {"smtpServer", record.smtpServer},
          startPage};
}

void AddSignupCommands(CLI::App &app, Chosen &chosen) {
  CLI::App *const signup = app.add_subcommand("signup", "Configures the machine after a sign-up");
  const auto file = std::make_shared<std::string>();
  signup->add_option("FILE", *file, "what the service knows of the subscriber, lines of key=value")->required();
  signup->callback([&chosen, file] {
    const SignupRecord record = ReadSignupFile(*file);
    chosen.writes = true;
    chosen.action = [record, file] {
      if (IsInstallMailer(1) == 1)
        CheckCommunicatorTexts(CommunicatorTexts(record), *file + ": ");
      const bool taken = SetupAfterSignup(&record) == 1;
      return taken ? Outcome(0, "done, the mailer plug-in took the account too\n")
                   : Outcome(1, "done for the clients that are installed, no mailer plug-in took the account\n");
    };
  });
  app.add_subcommand("completed", "Tells the mailer plug-in that all is done")->callback([&chosen] {
    chosen.writes = true;
    chosen.action = [] { return Tell(SetupCompleted() == 1); };
  });
}

void AddBrowserCommands(CLI::App &app, Chosen &chosen) {
  struct StartPage {
    int client = 0;
    std::string profile;
    std::string url;
  };
  CLI::App *const command = app.add_subcommand("start-page", "Sets the browser's start page");
  const auto page = std::make_shared<StartPage>();
  AddClientOption(*command, page->client)->required();
  AddTextOption(*command, "--profile", page->profile, "the Communicator profile");
  AddTextOption(*command, "URL", page->url, "the new start page")->required();
  command->callback([&chosen, page] {
    chosen.writes = true;
    chosen.action = [page] {
      if (page->client == 1)
        CheckCommunicatorTexts({{"URL", page->url}});
      return Tell(SetBrowserStartPage(page->client, page->profile.c_str(), page->url.c_str()) == 1);
    };
  });
  app.add_subcommand("outlook-disable", "Takes Outlook Express accounts off the service's dial-up connection")
      ->callback([&chosen] {
        chosen.writes = true;
        chosen.action = [] { return Tell(OutlookDisable() == 1); };
      });
}

void AddUndoCommand(CLI::App &app, Chosen &chosen) {
  app.add_subcommand("undo", "Takes back what the last command or wizard wrote, but nothing that a mailer plug-in took")
      ->callback([&chosen] {
        chosen.writesInSteps = true;
        chosen.action = []() -> Outcome {
          const platform::Undone undone = platform::UndoLastChange();
          if (!undone.refusal.empty())
            return Fail(undone.refusal);
          std::string text;
          for (const std::string &path : undone.paths)
            text += "taken back: " + path + '\n';
          if (ReadAnyValue(HKEY_LOCAL_MACHINE, external_mailer::PluginKey, external_mailer::FolderValue))
            text += "not taken back: what the mailer plug-in took, if it was asked\n";
          return {0, text};
        };
      });
}

void AddDryRunOptions(CLI::App &app, Chosen &chosen) {
  CLI::Option *const dryRun =
      app.add_flag("--dry-run", chosen.isDryRun, "show what a command would change, and leave the machine as it is");
  app.add_flag("--json", chosen.asJson, "with --dry-run: as one JSON document")->needs(dryRun);
}

// A wizard tells its user what was set up, and others may write between its pages.
void CheckDryRun(const Chosen &chosen) {
  if (chosen.isDryRun && !chosen.writes && !chosen.makesMachine)
    throw UsageError("--dry-run goes with a command that writes, but not with wizard and undo");
}

// Runs the command, shows what it would change, and drops that.
int Rehearse(const Chosen &chosen) {
  const platform::MachineCall call(platform::Purpose::Rehearse);
  if (const std::string fault = platform::FindFault(true); !fault.empty())
    return Fail(fault);
  TellNotice(); // of the machine, before the one of the plug-in
  const Outcome outcome = chosen.action();
  const std::string fault = platform::TakeFault();
  std::cout << call.Report(fault.empty() ? outcome.text : "", chosen.asJson);
  if (!std::cout.flush())
    return Fail("the output can't be written");
  return fault.empty() ? outcome.status : Fail(fault);
}

// Runs the command as one change of the machine, or as one look at it, and says how it ended, or which fault of the
// machine kept it from that. Commands that make the machine, or write in steps, say themselves what is one change.
int Run(const Chosen &chosen) {
  std::optional<platform::MachineCall> call;
  if (!chosen.makesMachine && !chosen.writesInSteps)
    call.emplace(chosen.writes ? platform::Purpose::Change : platform::Purpose::Look);
  if (!chosen.makesMachine)
    if (const std::string fault = platform::FindFault(chosen.writes || chosen.writesInSteps); !fault.empty())
      return Fail(fault);
  TellNotice();
  const Outcome outcome = chosen.action();
  const bool kept = !call || call->Commit();
  TellNotice();
  if (const std::string fault = platform::TakeFault(); !fault.empty() || !kept)
    return Fail(fault.empty() ? "the machine can't be written" : fault);
  std::cout << outcome.text;
  return std::cout.flush() ? outcome.status : Fail("the output can't be written");
}

int RunArguments(const std::vector<std::string> &arguments) {
  Chosen chosen;
  CLI::App app("Puts a subscriber's mail and news settings into the client programs of a machine", "acctkit");
  app.require_subcommand(1);
  if (platform::HasMachineFolders()) {
    app.add_option_function<std::string>("--machine", platform::UseMachine, "the machine folder")->type_name("DIR");
    AddDryRunOptions(app, chosen);
  }
  AddMachineCommand(app, chosen);
  AddViewCommands(app, chosen);
  if (platform::HasMachineFolders())
    AddUndoCommand(app, chosen);
  AddAccountCommands(app, chosen.action, chosen.writes);
  AddSignupCommands(app, chosen);
  AddBrowserCommands(app, chosen);
  AddWizardCommand(app, chosen.action, chosen.writesInSteps);
  try {
    // The parser takes the arguments last one first.
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    CheckDryRun(chosen);
    return chosen.isDryRun ? Rehearse(chosen) : Run(chosen);
  } catch (const CLI::CallForHelp &) {
    std::cout << app.help();
    return 0;
  } catch (const CLI::RequiredError &error) {
    const std::vector<std::string> unknown = app.remaining(true);
    std::cerr << "acctkit: "
              << (unknown.empty() ? std::string(error.what()) : unknown.front() + ": there is no such command")
              << ", see acctkit --help\n";
    return 2;
  } catch (const CLI::ParseError &error) {
    std::cerr << "acctkit: " << error.what() << '\n';
    return 2;
  } catch (const UsageError &error) {
    std::cerr << "acctkit: " << error.what() << '\n';
    return 2;
  }
}

} // namespace

int RunHost(const std::vector<std::string> &arguments) {
  try {
    return RunArguments(arguments);
  } catch (const std::bad_alloc &) {
    return Fail("there isn't enough memory");
  } catch (const std::exception &error) {
    return Fail(error.what());
  }
}
