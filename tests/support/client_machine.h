// Clients as they stand on a user's machine, for the suites above the stores.
#pragma once

#include "support/test_machine.h"

#include "clients/account_specs.h"

constexpr const char *OutlookKey = "SOFTWARE\\Microsoft\\Outlook Express";
constexpr const char *ManagerKey = "Software\\Microsoft\\Internet Account Manager";
constexpr const char *AccountsKey = "Software\\Microsoft\\Internet Account Manager\\Accounts";
constexpr const char *NavigatorKey = "SOFTWARE\\Netscape\\Netscape Navigator";
constexpr const char *Netscape6Key = "SOFTWARE\\Netscape\\Netscape 6";
constexpr const char *PluginKey = "SOFTWARE\\Harveld\\@zuvioSetup";

// Where Communicator is installed, and the prefs.js of one of its profiles.
std::string CommunicatorFolder();
std::string PrefsPathOf(const std::string &profile);

// Where Netscape 6 keeps the user's profiles.
std::string MozillaFolder();

class ClientTest : public MachineTest {
protected:
  // A null version leaves the version value out.
  static void InstallOutlookExpress(const char *mediaVersion);
  static void InstallCommunicator(const char *version = "4.75");
  // With a profile registry of two profiles, "default" and "Home Office", which is the current one.
  static void InstallNetscape6(const char *version = "6.2 (ja)");
  // Registers one of the plug-ins that the build made, with a mailer's file on the machine, and answers where the
  // complete one keeps what it is handed.
  static std::string InstallPlugin(const std::string &plugin);
  // What the complete plug-in was handed, empty if it wasn't called.
  static std::string Kept(const std::string &path);
  // Whether what a plug-in throws comes to its caller. In the 32-bit DLL it doesn't: each library finds its own frames
  // alone, and the plug-in ends the process.
  static constexpr bool PluginsCanThrow = sizeof(void *) == 8;
};

// Accounts whose every text is different, Japanese where a client shows it.
MailAccountSpec SampleMailSpec();
NewsAccountSpec SampleNewsSpec(int32_t serverIndex);

// SetupAccount with a key of its own, for the tests that don't look at it afterwards.
template <typename Adapter, typename Spec>
int32_t WriteAccount(Adapter &adapter, const Spec &spec, std::string key = std::string()) {
  return adapter.SetupAccount(spec, key);
}
