// The wizards' data and rules: the service's settings, the rules of the fields, and the installed clients.
#include "wizard/client_finder.h"
#include "wizard/input_rules.h"
#include "wizard/service_ini.h"

#include "clients/service_constants.h"
#include "support/client_machine.h"

#include <tuple>

namespace {

class ServiceIniTest : public MachineTest {
protected:
  // In the folder of the running program, which on Windows is the suite itself.
  static void PutSettings(const std::string &text) { PutFile(ServiceIniPath(), text); }
};

TEST_F(ServiceIniTest, ListsDomainsUpToTheHighestNumberOrTheFirstGap) {
  const std::string domains = "disp1=one\r\ndisp2 = two \r\ndisp3=three\r\n";
  const std::pair<std::string, std::vector<std::string>> cases[] = {
      {"server_max=5\r\n" + domains, {"one", "two", "three"}},
      {"server_max=2\r\n" + domains, {"one", "two"}},
      {"server_max=99999999999999999999\r\n" + domains, {"one", "two", "three"}},
      {"server_max= +2nd\r\n" + domains, {"one", "two"}},
      {"server_max=many\r\n" + domains, {}},
      {domains, {}},
      {"server_max=3\r\ndisp1=one\r\ndisp2=\r\ndisp3=three\r\n", {"one"}},
      {"server_max=1\r\ndisp1=" + std::string(100000, 'x') + "\r\n", {std::string(255, 'x')}},
  };
  for (const auto &[settings, listed] : cases) {
    PutSettings("[OTHER]\r\nserver_max=9\r\n[mail_server]\r\n" + settings);
    EXPECT_EQ(ReadDomains(MailSection), listed) << settings.substr(0, 80);
  }
  std::string text = "old";
  EXPECT_EQ(ReadServiceString("C:\\acctkit-test\\none.ini", MailSection, "disp1", text), 0);
  EXPECT_EQ(text, "");
  PutSettings("");
}

TEST(ServiceIds, HaveTwoForms) {
  const std::pair<std::string, std::string> cases[] = {{"abc01234", "ABC01234"},
                                                       {"ABCD1234", "abcd1234"},
                                                       {"ZVK-abc01234", "ABC01234"},
                                                       {"zvk-abcD1234", "abcd1234"},
                                                       {"abc012345", ""},
                                                       {"ab101234", ""},
                                                       {"abc0123x", ""}};
  for (const auto &[typed, id] : cases) {
    std::string text = typed;
    EXPECT_EQ(NormalizeServiceId(text), id.empty() ? 0 : 1) << typed;
    EXPECT_EQ(text, id) << typed;
  }
}

// The tests that no script covers.
TEST(InputRules, GiveTheMessageOfTheFirstTestThatRefuses) {
  using namespace input_tests;
  // What is typed, and how the message begins.
  const std::tuple<const Tests &, std::string, const char *> cases[] = {
      {SecondHost, IspPrimaryDomain, "不正なメールアドレス"},
      {OriginalAddress, "\xb1\xb2", "メールアドレスが不正です。"}, // half-width kana without an at sign
      {OriginalAddress, "\xb1@b", "全角または半角カナ文字"},
      {OriginalSmtpServer, "", "SMTPサーバーが入力されていません。正しいSMTPサーバー"},
      {ShortAlias, "", "メールアドレスが入力されていません。"},
  };
  for (const auto &[tests, text, begins] : cases) {
    const InputTest *const refusal = FindRefusal(tests, text);
    ASSERT_NE(refusal, nullptr) << text;
    EXPECT_TRUE(std::string(refusal->message).starts_with(begins)) << text;
  }
}

using ClientFinderTest = ClientTest;

TEST_F(ClientFinderTest, KeepsEveryClientAtItsIndex) {
  ClientFinder finder;
  MailClients mail;
  NewsClients news;
  EXPECT_EQ(finder.HasMailClient(), 0);
  EXPECT_EQ(finder.FindMailClients(mail), 0);
  InstallOutlookExpress("5,50,1");
  InstallNetscape6();
  EXPECT_EQ(finder.FindMailClients(mail), 1);
  EXPECT_EQ(finder.FindNewsClients(news), 1);
  EXPECT_TRUE(!mail[0] && mail[1]->GetClientType() == ClientOutlookExpress && !mail[2] &&
              mail[3]->GetClientType() == ClientNetscape6);
  EXPECT_TRUE(news[0]->GetClientType() == ClientOutlookExpress && !news[1] &&
              news[2]->GetClientType() == ClientNetscape6);
}

} // namespace
