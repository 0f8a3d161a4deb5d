// The exports without windows, as a host calls them: what they write to which client, and what they return.
#include "acctkit/acctkit.h"

#include "clients/service_constants.h"
#include "support/client_machine.h"

#include <tuple>

namespace {

const std::string BiffKey = "Software\\Netscape\\Netscape Navigator\\biff\\users\\";

// An integer in the array of an export.
const char *Word(intptr_t number) { return reinterpret_cast<const char *>(number); }

class ExportsTest : public ClientTest {
protected:
  char key[ACCTKIT_KEY_SIZE] = "\0what a host left there";
  char message[ACCTKIT_MESSAGE_SIZE] = "old";

  static std::string Account(const char *name) { return std::string(AccountsKey) + "\\" + name; }
};

TEST_F(ExportsTest, AnswerZeroForAnIndexWithoutAClientAndTouchNothing) {
  InstallOutlookExpress("5,50,1");
  InstallCommunicator();
  int32_t major = -1;
  int32_t minor = -1;
  for (const int32_t client : {-1, 2, 3, 7}) {
    EXPECT_EQ(IsInstallMailer(client) + IsInstallNews(client), 0);
    EXPECT_EQ(GetMailVersion(client, &major, &minor) + GetNewsVersion(client, nullptr, nullptr), 0);
    EXPECT_EQ(IsExistMailAccount(client, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(IsExistNewsAccount(client, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(SetupMailAccount(client, nullptr, nullptr) + SetupNewsAccount(client, nullptr, nullptr), 0);
    EXPECT_EQ(SetBrowserStartPage(client, nullptr, nullptr), 0);
  }
  EXPECT_EQ(major, -1);
  EXPECT_EQ(minor, -1);
}

TEST_F(ExportsTest, SplitTheVersionAtTheClientsSeparator) {
  const std::tuple<const char *, int32_t, int32_t> cases[] = {
      {"5,50,4522,1200", 5, 50}, {"6, 0", 6, 0},   {nullptr, 0, 0}, // "4.00.0" has no comma
      {"x5,50", 0, 50},          {"-5,+50", 0, 0}, {"99999999999,7", 0, 7}};
  for (const auto &[version, expectedMajor, expectedMinor] : cases) {
    ResetMachine();
    InstallOutlookExpress(version);
    int32_t major = -1;
    int32_t minor = -1;
    EXPECT_EQ(GetMailVersion(0, &major, &minor), 1);
    EXPECT_EQ(std::pair(major, minor), std::pair(expectedMajor, expectedMinor)) << (version ? version : "none");
    EXPECT_EQ(GetMailVersion(1, &major, &minor), 0);
    EXPECT_EQ(std::pair(major, minor), std::pair(0, 0));
  }
  InstallCommunicator();
  int32_t major = -1;
  int32_t minor = -1;
  EXPECT_EQ(GetMailVersion(1, &major, &minor), 1);
  EXPECT_EQ(std::pair(major, minor), std::pair(4, 0));
}

TEST_F(ExportsTest, WriteAnAccountFindItAndOverwriteIt) {
  const char *const spec[] = {"user", "sender", "title", "", "smtp", "pop", "a@b", "dialer", Word(0)};
  EXPECT_EQ(IsExistMailAccount(0, spec, key, message), 0);
  EXPECT_STREQ(message, "");
  EXPECT_EQ(SetupMailAccount(0, spec, key), 1);
  EXPECT_EQ(IsExistMailAccount(0, spec, key, message), 1);
  EXPECT_STREQ(key, "00000001");
  EXPECT_STREQ(message, "同名のアカウントが存在します。\nアカウント名：titleを上書きしますか？");
  EXPECT_EQ(SetupMailAccount(0, spec, key), 1);
  EXPECT_FALSE(KeyThere(HKEY_CURRENT_USER, Account("00000002")));

  // A name of 128 characters may have 256 bytes, too many for a host's buffer.
  std::string profile = "a";
  while (profile.size() < ACCTKIT_KEY_SIZE - 1)
    profile += "表";
  for (const int32_t found : {1, 0}) {
    PutString(HKEY_CURRENT_USER, BiffKey + profile, "defaultServer", "pop");
    PutString(HKEY_CURRENT_USER, BiffKey + profile + "\\servers\\pop", "popstatePath",
              std::string(ScratchFolder) + "\\mail\\popstate.dat");
    const char *const communicator[] = {"", "", profile.c_str(), "", "", "", "", "", Word(0)};
    EXPECT_EQ(IsExistMailAccount(1, communicator, key, message), found);
    EXPECT_EQ(key, profile.substr(0, ACCTKIT_KEY_SIZE - 1)); // even if this profile was found before
    profile += "b";
  }
}

TEST_F(ExportsTest, CompleteTheShorthandWithTheServicesOwnValues) {
  const char *const zuvio[] = {"ABC01234", "山田", "taro@zuvio.example"};
  EXPECT_EQ(SetupZuvioMailAccount(0, zuvio, ""), 1);
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account("00000001"), "Account Name"), "@zuvio(ABC01234)");
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account("00000001"), "POP3 Server"), IspPopHost);
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account("00000001"), "SMTP Server"), IspSmtpHost);
  EXPECT_EQ(IsExistZuvioMailAccount(0, zuvio, key, message), 1);
  EXPECT_STREQ(key, "00000001");

  const char *const kerm[] = {"info", "店", "info@own.example", "smtp.own", "pop.own"};
  EXPECT_EQ(IsExistKERMMailAccount(0, kerm, key, message), 0);
  EXPECT_EQ(SetupKERMMailAccount(0, kerm, ""), 1);
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account("00000002"), "Account Name"), "info@own.example");
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account("00000002"), "SMTP Email Address"), "info@own.example");
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account("00000002"), "POP3 Server"), "pop.own");

  const std::string longId(600, 'x');
  const char *const tooLong[] = {longId.c_str(), "", ""};
  EXPECT_EQ(SetupZuvioMailAccount(0, tooLong, ""), 0);

  const std::tuple<intptr_t, const char *, const char *> servers[] = {
      {1, IspForumNewsHostLegacy, "@zuvio(ABC01234) @zuvio(QZX00000) フォーラム会議室"},
      {2, IspSquareNewsHostLegacy, "@zuvio(ABC01234) @zuvio(QZX00000) カモメ（web会議室）"}};
  for (const auto &[number, host, title] : servers) {
    const char *const news[] = {"ABC01234", "山田", "taro@zuvio.example", Word(number)};
    EXPECT_EQ(IsExistZuvioNewsAccount(0, news, key, message), 0);
    EXPECT_EQ(SetupZuvioNewsAccount(0, news, ""), 1);
    EXPECT_EQ(IsExistZuvioNewsAccount(0, news, key, message), 1);
    EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account(key), "NNTP Server"), host);
    EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account(key), "Account Name"), title);
    EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account(key), "NNTP User Name"), "ABC01234");
    EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account(key), "NNTP Display Name"), "山田");
    InstallCommunicator();
    EXPECT_EQ(SetupZuvioNewsAccount(1, news, ""), 1);
    EXPECT_NE(GetFile(PrefsPathOf("@zuvio(ABC01234)")).value_or("").find(host), std::string::npos);
  }
  const char *const thirdServer[] = {"ABC01234", "", "", Word(3)};
  EXPECT_EQ(SetupZuvioNewsAccount(0, thirdServer, "") + IsExistZuvioNewsAccount(0, thirdServer, key, message), 0);
}

TEST_F(ExportsTest, SetTheStartPage) {
  const char *const page = "http://zuvio.example/";
  const char *const mainKey = "Software\\Microsoft\\Internet Explorer\\Main";
  EXPECT_EQ(SetBrowserStartPage(0, nullptr, page), 0);
  EXPECT_FALSE(KeyThere(HKEY_CURRENT_USER, mainKey));
  MakeKey(HKEY_CURRENT_USER, mainKey);
  EXPECT_EQ(SetBrowserStartPage(0, nullptr, page), 1);
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, mainKey, "Start Page"), page);

  EXPECT_EQ(SetBrowserStartPage(1, "p", page), 0);
  PutString(HKEY_CURRENT_USER, "Software\\Netscape\\Netscape Navigator\\Main", "Install Directory", "");
  EXPECT_EQ(SetBrowserStartPage(1, "", page), 0);
  EXPECT_EQ(GetFile("\\Users\\prefs.js"), std::nullopt);
  InstallCommunicator();
  const std::string line = "user_pref(\"browser.startup.homepage\", \"http://zuvio.example/\");\n";
  EXPECT_EQ(SetBrowserStartPage(1, "p", page), 1);
  EXPECT_EQ(GetFile(PrefsPathOf("p")), std::nullopt); // its folder isn't there
  PutFile(PrefsPathOf("p"), "");
  EXPECT_EQ(SetBrowserStartPage(1, "p", page), 1);
  EXPECT_EQ(GetFile(PrefsPathOf("p")), line);
  EXPECT_EQ(SetBrowserStartPage(1, "", page), 1);
  EXPECT_EQ(GetFile(CommunicatorFolder() + "\\Users\\prefs.js"), line);
}

TEST_F(ExportsTest, TakeOutlookAccountsOffTheServicesConnection) {
  const std::tuple<const char *, std::optional<DWORD>, const char *, bool> cases[] = {
      {"00000001", 2, "@zuvioダイヤラ", true},  {"00000002", 2, "@ZUVIOダイヤラ", true},
      {"00000003", 2, "@zuvioダイヤル", false}, {"00000004", 1, "@zuvioダイヤラ", false},
      {"00000005", 2, nullptr, false},          {"00000006", std::nullopt, "@zuvioダイヤラ", false}};
  for (const auto &[version, replacement] : {std::pair{"5,50,1", 3U}, {"4,72,1", 1U}, {(const char *)nullptr, 1U}}) {
    ResetMachine();
    for (const auto &[name, type, connection, changed] : cases) {
      MakeKey(HKEY_CURRENT_USER, Account(name));
      if (type)
        PutDword(HKEY_CURRENT_USER, Account(name), "Connection Type", *type);
      if (connection != nullptr)
        PutString(HKEY_CURRENT_USER, Account(name), "Connectoid", connection);
    }
    EXPECT_EQ(OutlookDisable(), 0);
    EXPECT_EQ(GetDword(HKEY_CURRENT_USER, Account("00000001"), "Connection Type"), 2U);
    InstallOutlookExpress(version);
    EXPECT_EQ(OutlookDisable(), 1);
    for (const auto &[name, type, connection, changed] : cases) {
      EXPECT_EQ(GetDword(HKEY_CURRENT_USER, Account(name), "Connection Type"),
                changed ? std::optional<DWORD>(replacement) : type);
      EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account(name), "Connectoid").has_value(),
                connection != nullptr && !changed);
    }
  }
}

} // namespace
