// Clients as they are on a user's machine, for the suites above the stores.
#pragma once

#include "support/test_machine.h"

#include "clients/account_specs.h"

constexpr const char *OutlookKey = "SOFTWARE\\Microsoft\\Outlook Express";
constexpr const char *ManagerKey = "Software\\Microsoft\\Internet Account Manager";
constexpr const char *AccountsKey = "Software\\Microsoft\\Internet Account Manager\\Accounts";
constexpr const char *NavigatorKey = "SOFTWARE\\Netscape\\Netscape Navigator";
constexpr const char *Netscape6Key = "SOFTWARE\\Netscape\\Netscape 6";
constexpr const char *PluginKey = "SOFTWARE\\Harveld\\@zuvioSetup";

// Communicator's install directory, and the prefs.js of one of its profiles.
std::string CommunicatorFolder();
std::string PrefsPathOf(const std::string &profile);

// The folder in which Netscape 6 keeps the user's profiles.
std::string MozillaFolder();

class ClientTest : public MachineTest {
protected:
  // With a null version there is no version value.
  static void InstallOutlookExpress(const char *mediaVersion);
  static void InstallCommunicator(const char *version = "4.75");
  // Makes a profile registry with two profiles, "default" and "Home Office", which is the current one.
  static void InstallNetscape6(const char *version = "6.2 (ja)");
  // Registers one of the plug-ins that the build made, with a mailer's program on the machine. Returns the file in
  // which the complete plug-in stores the account that it gets.
  static std::string InstallPlugin(const std::string &plugin);
  // The account that the complete plug-in got, empty if it wasn't called.
  static std::string Kept(const std::string &path);
  // Whether an exception of a plug-in reaches its caller. In the 32-bit DLL it doesn't: each library finds only its own
  // frames, and the exception ends the process.
  static constexpr bool PluginsCanThrow = sizeof(void *) == 8;
};

// Accounts in which every text is different, and Japanese if a client shows it.
MailAccountSpec SampleMailSpec();
NewsAccountSpec SampleNewsSpec(int32_t serverIndex);

// What a client answers, and the text that it gives.
template <typename Client> std::string Told(Client &client, int32_t (Client::*question)(std::string &)) {
  std::string text = "old";
  const int32_t answer = (client.*question)(text);
  return std::to_string(answer) + ' ' + text;
}

// SetupAccount with its own copy of the key, for tests that don't need the resulting key.
template <typename Adapter, typename Spec>
int32_t WriteAccount(Adapter &adapter, const Spec &spec, std::string key = std::string()) {
  return adapter.SetupAccount(spec, key);
}
