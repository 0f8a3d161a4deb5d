// Communicator profiles: the install test, finding a profile, entering one and rewriting its prefs.js.
#include "clients/communicator/communicator_mail.h"

#include "support/client_machine.h"

namespace {

using Lines = std::vector<std::string>;

const std::string BiffKey = "Software\\Netscape\\Netscape Navigator\\biff\\users\\";
const std::string UsersKey = "SOFTWARE\\Netscape\\Netscape Navigator\\Users\\";
const std::string Profile = "@zuvio(ABC01234)";
// Its last character ends in a backslash byte.
const std::string OtherProfile = "表示";

class CommunicatorTest : public ClientTest {
protected:
  CommunicatorMail adapter;

  void SetUp() override {
    ClientTest::SetUp();
    InstallCommunicator();
  }

  static std::string AccountLines() {
    return "user_pref(\"mail.identity.useremail\", \"taro@zuvio.example\");\n"
           "user_pref(\"mail.identity.username\", \"山田 太郎\");\n"
           "user_pref(\"mail.pop_name\", \"ABC01234\");\n"
           "user_pref(\"network.hosts.pop_server\", \"pop.example\");\n"
           "user_pref(\"network.hosts.smtp_server\", \"smtp.example\");\n"
           "user_pref(\"mail.leave_on_server\", true);\n"
           "user_pref(\"mail.html_compose\", false);\n"
           "user_pref(\"mail.remember_password\", true);\n"
           "user_pref(\"browser.startup.homepage_override\", false);\n";
  }
};

TEST_F(CommunicatorTest, IsInstalledInAVersionFour) {
  const std::pair<const char *, int32_t> versions[] = {{"4.75", 1}, {"14.1", 1}, {"6.0", 0}, {"4", 0}, {"6.4.", 0}};
  for (const auto &[version, expected] : versions) {
    InstallCommunicator(version);
    EXPECT_EQ(adapter.IsInstall(), expected) << version;
  }
  std::string text = "old";
  EXPECT_EQ(adapter.GetClientVersion(text), 0);
  EXPECT_EQ(text, "");
  InstallCommunicator("4.75");
  EXPECT_EQ(adapter.GetClientVersion(text), 1);
  EXPECT_EQ(text, "4.xx");
  PutString(HKEY_LOCAL_MACHINE, "SOFTWARE\\Netscape\\Conference", "CurrentVersion", "4.7 [ja]");
  EXPECT_EQ(adapter.GetClientVersion(text), 1);
  EXPECT_EQ(text, "4.7 [ja]");
  EXPECT_EQ(adapter.GetClientPath(text), 1);
  EXPECT_EQ(text, "C:\\acctkit-test\\NETSCAPE.EXE");

  ResetMachine();
  InstallCommunicator(nullptr);
  EXPECT_EQ(adapter.IsInstall(), 0);
}

TEST_F(CommunicatorTest, EntersANewProfile) {
  PutDword(HKEY_LOCAL_MACHINE, UsersKey + Profile, "Obsoleted", 1);
  EXPECT_EQ(WriteAccount(adapter, SampleMailSpec()), 1);
  const std::string directory = CommunicatorFolder() + "\\Users\\" + Profile;
  EXPECT_EQ(DumpKey(HKEY_LOCAL_MACHINE, UsersKey + Profile),
            (Lines{"DirRoot=" + directory, "EmailAddr=taro@zuvio.example", "UserName=山田 太郎"}));
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, BiffKey + Profile), Lines{"defaultServer=pop.example"});
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, BiffKey + Profile + "\\servers\\pop.example"),
            Lines{"popstatePath=" + directory + "\\mail\\popstate.dat"});
  EXPECT_EQ(GetFile(ProfilePrefs(Profile)), AccountLines());
  EXPECT_FALSE(CreateDirectoryA((directory + "\\mail").c_str(), nullptr)); // it's there
}

TEST_F(CommunicatorTest, OverwritesAProfileAndKeepsTheOtherLinesOfItsPrefs) {
  PutFile(ProfilePrefs(OtherProfile), "// 表\r\nuser_pref(\"mail.pop_name\", \"a\");\r\nuser_pref(\"x\", 1);\r\n"
                                      "user_pref(\"mail.pop_name\", \"b\");\r\n");
  EXPECT_EQ(WriteAccount(adapter, SampleMailSpec(), OtherProfile), 1);
  EXPECT_EQ(GetFile(ProfilePrefs(OtherProfile)),
            "// 表\r\nuser_pref(\"x\", 1);\r\nuser_pref(\"mail.pop_name\", \"b\");\r\n" + AccountLines());
  EXPECT_EQ(GetString(HKEY_LOCAL_MACHINE, UsersKey + OtherProfile, "EmailAddr"), "taro@zuvio.example");
  EXPECT_FALSE(KeyThere(HKEY_CURRENT_USER, BiffKey + OtherProfile));
}

TEST_F(CommunicatorTest, RefusesBeforeAnyWriteWhatDoesNotFit) {
  const auto refused = [&](const MailAccountSpec &spec) {
    EXPECT_EQ(WriteAccount(adapter, spec), 0);
    EXPECT_FALSE(KeyThere(HKEY_LOCAL_MACHINE, UsersKey + spec.accountName));
    EXPECT_FALSE(KeyThere(HKEY_CURRENT_USER, BiffKey + spec.accountName));
  };
  MailAccountSpec spec = SampleMailSpec();
  spec.accountName.assign(256, 'p');
  refused(spec);
  spec.accountName.assign(212, 'p'); // the path of its prefs.js has no room
  refused(spec);
  spec = SampleMailSpec();
  spec.senderName.assign(256 - 40, 's'); // one byte more than its line has room for
  refused(spec);
  spec = SampleMailSpec();
  const std::string full(102400 - 20, '\n');
  PutFile(ProfilePrefs(Profile), full);
  refused(spec);
  EXPECT_EQ(GetFile(ProfilePrefs(Profile)), full);
  ResetMachine(); // no install directory
  refused(spec);
}

TEST_F(CommunicatorTest, FindsAListedProfileWhosePrefsCanBeOpened) {
  MailAccountSpec spec = SampleMailSpec();
  spec.accountName = OtherProfile;
  std::string key = "old";
  std::string message = "old";
  EXPECT_EQ(adapter.IsExistAccount(spec, key, message), 0);
  const std::string state = CommunicatorFolder() + "\\Users\\" + OtherProfile;
  PutString(HKEY_CURRENT_USER, BiffKey + OtherProfile, "defaultServer", "pop");
  PutString(HKEY_CURRENT_USER, BiffKey + OtherProfile + "\\servers\\pop", "popstatePath", state + "\\popstate.dat");
  MakeFolders(state);
  EXPECT_EQ(adapter.IsExistAccount(spec, key, message), 0);
  PutString(HKEY_CURRENT_USER, BiffKey + OtherProfile + "\\servers\\pop", "popstatePath",
            state + "\\mail\\popstate.dat");
  EXPECT_EQ(adapter.IsExistAccount(spec, key, message), 1);
  EXPECT_EQ(key, OtherProfile);
  EXPECT_EQ(message, "同名のプロファイルが存在します。\nプロファイル名：表示を上書きしますか？");
  EXPECT_EQ(GetFile(ProfilePrefs(OtherProfile)), "");

  const HANDLE held = CreateFileA(ProfilePrefs(OtherProfile).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  EXPECT_EQ(adapter.IsExistAccount(spec, key, message), 0);
  CloseHandle(held);
}

TEST_F(CommunicatorTest, SetsTheStartPageInAnExistingDirectory) {
  PutFile(ProfilePrefs(Profile), "user_pref(\"browser.startup.homepage_override\", true);\n1\n");
  const std::string directory = CommunicatorFolder() + "\\Users\\";
  EXPECT_EQ(adapter.SetStartPage(directory + Profile, "http://zuvio.example/"), 1);
  const std::string written = "\n1\nuser_pref(\"browser.startup.homepage\", \"http://zuvio.example/\");\n";
  EXPECT_EQ(GetFile(ProfilePrefs(Profile)), written);
  EXPECT_EQ(adapter.SetStartPage(directory + Profile, std::string(250, 'u')), 1);
  EXPECT_EQ(GetFile(ProfilePrefs(Profile)), written);
  EXPECT_EQ(adapter.SetStartPage(directory + "gone", "http://zuvio.example/"), 1);
  EXPECT_EQ(GetFile(ProfilePrefs("gone")), std::nullopt);
}

TEST_F(CommunicatorTest, EntersItselfAsDefaultClient) {
  const std::string client = "SOFTWARE\\Clients\\Mail\\Netscape Messenger";
  EXPECT_EQ(adapter.SetDefaultClient(), 1);
  EXPECT_EQ(GetString(HKEY_LOCAL_MACHINE, "SOFTWARE\\Clients\\Mail", nullptr), "Netscape Messenger");
  EXPECT_EQ(DumpKey(HKEY_LOCAL_MACHINE, client), Lines{"=Netscape Messenger"});
  EXPECT_EQ(DumpKey(HKEY_LOCAL_MACHINE, client + "\\Protocols\\mailto"),
            (Lines{"=URL:MailTo Protocol", "EditFlags:3=02000000", "URL Protocol="}));
  const std::string program = "C:\\Program Files\\Netscape\\Communicator\\Program\\netscape.exe";
  EXPECT_EQ(DumpKey(HKEY_LOCAL_MACHINE, client + "\\shell\\open\\command"), Lines{"=" + program + " %1"});
  EXPECT_EQ(DumpKey(HKEY_LOCAL_MACHINE, client + "\\Protocols\\mailto\\DefaultIcon"), Lines{"=" + program + ",-11"});

  // A client key that is there already stays as it is.
  PutString(HKEY_LOCAL_MACHINE, client, nullptr, "mine");
  EXPECT_EQ(adapter.SetDefaultClient(), 1);
  EXPECT_EQ(DumpKey(HKEY_LOCAL_MACHINE, client), Lines{"=mine"});
}

} // namespace
