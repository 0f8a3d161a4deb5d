// Outlook Express mail accounts in the registry: the install test, finding an account, writing one.
#include "clients/outlook_express/outlook_express_mail.h"
#include "clients/outlook_express/outlook_express_news.h"

#include "support/client_machine.h"

#include <tuple>

namespace {

using Lines = std::vector<std::string>;

class OutlookExpressTest : public ClientTest {
protected:
  OutlookExpressMail adapter;

  static std::string Account(const std::string &name) { return std::string(AccountsKey) + "\\" + name; }

  // The values of a written account except its title.
  static Lines AccountValues(const std::string &connectionType) {
    return {"Connection Type:4=" + connectionType,
            "Leave Mail On Server:4=01000000",
            "POP3 Prompt for Password:4=00000000",
            "POP3 Server=pop.example",
            "POP3 Skip Account:4=00000000",
            "POP3 User Name=ABC01234",
            "SMTP Display Name=山田 太郎",
            "SMTP Email Address=taro@zuvio.example",
            "SMTP Server=smtp.example"};
  }
  static Lines Titled(Lines values) {
    values.insert(values.begin(), "Account Name=@zuvio(ABC01234)");
    return values;
  }
};

TEST_F(OutlookExpressTest, IsInstalledWithBothKeysAndTheProgram) {
  EXPECT_EQ(adapter.IsInstall(), 0);
  EXPECT_EQ(Told(adapter, &OutlookExpressMail::GetClientName), "0 ");
  InstallOutlookExpress(nullptr);
  EXPECT_EQ(Told(adapter, &OutlookExpressMail::GetClientVersion), "1 4.00.0");
  InstallOutlookExpress("5,50,4522,1200");
  EXPECT_EQ(Told(adapter, &OutlookExpressMail::GetClientVersion), "1 5,50,4522,1200");
  EXPECT_EQ(Told(adapter, &OutlookExpressMail::GetClientPath), "1 C:\\acctkit-test\\msimn.exe");
  const HICON icon = adapter.GetClientIcon();
  EXPECT_NE(icon, nullptr);
  DestroyIcon(icon);

  PutString(HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\msimn.exe", nullptr,
            "C:\\acctkit-test\\gone.exe");
  EXPECT_EQ(adapter.IsInstall(), 0);
  EXPECT_EQ(Told(adapter, &OutlookExpressMail::GetClientPath), "0 ");
  EXPECT_EQ(adapter.GetClientIcon(), nullptr);
}

TEST_F(OutlookExpressTest, WritesANewAccountUnderTheNextNumber) {
  const std::tuple<const char *, const char *, bool> cases[] = {
      {"5,50,1", "03000000", true}, {"4,72,3110,0", "01000000", false}, {"6,4,1", "03000000", true}};
  for (const auto &[version, connectionType, identityWritten] : cases) {
    ResetMachine();
    InstallOutlookExpress(version);
    PutString(HKEY_CURRENT_USER, "Identities", "Default User ID", "{1-2}");
    PutDword(HKEY_CURRENT_USER, ManagerKey, "Account Name", 15);
    EXPECT_EQ(WriteAccount(adapter, SampleMailSpec()), 1);
    EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, Account("0000000f")), Titled(AccountValues(connectionType)));
    EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, ManagerKey),
              (Lines{"Account Name:4=10000000", "Default Mail Account=0000000f"}));
    EXPECT_EQ(GetDword(HKEY_CURRENT_USER, "Software\\Microsoft\\Outlook Express\\Mail", "Message Send HTML"), 0U);
    EXPECT_EQ(GetDword(HKEY_CURRENT_USER, "Identities\\{1-2}\\Software\\Microsoft\\Outlook Express\\5.0\\Mail",
                       "Message Send HTML"),
              identityWritten ? std::optional<DWORD>(0) : std::nullopt);
  }
}

TEST_F(OutlookExpressTest, WritesTheFirstAccountOnAnEmptyMachine) {
  EXPECT_EQ(WriteAccount(adapter, SampleMailSpec()), 1);
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, Account("00000001")), Titled(AccountValues("03000000")));
  EXPECT_EQ(GetDword(HKEY_CURRENT_USER, ManagerKey, "Account Name"), 2U);
  // Without a default identity no identity's settings are written.
  EXPECT_FALSE(KeyThere(HKEY_CURRENT_USER, "Identities"));
}

TEST_F(OutlookExpressTest, OverwritesAnAccountButItsTitleAndTheCounter) {
  PutDword(HKEY_CURRENT_USER, ManagerKey, "Account Name", 9);
  PutString(HKEY_CURRENT_USER, ManagerKey, "Default Mail Account", "00000003");
  MakeKey(HKEY_CURRENT_USER, Account("00000003"));
  PutString(HKEY_CURRENT_USER, Account("00000004"), "Account Name", "mine");
  PutString(HKEY_CURRENT_USER, Account("00000004"), "POP3 Server", "old");
  EXPECT_EQ(WriteAccount(adapter, SampleMailSpec(), "00000004"), 1);
  Lines expected = AccountValues("03000000");
  expected.insert(expected.begin(), "Account Name=mine");
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, Account("00000004")), expected);
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, ManagerKey),
            (Lines{"Account Name:4=09000000", "Default Mail Account=00000003"}));

  // If the default account's key doesn't exist, the written account becomes the default, also an overwritten one.
  PutString(HKEY_CURRENT_USER, ManagerKey, "Default Mail Account", "000000ff");
  EXPECT_EQ(WriteAccount(adapter, SampleMailSpec(), "00000004"), 1);
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, ManagerKey, "Default Mail Account"), "00000004");
}

TEST_F(OutlookExpressTest, RefusesANewsAccountAndTextsTooLongBeforeAnyWrite) {
  PutString(HKEY_CURRENT_USER, Account("00000002"), "NNTP Server", "news.example");
  EXPECT_EQ(WriteAccount(adapter, SampleMailSpec(), "00000002"), 0);
  MailAccountSpec spec = SampleMailSpec();
  spec.senderName.assign(512, 'x');
  EXPECT_EQ(WriteAccount(adapter, spec), 0);
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, Account("00000002")), Lines{"NNTP Server=news.example"});
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, ManagerKey), Lines{});

  spec.senderName.assign(511, 'x');
  EXPECT_EQ(WriteAccount(adapter, spec), 1);
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account("00000001"), "SMTP Display Name"), spec.senderName);
}

TEST_F(OutlookExpressTest, FindsMailAccountsByTitleAndUser) {
  const MailAccountSpec spec = SampleMailSpec();
  const auto put = [&](const char *name, const char *pop, const char *smtp, const std::string &title) {
    for (const auto &[valueName, text] : {std::pair{"POP3 Server", pop}, {"SMTP Server", smtp}})
      if (text != nullptr)
        PutString(HKEY_CURRENT_USER, Account(name), valueName, text);
    PutString(HKEY_CURRENT_USER, Account(name), "Account Name", title);
    PutString(HKEY_CURRENT_USER, Account(name), "POP3 User Name", title == spec.accountName ? spec.userId : "other");
  };
  std::string key = "old";
  std::string message = "old";
  EXPECT_EQ(adapter.IsExistAccount(spec, key, message), 0);

  put("00000001", nullptr, nullptr, spec.accountName);                  // not a mail account
  put("00000002", "", "", spec.accountName);                            // nor is this
  put("00000003", "pop", nullptr, "@ZUVIO(ABC01234)");                  // another title
  put("00000004", std::string(600, 'p').c_str(), "", spec.accountName); // over 512 bytes: counts as missing
  EXPECT_EQ(adapter.IsExistAccount(spec, key, message), 0);
  EXPECT_EQ(adapter.IsExistUser(spec, key, message), 0);
  EXPECT_EQ(key + message, "oldold");

  put("00000005", "", "smtp", spec.accountName);
  put("00000006", "pop", "smtp", spec.accountName);
  EXPECT_EQ(adapter.IsExistAccount(spec, key, message), 1);
  EXPECT_EQ(key, "00000005");
  EXPECT_EQ(message, "同名のアカウントが存在します。\nアカウント名：@zuvio(ABC01234)を上書きしますか？");
  key.clear();
  EXPECT_EQ(adapter.IsExistUser(spec, key, message), 1);
  EXPECT_EQ(key, "00000005");
  EXPECT_EQ(
      message,
      "メールアカウント「ABC01234」の設定は、すでに存在しています。\n\n「OK」ボタンをクリックすると、新たな設定"
      "を追加しますので、同じメールが複数受\n信される可能性があります。新たな設定を追加しない場合は、「キャンセル」"
      "ボタン\nをクリックしてください。");
}

TEST_F(OutlookExpressTest, BecomesTheDefaultClientWithTheValuesOfItsKeys) {
  const std::string client = "SOFTWARE\\Clients\\Mail\\Outlook Express";
  EXPECT_EQ(adapter.SetDefaultClient(), 0);
  EXPECT_FALSE(GetString(HKEY_LOCAL_MACHINE, "SOFTWARE\\Clients\\Mail", nullptr) == "Outlook Express");

  PutString(HKEY_LOCAL_MACHINE, client + "\\Protocols\\mailto\\shell\\open\\command", nullptr,
            "\"%SystemDrive%\\msimn.exe\" /mailurl:%1");
  EXPECT_EQ(adapter.SetDefaultClient(), 1);
  EXPECT_EQ(GetString(HKEY_LOCAL_MACHINE, "SOFTWARE\\Clients\\Mail", nullptr), "Outlook Express");
  EXPECT_EQ(GetString(HKEY_LOCAL_MACHINE, "SOFTWARE\\Classes\\mailto\\shell\\open\\command", nullptr),
            "\"C:\\msimn.exe\" /mailurl:%1");
  EXPECT_FALSE(KeyThere(HKEY_LOCAL_MACHINE, "SOFTWARE\\Classes\\mailto\\DefaultIcon"));
  PutString(HKEY_LOCAL_MACHINE, client + "\\Protocols\\mailto\\DefaultIcon", nullptr, "C:\\acctkit-test");
  EXPECT_EQ(adapter.SetDefaultClient(), 1);
  EXPECT_EQ(GetString(HKEY_LOCAL_MACHINE, "SOFTWARE\\Classes\\mailto\\DefaultIcon", nullptr), "C:\\acctkit-test");
}

TEST_F(OutlookExpressTest, WritesNewsAccountsBesideMailAccounts) {
  OutlookExpressNews news;
  InstallOutlookExpress("4,72,3110,0");
  PutString(HKEY_CURRENT_USER, "Identities", "Default User ID", "{1-2}");
  for (const int32_t server : {0, 1})
    EXPECT_EQ(WriteAccount(news, SampleNewsSpec(server)), 1);
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, ManagerKey), Lines{"Account Name:4=03000000"});
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, Account("00000002")),
            (Lines{"Account Name=@zuvio(ABC01234) カモメ", "Connection Type:4=01000000", "NNTP Display Name=山田 太郎",
                   "NNTP Email Address=taro@zuvio.example", "NNTP Prompt for Password:4=00000000",
                   "NNTP Server=square.example", "NNTP Split Message Size:4=58020000", "NNTP Split Messages:4=01000000",
                   "NNTP User Name=ABC01234"}));
  const Lines settings = {"Cache Delete Message Days:4=ffffffff", "Cache Read Messages:4=00000000",
                          "Message Send HTML:4=00000000"};
  const std::string identity = "Identities\\{1-2}\\Software\\Microsoft\\Outlook Express\\5.0";
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, "Software\\Microsoft\\Outlook Express\\News"), settings);
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, identity + "\\News"), settings);
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, identity), Lines{"Background Compaction:4=01000000"});

  // The search covers titles of both kinds of account; a key of the other kind is refused.
  std::string key;
  std::string message;
  EXPECT_EQ(news.IsExistAccount(SampleNewsSpec(1), key, message), 1);
  EXPECT_EQ(key, "00000002");
  EXPECT_EQ(message, "アカウント名：@zuvio(ABC01234) カモメ");
  EXPECT_EQ(WriteAccount(adapter, SampleMailSpec(), key), 0);
  NewsAccountSpec spec = SampleNewsSpec(0);
  spec.newsHosts[0] = "other.example";
  EXPECT_EQ(WriteAccount(news, spec, "00000001"), 1);
  EXPECT_EQ(GetString(HKEY_CURRENT_USER, Account("00000001"), "NNTP Server"), "other.example");
  PutString(HKEY_CURRENT_USER, Account("00000001"), "POP3 Server", "");
  EXPECT_EQ(news.IsExistAccount(SampleNewsSpec(0), key, message), 1);
  EXPECT_EQ(WriteAccount(news, SampleNewsSpec(0), key), 0);
  spec.newsServerNames[0].assign(512 - 17, 'x');
  EXPECT_EQ(WriteAccount(news, spec), 0);
  EXPECT_EQ(news.IsExistAccount(spec, key, message), 0);
  EXPECT_EQ(GetDword(HKEY_CURRENT_USER, ManagerKey, "Account Name"), 3U);
}

} // namespace
