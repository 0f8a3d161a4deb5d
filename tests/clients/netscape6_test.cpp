// Profiles of Netscape 6: the install test, making and registering a profile, and the graph of accounts in its
// prefs.js.
#include "clients/netscape6/netscape6_mail.h"
#include "clients/netscape6/netscape6_news.h"

#include "clients/service_constants.h"
#include "stores/profile_registry.h"
#include "support/client_machine.h"

#include <tuple>

namespace {

const std::string Profile = "@zuvio(ABC01234)";
const std::string FullName = "\xe5\xb1\xb1\xe7\x94\xb0 \xe5\xa4\xaa\xe9\x83\x8e"; // in UTF-8, as in the file
const std::string SquareName = "\xe3\x82\xab\xe3\x83\xa2\xe3\x83\xa1";
const std::string ForumName = "\xe3\x83\x95\xe3\x82\xa9\xe3\x83\xbc\xe3\x83\xa9\xe3\x83\xa0\xe4\xbc\x9a\xe8\xad\xb0\xe5"
                              "\xae\xa4";

std::string Pref(const std::string &key, const std::string &value) {
  return "user_pref(\"" + key + "\", " + value + ");\n";
}
std::string Text(const std::string &key, const std::string &value) { return Pref(key, "\"" + value + "\""); }

// The preferences of one account's identity and server.
struct Account {
  std::string number, host, type, name;
};
std::string AccountLines(const Account &account) {
  const std::string identity = "mail.identity.id" + account.number;
  const std::string server = "mail.server.server" + account.number;
  return Text(identity + ".useremail", "taro@zuvio.example") + Text(identity + ".fullName", FullName) +
         Pref(identity + ".compose_html", "false") + Text(server + ".userName", "ABC01234") +
         Text(server + ".hostname", account.host) + Text(server + ".type", account.type) +
         Pref(server + ".leave_on_server", "true") + Text(server + ".name", account.name);
}
const Account MailAccount = {"1", "pop.example", "pop3", Profile};
const std::string Remember = Pref("signon.rememberSignons", "true");

std::string SmtpLines(const std::string &key, const std::string &host) {
  return Text("mail.smtp.defaultserver", key) + Text("mail.smtpserver." + key + ".hostname", host) + Remember;
}
std::string AccountKeys(const std::string &number) {
  return Text("mail.account.account" + number + ".identities", "id" + number) +
         Text("mail.account.account" + number + ".server", "server" + number);
}

class Netscape6Test : public ClientTest {
protected:
  Netscape6Mail mail;
  Netscape6News news;
  const std::string directory = MozillaFolder() + "\\Users50\\" + Profile + "\\zuvio0.slt";
  const std::string prefs = directory + "\\prefs.js";

  void SetUp() override {
    ClientTest::SetUp();
    InstallNetscape6();
  }
  static std::string Registered(const std::string &key, const std::string &value) {
    ProfileRegistry registry;
    std::string text = "(none)";
    if (registry.Open(MozillaFolder() + "\\registry.dat")) {
      registry.Parse();
      registry.GetValue("Common\\Profiles" + key, value, text);
    }
    return text;
  }
};

TEST_F(Netscape6Test, IsInstalledInVersion6) {
  const std::pair<const char *, int32_t> versions[] = {{"6.2 (ja)", 1}, {"16.0", 1}, {"4.75", 0}, {"6", 0}};
  for (const auto &[version, expected] : versions) {
    InstallNetscape6(version);
    EXPECT_EQ(mail.IsInstall(), expected) << version;
  }
  InstallNetscape6();
  EXPECT_EQ(Told(news, &Netscape6News::GetClientVersion), "1 6.2 (ja)");
  EXPECT_EQ(Told(news, &Netscape6News::GetClientPath), "1 C:\\acctkit-test\\Netscp6.exe");
  EXPECT_EQ(Told(mail, &Netscape6Mail::GetClientName), "1 Netscape6 (Netscape)");
}

TEST_F(Netscape6Test, MakesAProfileWithAFirstMailAccount) {
  std::string key;
  EXPECT_EQ(mail.SetupAccount(SampleMailSpec(), key), 1);
  EXPECT_EQ(key, directory);
  const std::string lists = Pref("mail.smtpserver.smtp1.try_ssl", "0") + Text("mail.smtpservers", "smtp1") +
                            Text("mail.accountmanager.accounts", "account1") + AccountKeys("1");
  const std::string head = Pref("prefs.converted-to-utf8", "true") + lists;
  const std::string rows = Text("mail.accountmanager.defaultaccount", "account1") + AccountLines(MailAccount);
  EXPECT_EQ(GetFile(prefs), head + rows + SmtpLines("smtp1", "smtp.example"));
  EXPECT_FALSE(CreateDirectoryA((directory + "\\mail").c_str(), nullptr)); // exists already
  EXPECT_EQ(Registered("", "CurrentProfile"), Profile);
  EXPECT_EQ(Registered("\\" + Profile, "migrated"), "yes");
  EXPECT_EQ(Registered("\\" + Profile, "directory"), directory);

  // An account with the same user is overwritten, even if the host differs.
  std::string message;
  EXPECT_EQ(mail.IsExistAccount(SampleMailSpec(), key, message), 1);
  EXPECT_EQ(key, directory);
  EXPECT_EQ(message, "同名のプロファイルが存在します。\nプロファイル名：" + Profile + "を上書きしますか？");
  MailAccountSpec spec = SampleMailSpec();
  spec.popServer = "other.example";
  EXPECT_EQ(mail.SetupAccount(spec, key), 1);
  Account moved = MailAccount;
  moved.host = "other.example";
  EXPECT_EQ(GetFile(prefs), head + Text("mail.accountmanager.defaultaccount", "account1") + AccountLines(moved) +
                                SmtpLines("smtp1", "smtp.example"));

  // A new profile with that name gets another folder beside the old one.
  key.clear();
  EXPECT_EQ(mail.SetupAccount(spec, key), 1);
  EXPECT_EQ(key, MozillaFolder() + "\\Users50\\" + Profile + "\\zuvio1.slt");
  EXPECT_EQ(Registered("\\" + Profile, "directory"), key);
}

TEST_F(Netscape6Test, PutsMailAndNewsSideBySide) {
  std::string key;
  EXPECT_EQ(news.SetupAccount(SampleNewsSpec(0), key), 1);
  EXPECT_EQ(news.SetupAccount(SampleNewsSpec(1), key), 1);
  EXPECT_EQ(mail.SetupAccount(SampleMailSpec(), key), 1);
  Account account = MailAccount;
  account.number = "3";
  const std::string before = Pref("prefs.converted-to-utf8", "true") +
                             Text("mail.accountmanager.defaultaccount", "account1") + AccountKeys("1") +
                             AccountLines({"1", "forum-nntp.example", "nntp", ForumName}) + AccountKeys("2") +
                             AccountLines({"2", "square.example", "nntp", SquareName});
  std::string expected = before;
  expected.erase(expected.find(Text("mail.accountmanager.defaultaccount", "account1")),
                 Text("mail.accountmanager.defaultaccount", "account1").size());
  EXPECT_EQ(GetFile(prefs), expected + Text("mail.smtpservers", ",smtp2") +
                                Text("mail.accountmanager.accounts", "account1,account2,account3") + AccountKeys("3") +
                                Text("mail.accountmanager.defaultaccount", "account3") + AccountLines(account) +
                                SmtpLines("smtp2", "smtp.example"));

  // The same server on another host: its account is overwritten, and the default account stays.
  NewsAccountSpec spec = SampleNewsSpec(1);
  spec.newsHosts[1] = "moved.example";
  EXPECT_EQ(news.SetupAccount(spec, key), 1);
  const std::string after = GetFile(prefs).value_or("");
  EXPECT_TRUE(after.ends_with(AccountLines({"2", "moved.example", "nntp", SquareName}) + Remember));
  EXPECT_NE(after.find(Text("mail.accountmanager.defaultaccount", "account3")), std::string::npos);
}

// The SMTP server for "smtp.example", in a profile with another user's account.
TEST_F(Netscape6Test, FindsAnSmtpServer) {
  const auto host = [](const char *key, const char *name) {
    return Text(std::string("mail.smtpserver.") + key + ".hostname", name);
  };
  const std::tuple<const char *, std::string, const char *, const char *> cases[] = {
      {"smtp1,smtp2", host("smtp1", "a") + host("smtp2", "smtp.example"), "smtp2", "smtp1,smtp2"},
      {"smtp1", host("smtp1", "a"), "smtp2", "smtp1,smtp2"},
      {"smtp1,smtp2,smtp3", host("smtp1", "") + host("smtp2", "") + host("smtp3", "a"), "smtp2", "smtp1,smtp2,smtp3"},
      {"smtp1,smtp2", host("smtp1", "a"), "smtp2", "smtp1,smtp2"},
      {"smtp1,smtp2", host("smtp2", "a"), "smtp3", "smtp1,smtp2,smtp3"},
      {"smtp1,smtp3", host("smtp1", "a") + host("smtp3", "b"), "smtp4", "smtp1,smtp3,smtp4"}, // a gap
  };
  for (const auto &[list, hosts, key, listAfter] : cases) {
    SCOPED_TRACE(list + hosts);
    PutFile(prefs, Text("mail.accountmanager.accounts", "account1") + Text("mail.smtpservers", list) + hosts);
    EXPECT_EQ(WriteAccount(mail, SampleMailSpec(), directory), 1);
    const std::string after = GetFile(prefs).value_or("");
    EXPECT_NE(after.find(Text("mail.smtpservers", listAfter)), std::string::npos) << after;
    EXPECT_TRUE(after.ends_with(SmtpLines(key, "smtp.example"))) << after;
  }
}

// The names of a new account if the lists are damaged or unusual.
TEST_F(Netscape6Test, TakesFreeNumbers) {
  const std::string tooLong(300, 'x');
  const std::tuple<std::string, std::string, std::string, std::string, std::string> cases[] = {
      {"account1,account3", "", "account1,account3,account4", "server1", "id1"},
      {"account1", Text("mail.account.account2.server", "server1"), "account1,account3", "server2", "id1"},
      {"", "", ",account2", "server1", "id1"},
      {"a,," + tooLong, "", "a,," + tooLong + ",account4", "server1", "id1"},
      {"account1",
       AccountKeys("1") + Text("mail.server.server1.type", "nntp") + Text("mail.server.server1.userName", "ABC01234"),
       "account1,account2", "server2", "id2"},
      {"account1", Text("mail.account.account1.identities", "id1,id2"), "account1,account2", "server1", "id3"},
      {"account1", Text("mail.server.server1.type", "pop3"), "account1,account2", "server1", "id1"},
  };
  for (const auto &[list, lines, listAfter, server, identity] : cases) {
    SCOPED_TRACE(list + lines);
    PutFile(prefs, Text("mail.accountmanager.accounts", list) + lines);
    EXPECT_EQ(WriteAccount(mail, SampleMailSpec(), directory), 1);
    const std::string after = GetFile(prefs).value_or("");
    const std::string account = listAfter.substr(listAfter.rfind(',') + 1);
    EXPECT_NE(after.find(Text("mail.accountmanager.accounts", listAfter) +
                         Text("mail.account." + account + ".identities", identity) +
                         Text("mail.account." + account + ".server", server)),
              std::string::npos)
        << after;
  }
}

TEST_F(Netscape6Test, SetsUpTheFirstOfSeveralIdentities) {
  const std::string other = Text("mail.identity.id1.useremail", "other@zuvio.example");
  const std::string account = Text("mail.accountmanager.accounts", "account1") +
                              Text("mail.account.account1.identities", "id3,id1") +
                              Text("mail.account.account1.server", "server3");
  PutFile(prefs, account + Text("mail.server.server3.type", "pop3") + Text("mail.server.server3.userName", "ABC01234") +
                     Text("mail.identity.id3.useremail", "old@zuvio.example") + other);
  EXPECT_EQ(WriteAccount(mail, SampleMailSpec(), directory), 1);
  EXPECT_EQ(GetFile(prefs), account + other + Text("mail.smtpservers", ",smtp2") +
                                Text("mail.accountmanager.defaultaccount", "account1") +
                                AccountLines({"3", "pop.example", "pop3", Profile}) +
                                SmtpLines("smtp2", "smtp.example"));
}

TEST_F(Netscape6Test, RefusesWithNothingChanged) {
  const std::string registry = GetFile(MozillaFolder() + "\\registry.dat").value();
  const auto refused = [&](const MailAccountSpec &spec) {
    std::string key;
    EXPECT_EQ(mail.SetupAccount(spec, key), 0);
    EXPECT_EQ(key, "");
    EXPECT_EQ(GetFile(prefs), std::nullopt);
    EXPECT_TRUE(GetFile(MozillaFolder() + "\\registry.dat") == registry);
  };
  for (std::string MailAccountSpec::*field :
       {&MailAccountSpec::userId, &MailAccountSpec::senderName, &MailAccountSpec::smtpServer,
        &MailAccountSpec::popServer, &MailAccountSpec::mailAddress, &MailAccountSpec::accountName}) {
    MailAccountSpec spec = SampleMailSpec();
    (spec.*field).assign(260, 'x');
    refused(spec);
  }
  MailAccountSpec spec = SampleMailSpec();
  spec.senderName.clear();
  for (int count = 0; count < 87; ++count)
    spec.senderName += "\x95\x5c"; // 261 bytes of UTF-8
  refused(spec);
  spec = SampleMailSpec();
  spec.accountName.assign(196, 'p'); // the path of its prefs.js is too long
  refused(spec);
  NewsAccountSpec newsSpec = SampleNewsSpec(0);
  newsSpec.newsServerNames[0].assign(260, 'x');
  EXPECT_EQ(WriteAccount(news, newsSpec), 0);

  // A prefs.js without room stays unchanged. Without a sound profile registry everything does.
  const std::string full = std::string(102400 - 500, '/') + "\n";
  PutFile(prefs, full);
  EXPECT_EQ(WriteAccount(mail, SampleMailSpec(), directory), 0);
  EXPECT_EQ(GetFile(prefs), full);
  PutFile(MozillaFolder() + "\\registry.dat", registry.substr(0, 1000));
  EXPECT_EQ(WriteAccount(news, SampleNewsSpec(0)), 0);
  EXPECT_EQ(GetFile(MozillaFolder() + "\\Users50\\" + Profile + "\\zuvio1.slt\\prefs.js"), std::nullopt);
  EXPECT_EQ(GetFile(MozillaFolder() + "\\registry.dat"), registry.substr(0, 1000));
}

TEST_F(Netscape6Test, FindsNoProfileWithoutItsPrefs) {
  std::string key = "old";
  std::string message = "old";
  MailAccountSpec spec = SampleMailSpec();
  spec.accountName = "default"; // a profile whose directory doesn't exist here
  EXPECT_EQ(mail.IsExistAccount(spec, key, message), 0);
  EXPECT_EQ(key, "");
  EXPECT_EQ(message, "old");

  // A directory without a prefs.js is used again. If prefs.js can't be made, nothing is registered.
  MakeFolders(directory);
  key.clear();
  EXPECT_EQ(mail.SetupAccount(SampleMailSpec(), key), 1);
  EXPECT_EQ(key, directory);
  ResetMachine();
  InstallNetscape6();
  PutFile(MozillaFolder() + "\\Users50\\" + Profile, "a file in the folder's place");
  key.clear();
  EXPECT_EQ(mail.SetupAccount(SampleMailSpec(), key), 0);
  EXPECT_EQ(Registered("", "CurrentProfile"), "Home Office");
}

} // namespace
