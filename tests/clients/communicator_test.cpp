// Communicator profiles: the install test, finding a profile, entering one and rewriting its prefs.js.
#include "clients/communicator/communicator_mail.h"
#include "clients/communicator/communicator_news.h"

#include "clients/file_queries.h"
#include "stores/file_handle.h"
#include "support/client_machine.h"

namespace {

using Lines = std::vector<std::string>;

const std::string BiffKey = "Software\\Netscape\\Netscape Navigator\\biff\\users\\";
const std::string UsersKey = "SOFTWARE\\Netscape\\Netscape Navigator\\Users\\";
const std::string Profile = "@zuvio(ABC01234)";
// The first character ends in the byte of the backslash.
const std::string OtherProfile = "表示";

class CommunicatorTest : public ClientTest {
protected:
  CommunicatorMail adapter;

  void SetUp() override {
    ClientTest::SetUp();
    InstallCommunicator();
  }

  static std::string SenderLines() {
    return "user_pref(\"mail.identity.useremail\", \"taro@zuvio.example\");\n"
           "user_pref(\"mail.identity.username\", \"山田 太郎\");\n";
  }
  static std::string AccountLines() {
    return SenderLines() + "user_pref(\"mail.pop_name\", \"ABC01234\");\n"
                           "user_pref(\"network.hosts.pop_server\", \"pop.example\");\n"
                           "user_pref(\"network.hosts.smtp_server\", \"smtp.example\");\n"
                           "user_pref(\"mail.leave_on_server\", true);\n"
                           "user_pref(\"mail.html_compose\", false);\n"
                           "user_pref(\"mail.remember_password\", true);\n"
                           "user_pref(\"browser.startup.homepage_override\", false);\n";
  }
};

TEST_F(CommunicatorTest, IsInstalledInVersion4) {
  const std::pair<const char *, int32_t> versions[] = {{"4.75", 1}, {"14.1", 1}, {"6.0", 0}, {"4", 0}, {"6.4.", 0}};
  for (const auto &[version, expected] : versions) {
    InstallCommunicator(version);
    EXPECT_EQ(adapter.IsInstall(), expected) << version;
  }
  EXPECT_EQ(Told(adapter, &CommunicatorMail::GetClientVersion), "0 ");
  InstallCommunicator("4.75");
  EXPECT_EQ(Told(adapter, &CommunicatorMail::GetClientVersion), "1 4.xx");
  PutString(HKEY_LOCAL_MACHINE, "SOFTWARE\\Netscape\\Conference", "CurrentVersion", "4.7 [ja]");
  EXPECT_EQ(Told(adapter, &CommunicatorMail::GetClientVersion), "1 4.7 [ja]");
  EXPECT_EQ(Told(adapter, &CommunicatorMail::GetClientPath), "1 C:\\acctkit-test\\NETSCAPE.EXE");

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
  EXPECT_EQ(GetFile(PrefsPathOf(Profile)), AccountLines());
  EXPECT_FALSE(CreateDirectoryA((directory + "\\mail").c_str(), nullptr)); // it's there
}

TEST_F(CommunicatorTest, OverwritesAProfileAndKeepsTheOtherLinesOfItsPrefs) {
  PutFile(PrefsPathOf(OtherProfile), "// 表\r\nuser_pref(\"mail.pop_name\", \"a\");\r\nuser_pref(\"x\", 1);\r\n"
                                     "user_pref(\"mail.pop_name\", \"b\");\r\n");
  EXPECT_EQ(WriteAccount(adapter, SampleMailSpec(), OtherProfile), 1);
  EXPECT_EQ(GetFile(PrefsPathOf(OtherProfile)),
            "// 表\r\nuser_pref(\"x\", 1);\r\nuser_pref(\"mail.pop_name\", \"b\");\r\n" + AccountLines());
  EXPECT_EQ(GetString(HKEY_LOCAL_MACHINE, UsersKey + OtherProfile, "EmailAddr"), "taro@zuvio.example");
  EXPECT_FALSE(KeyThere(HKEY_CURRENT_USER, BiffKey + OtherProfile));
}

TEST_F(CommunicatorTest, RefusesWithNothingWritten) {
  const auto refused = [&](const MailAccountSpec &spec) {
    EXPECT_EQ(WriteAccount(adapter, spec), 0);
    EXPECT_FALSE(KeyThere(HKEY_LOCAL_MACHINE, UsersKey + spec.accountName));
    EXPECT_FALSE(KeyThere(HKEY_CURRENT_USER, BiffKey + spec.accountName));
  };
  MailAccountSpec spec = SampleMailSpec();
  spec.accountName.assign(256, 'p');
  refused(spec);
  spec.accountName.assign(212, 'p'); // the path of its prefs.js is too long
  refused(spec);
  spec = SampleMailSpec();
  spec.senderName.assign(256 - 40, 's'); // the line gets one byte too long
  refused(spec);
  spec = SampleMailSpec();
  const std::string full(102400 - 20, '\n');
  PutFile(PrefsPathOf(Profile), full);
  refused(spec);
  EXPECT_EQ(GetFile(PrefsPathOf(Profile)), full);
  ResetMachine(); // no install directory
  refused(spec);
}

TEST_F(CommunicatorTest, FindsAListedProfileWhosePrefsCanBeOpened) {
  MailAccountSpec spec = SampleMailSpec();
  spec.accountName = OtherProfile;
  std::string key = "old";
  std::string message = "old";
  EXPECT_EQ(adapter.IsExistAccount(spec, key, message), 0);
  MakeKey(HKEY_CURRENT_USER, BiffKey + "another"); // listed before it
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
  EXPECT_EQ(GetFile(PrefsPathOf(OtherProfile)), "");

  const FileHandle held = OpenFileAlone(PrefsPathOf(OtherProfile).c_str(), GENERIC_READ, OPEN_EXISTING);
  EXPECT_EQ(adapter.IsExistAccount(spec, key, message), 0);
}

TEST_F(CommunicatorTest, SetsTheStartPageInAnExistingDirectory) {
  PutFile(PrefsPathOf(Profile), "user_pref(\"browser.startup.homepage_override\", true);\n1\n");
  const std::string directory = CommunicatorFolder() + "\\Users\\";
  EXPECT_EQ(adapter.SetStartPage(directory + Profile, "http://zuvio.example/"), 1);
  const std::string written = "\n1\nuser_pref(\"browser.startup.homepage\", \"http://zuvio.example/\");\n";
  EXPECT_EQ(GetFile(PrefsPathOf(Profile)), written);
  EXPECT_EQ(adapter.SetStartPage(directory + Profile, std::string(250, 'u')), 1);
  EXPECT_EQ(GetFile(PrefsPathOf(Profile)), written);
}

TEST_F(CommunicatorTest, EntersItselfAsDefaultClient) {
  const std::string client = "SOFTWARE\\Clients\\Mail\\Netscape Messenger";
  EXPECT_EQ(adapter.SetDefaultClient(), 1);
  EXPECT_EQ(GetString(HKEY_LOCAL_MACHINE, "SOFTWARE\\Clients\\Mail", nullptr), "Netscape Messenger");
  EXPECT_EQ(DumpKey(HKEY_LOCAL_MACHINE, client), Lines{"=Netscape Messenger"});
  EXPECT_EQ(DumpKey(HKEY_LOCAL_MACHINE, client + "\\Protocols\\mailto"),
            (Lines{"=URL:MailTo Protocol", "EditFlags:3=02000000", "URL Protocol="}));
  const std::string program = "C:\\Program Files\\Netscape\\Communicator\\Program\\netscape.exe";
  for (const std::string &above : {client, client + "\\Protocols\\mailto"})
    EXPECT_EQ(DumpKey(HKEY_LOCAL_MACHINE, above + "\\shell\\open\\command"), Lines{"=" + program + " %1"});
  EXPECT_EQ(DumpKey(HKEY_LOCAL_MACHINE, client + "\\Protocols\\mailto\\DefaultIcon"), Lines{"=" + program + ",-11"});

  // An existing client key stays unchanged.
  PutString(HKEY_LOCAL_MACHINE, client, nullptr, "mine");
  EXPECT_EQ(adapter.SetDefaultClient(), 1);
  EXPECT_EQ(DumpKey(HKEY_LOCAL_MACHINE, client), Lines{"=mine"});
}

class CommunicatorNewsTest : public CommunicatorTest {
protected:
  CommunicatorNews news;
  const std::string folder = CommunicatorFolder() + "\\Users\\" + Profile + "\\news\\";

  static std::string ServerLine(const std::string &host) {
    return "user_pref(\"network.hosts.nntp_server\", \"" + host + "\");\n";
  }
  std::string Record(const std::string &host, const std::string &label) const {
    return "newsrc-" + host + "\t" + folder + label + ".rc\tFALSE\n";
  }
  static std::string NewsLines() {
    return "user_pref(\"mail.html_compose\", false);\n"
           "user_pref(\"mail.pop_name\", \"ABC01234\");\n"
           "user_pref(\"news.remember_password\", true);\n"
           "user_pref(\"browser.startup.homepage_override\", false);\n"
           "user_pref(\"offline.news.download.increments\", 2);\n"
           "user_pref(\"offline.news.download.by_date\", true);\n";
  }
};

TEST_F(CommunicatorNewsTest, EntersTwoServersInOneProfile) {
  PutDword(HKEY_LOCAL_MACHINE, UsersKey + Profile, "Obsoleted", 1);
  EXPECT_EQ(WriteAccount(news, SampleNewsSpec(0)), 1);
  const std::string directory = CommunicatorFolder() + "\\Users\\" + Profile;
  EXPECT_EQ(DumpKey(HKEY_LOCAL_MACHINE, UsersKey + Profile),
            (Lines{"DirRoot=" + directory, "EmailAddr=taro@zuvio.example", "UserName=山田 太郎"}));
  EXPECT_FALSE(KeyThere(HKEY_CURRENT_USER, BiffKey + Profile));
  EXPECT_EQ(GetFile(PrefsPathOf(Profile)), ServerLine("forum-nntp.example") + SenderLines() + NewsLines());
  EXPECT_EQ(GetFile(folder + "fat"), "netscape-newsrc-map-file\n" + Record("forum-nntp.example", "forum-nntp"));
  PutFile(folder + "forum-nntp.rc", "read: 1-5\n");

  EXPECT_EQ(WriteAccount(news, SampleNewsSpec(1), Profile), 1);
  EXPECT_EQ(WriteAccount(news, SampleNewsSpec(0), Profile), 1);
  // The first server's old line went, and its new one stands behind that of the second.
  EXPECT_EQ(GetFile(PrefsPathOf(Profile)),
            "\n" + ServerLine("square.example") + ServerLine("forum-nntp.example") + SenderLines() + NewsLines());
  EXPECT_EQ(GetFile(folder + "fat"), "netscape-newsrc-map-file\n" + Record("forum-nntp.example", "forum-nntp") +
                                         Record("square.example", "square"));
  EXPECT_EQ(GetFile(folder + "forum-nntp.rc"), "read: 1-5\n");
  EXPECT_EQ(GetFile(folder + "square.rc"), "");
  EXPECT_FALSE(CreateDirectoryA((directory + "\\mail").c_str(), nullptr)); // exists already
}

TEST_F(CommunicatorNewsTest, KeepsAnExistingSender) {
  const std::string longAddress = "user_pref(\"mail.identity.useremail\", \"" + std::string(300, 'a') + "\");\n";
  const std::pair<std::string, std::string> cases[] = {
      {"user_pref( \"mail.identity.useremail\", \"mine\");\n1\nuser_pref(\"mail.identity.username\", \"\");\n",
       "\n1\nuser_pref(\"mail.identity.useremail\", \"mine\");\n"
       "user_pref(\"mail.identity.username\", \"山田 太郎\");\n"},
      {"1\n" + longAddress, "1\n" + longAddress + "user_pref(\"mail.identity.username\", \"山田 太郎\");\n"},
      {"user_pref(\"mail.html_compose\", 1);\nuser_pref(\"mail.html_compose\", 2);\n", "\n" + SenderLines()},
  };
  NewsAccountSpec spec = SampleNewsSpec(0);
  spec.newsServerOn[0] = 0;
  spec.newsHosts[0] = ""; // an empty host isn't searched for as an empty value
  for (const auto &[before, after] : cases) {
    PutFile(PrefsPathOf(Profile), before);
    EXPECT_EQ(WriteAccount(news, spec, Profile), 1);
    EXPECT_EQ(GetFile(PrefsPathOf(Profile)), after + NewsLines());
  }
  // For a known profile only the directory is written to the registry.
  EXPECT_EQ(DumpKey(HKEY_LOCAL_MACHINE, UsersKey + Profile).size(), 1U);
  EXPECT_EQ(GetFile(folder + "fat"), std::nullopt);
}

TEST_F(CommunicatorNewsTest, RefusesWithNothingWritten) {
  const auto refused = [&](const NewsAccountSpec &spec) {
    EXPECT_EQ(WriteAccount(news, spec), 0);
    EXPECT_FALSE(KeyThere(HKEY_LOCAL_MACHINE, UsersKey + spec.accountName));
    EXPECT_EQ(GetFile(PrefsPathOf(Profile)), std::nullopt);
  };
  NewsAccountSpec spec = SampleNewsSpec(0);
  spec.newsHosts[0] = "nodot";
  refused(spec);
  spec.newsHosts[0] = std::string(100, 'h') + "." + std::string(60, 'h');
  refused(spec);
  spec = SampleNewsSpec(0);
  spec.newsServerOn[0] = 0;
  spec.accountName.assign(212, 'p'); // the path of its prefs.js is too long
  refused(spec);
  spec = SampleNewsSpec(0);
  const size_t room = 10240 - 25 - Record("forum-nntp.example", "forum-nntp").size(); // after the heading
  for (const std::string &map : {std::string(room + 1, '\n'), std::string(10241, '\n'), std::string("a\0b\n", 4)}) {
    PutFile(folder + "fat", map);
    refused(spec);
    EXPECT_EQ(GetFile(folder + "fat"), map);
  }
  PutFile(folder + "fat", "");
  PutFile(folder + "forum-nntp.rc", "read: 1-500");
  {
    const FileHandle held = OpenFileAlone((folder + "fat").c_str(), GENERIC_READ, OPEN_EXISTING);
    EXPECT_EQ(WriteAccount(news, spec), 1);
  }
  EXPECT_EQ(GetFile(folder + "forum-nntp.rc"), "read: 1-500"); // the server wasn't added to the map
  PutFile(folder + "fat", "x forum-nntp.example.org");
  EXPECT_EQ(WriteAccount(news, spec), 1);
  EXPECT_EQ(GetFile(folder + "fat"), "x forum-nntp.example.org");
  PutFile(folder + "fat", std::string(room, '\n'));
  EXPECT_EQ(WriteAccount(news, spec), 1);
}

TEST_F(CommunicatorNewsTest, CompletesTheMapsLastLineBeforeAddingARecord) {
  const std::string heading = "netscape-newsrc-map-file\n";
  const std::string other = Record("other.example", "other");
  const std::string server = Record("forum-nntp.example", "forum-nntp");
  for (const auto &[before, after] : {std::pair{heading + other, heading + other}, std::pair{other, other + heading}}) {
    PutFile(folder + "fat", before.substr(0, before.size() - 1));
    EXPECT_EQ(WriteAccount(news, SampleNewsSpec(0)), 1);
    EXPECT_EQ(GetFile(folder + "fat"), after + server);
  }
}

// A new profile's title becomes the name of a folder and of a key. Whole characters are tested, since the second byte
// of many is that of the backslash.
TEST_F(CommunicatorNewsTest, RefusesATitleThatIsNoFolderName) {
  MailAccountSpec mailSpec = SampleMailSpec();
  NewsAccountSpec newsSpec = SampleNewsSpec(0);
  for (const char *title : {"", ".", "..", "a.", "a ", "a\\b", "a/b", "a:b", "a*b", "a?b", "a\"b", "a<b", "a>b", "a|b",
                            "a\nb", "能\\", "a\x95", "a\x95/"}) {
    mailSpec.accountName = newsSpec.accountName = title;
    EXPECT_EQ(WriteAccount(adapter, mailSpec) + WriteAccount(news, newsSpec), 0) << title;
  }
  EXPECT_FALSE(KeyThere(HKEY_LOCAL_MACHINE, "SOFTWARE\\Netscape\\Netscape Navigator\\Users"));
  EXPECT_FALSE(KeyThere(HKEY_CURRENT_USER, "Software\\Netscape\\Netscape Navigator\\biff"));
  EXPECT_FALSE(PathExists((CommunicatorFolder() + "\\Users").c_str()));
  // A key names a profile that is there.
  EXPECT_EQ(WriteAccount(adapter, mailSpec, "old.") + WriteAccount(news, newsSpec, "old."), 2);
  for (const char *title : {"表", "ソフト", "能", "太郎　", " .a.b"}) {
    mailSpec.accountName = newsSpec.accountName = title;
    EXPECT_EQ(WriteAccount(adapter, mailSpec) + WriteAccount(news, newsSpec), 2) << title;
    EXPECT_NE(GetFile(PrefsPathOf(title)), std::nullopt) << title;
  }
}

TEST_F(CommunicatorNewsTest, AsksAboutTheProfileInOneLine) {
  EXPECT_EQ(WriteAccount(adapter, SampleMailSpec()), 1);
  std::string key;
  std::string message;
  EXPECT_EQ(news.IsExistAccount(SampleNewsSpec(1), key, message), 1);
  EXPECT_EQ(key, Profile);
  EXPECT_EQ(message, "プロファイル名：" + Profile);
}

} // namespace
