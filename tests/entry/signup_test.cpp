// The call after a sign-up: what each client and the plug-in get in each case.
#include "acctkit/acctkit.h"

#include "clients/guarded.h"
#include "support/client_machine.h"

#include <cstring>

namespace {

const char *const BrowserKey = "Software\\Microsoft\\Internet Explorer\\Main";
const std::string Account = std::string(AccountsKey) + "\\00000001";
const std::string Profile = "@zuvio(ABC01234)";

class SignupTest : public ClientTest {
protected:
  SignupRecord record{};

  void SetUp() override {
    ClientTest::SetUp();
    MakeKey(HKEY_CURRENT_USER, BrowserKey);
    std::strcpy(record.serviceId, "ABC01234");
    std::strcpy(record.connectionName, "connection");
    std::strcpy(record.senderName, "山田 太郎");
    std::strcpy(record.mailUser, "info");
    std::strcpy(record.reservedText, "not read");
    std::strcpy(record.mailAddress, "taro@zuvio.example");
    std::strcpy(record.popServer, "pop.own");
    std::strcpy(record.smtpServer, "smtp.own");
    std::strcpy(record.startPage, "http://zuvio.example/");
  }
};

TEST_F(SignupTest, ConfiguresEveryClientAndASecondTimeOverwrites) {
  InstallOutlookExpress("5,50,1");
  InstallCommunicator();
  const std::string kept = InstallPlugin("plugin_complete");
  const std::string startPageLine = "user_pref(\"browser.startup.homepage\", \"http://zuvio.example/\");\n";
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(SetupAfterSignup(&record), 1);
    EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account, "Account Name"), "@zuvio(ABC01234)");
    EXPECT_EQ(GetDword(HKEY_CURRENT_USER, ManagerKey, "Account Name"), 2U);
    EXPECT_EQ(GetString(HKEY_CURRENT_USER, BrowserKey, "Start Page"), record.startPage);
    // The start page goes to the profile that was found; a profile made just now wasn't, and has none of its own yet.
    const std::string prefs = GetFile(PrefsPathOf(Profile)).value_or("");
    EXPECT_EQ(prefs.ends_with(startPageLine), round == 1) << prefs;
    EXPECT_EQ(GetFile(CommunicatorFolder() + "\\Users\\prefs.js"), startPageLine);

    MailEnvironment expected{};
    std::memcpy(&expected, &record, sizeof expected);
    std::memset(expected.reservedText, 0, sizeof expected.reservedText);
    const std::string handed = Kept(kept);
    ASSERT_EQ(handed.size(), sizeof expected);
    EXPECT_EQ(std::memcmp(handed.data(), &expected, sizeof expected), 0);
  }
}

TEST_F(SignupTest, ServesTheOriginalDomainWithTheRecordsServers) {
  InstallOutlookExpress("5,50,1");
  record.serviceKind = 1;
  EXPECT_EQ(SetupAfterSignup(&record), 0); // there is no plug-in
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account, "Account Name"), "taro@zuvio.example");
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account, "POP3 User Name"), "info");
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account, "SMTP Server"), "smtp.own");
}

TEST_F(SignupTest, ServesThePluginAloneForAnotherKindOfService) {
  InstallOutlookExpress("5,50,1");
  const std::string kept = InstallPlugin("plugin_complete");
  record.serviceKind = 2;
  EXPECT_EQ(SetupAfterSignup(&record), 1);
  EXPECT_FALSE(KeyThere(HKEY_CURRENT_USER, Account));
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, BrowserKey, "Start Page"), std::nullopt);
  EXPECT_EQ(Kept(kept).size(), sizeof(MailEnvironment));
}

TEST_F(SignupTest, ReadsNothingBeyondFieldsWithoutATerminator) {
  InstallOutlookExpress("5,50,1");
  const std::string kept = InstallPlugin("plugin_complete");
  std::memset(static_cast<void *>(&record), 'x', offsetof(SignupRecord, serviceKind));
  EXPECT_EQ(SetupAfterSignup(&record), 1);
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account, "POP3 User Name"), "xxxxxxxx");
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account, "SMTP Display Name"), std::string(256, 'x'));
  const std::string handed = Kept(kept);
  EXPECT_EQ(handed.substr(0, 10), std::string("xxxxxxxx\0x", 10));
  EXPECT_EQ(handed.back(), '\0');
}

TEST_F(SignupTest, HandsOnThePluginsAnswers) {
  EXPECT_EQ(SetupAfterSignup(&record), 0);
  EXPECT_EQ(SetupCompleted(), 0);
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, BrowserKey, "Start Page"), record.startPage);
  InstallCommunicator(); // the only client
  EXPECT_EQ(SetupAfterSignup(&record), 0);
  EXPECT_NE(GetFile(PrefsPathOf(Profile)), std::nullopt);
  InstallPlugin("plugin_complete");
  EXPECT_EQ(SetupCompleted(), 7);
  if (PluginsCanThrow) {
    InstallPlugin("plugin_throwing");
    EXPECT_EQ(SetupCompleted(), 0);
  }
  EXPECT_EQ(Guarded([]() -> int32_t { throw 1; }), 0);
  InstallPlugin("plugin_incomplete");
  EXPECT_EQ(SetupCompleted(), 0);
  EXPECT_EQ(SetupAfterSignup(&record), 0);
}

} // namespace
