// The external mailer through real plug-in libraries: a complete one, one without an entry point, one that refuses.
#include "clients/external_mailer.h"

#include "clients/file_queries.h"
#include "support/client_machine.h"

#include <cstring>
#include <string_view>

namespace {

// The bytes of a name in a version resource.
std::string Wide(std::u16string_view name) { return {reinterpret_cast<const char *>(name.data()), 2 * name.size()}; }

class ExternalMailerTest : public ClientTest {
protected:
  ExternalMailer adapter;

  static std::string Bytes(const MailEnvironment &environment) {
    return {reinterpret_cast<const char *>(&environment), sizeof environment};
  }
};

TEST_F(ExternalMailerTest, HandsTheAccountToThePlugin) {
  const std::string kept = InstallPlugin("plugin_complete");
  ASSERT_EQ(adapter.IsInstall(), 1);
  MailAccountSpec spec = SampleMailSpec();
  EXPECT_EQ(WriteAccount(adapter, spec, "any"), 1);
  MailEnvironment expected{};
  std::strcpy(expected.serviceId, "ABC01234");
  std::strcpy(expected.connectionName, "@zuvioダイヤラ");
  std::strcpy(expected.senderName, "山田 太郎");
  std::strcpy(expected.mailUser, "ABC01234");
  std::strcpy(expected.mailAddress, "taro@zuvio.example");
  std::strcpy(expected.popServer, "pop.example");
  std::strcpy(expected.smtpServer, "smtp.example");
  EXPECT_EQ(Kept(kept), Bytes(expected));

  // In an account of another kind the user isn't the subscriber's ID, and may be longer.
  std::memset(expected.serviceId, 0, sizeof expected.serviceId);
  std::memset(expected.mailUser, 'u', 256);
  for (int32_t MailAccountSpec::*kind : {&MailAccountSpec::secondAccount, &MailAccountSpec::originalDomain}) {
    spec = SampleMailSpec();
    spec.userId.assign(256, 'u');
    spec.*kind = 1;
    EXPECT_EQ(WriteAccount(adapter, spec), 1);
    EXPECT_EQ(Kept(kept), Bytes(expected));
  }
}

TEST_F(ExternalMailerTest, RefusesTextsTooLongWithoutAskingThePlugin) {
  const std::string kept = InstallPlugin("plugin_complete");
  for (std::string MailAccountSpec::*field : {&MailAccountSpec::userId, &MailAccountSpec::smtpServer}) {
    MailAccountSpec spec = SampleMailSpec();
    spec.*field = std::string(field == &MailAccountSpec::userId ? 9 : 257, 'x');
    EXPECT_EQ(WriteAccount(adapter, spec), 0);
  }
  EXPECT_EQ(Kept(kept), "");
}

TEST_F(ExternalMailerTest, ReturnsThePluginsTexts) {
  InstallPlugin("plugin_complete");
  const char *const path = "C:\\acctkit-test\\表\\mailer.exe";
  EXPECT_EQ(Told(adapter, &ExternalMailer::GetClientName), "1 Mailer");
  EXPECT_EQ(Told(adapter, &ExternalMailer::GetClientVersion), "1 7.1.ベータ");
  EXPECT_EQ(Told(adapter, &ExternalMailer::GetClientPath), std::string("1 ") + path);

  // The version in the language that the resource lists; without a list, in a usual language.
  std::string program = GetFile(path).value();
  const size_t block = program.find(Wide(u"041104b0"));
  const size_t list = program.find(Wide(u"Translation"));
  program.replace(list + 26, 4, "\x07\x04\xe4\x04");
  for (const char16_t *language : {u"040704e4", u"041104b0", u"040904b0", u"041103a4", u"040904e4"}) {
    program.replace(block, 16, Wide(language));
    PutFile(path, program);
    EXPECT_EQ(Told(adapter, &ExternalMailer::GetClientVersion), "1 7.1.ベータ") << Wide(language);
    program[list] = 'X';
  }

  PutFile(path, "no program"); // a file without a version
  EXPECT_EQ(adapter.IsInstall(), 1);
  EXPECT_EQ(Told(adapter, &ExternalMailer::GetClientVersion), "1 old");
  SetEnvironment("ACCTKIT_PLUGIN_PATH", "C:\\acctkit-test\\gone.exe");
  EXPECT_EQ(adapter.IsInstall(), 0);
}

TEST_F(ExternalMailerTest, FailsWithoutAPluginThatAnswersOne) {
  for (const char *plugin : {"", "plugin_incomplete", "plugin_refusing", "plugin_throwing"}) {
    if (plugin == std::string("plugin_throwing") && !PluginsCanThrow)
      continue;
    ResetMachine();
    if (*plugin != '\0')
      InstallPlugin(plugin);
    std::string text = "old";
    EXPECT_EQ(adapter.IsInstall(), 0) << plugin;
    EXPECT_EQ(WriteAccount(adapter, SampleMailSpec()), 0) << plugin;
    EXPECT_EQ(adapter.GetClientName(text) + adapter.GetClientPath(text) + adapter.GetClientVersion(text), 0) << plugin;
    EXPECT_EQ(text, "old");
    adapter.FreeMailerLibrary();
  }
}

TEST_F(ExternalMailerTest, IsLoadedOnceAtATime) {
  InstallPlugin("plugin_complete");
  EXPECT_EQ(adapter.FreeMailerLibrary(), 0);
  EXPECT_EQ(adapter.LoadMailerLibrary(), 1);
  EXPECT_EQ(adapter.LoadMailerLibrary(), 0);
  EXPECT_EQ(adapter.SetCompleteFlag(), 7);
  EXPECT_EQ(adapter.FreeMailerLibrary(), 1);
  EXPECT_EQ(adapter.LoadMailerLibrary(), 1);
  adapter.FreeMailerLibrary();

  // A plug-in without one of the functions blocks later loads until it is freed.
  InstallPlugin("plugin_incomplete");
  EXPECT_EQ(adapter.LoadMailerLibrary(), 0);
  EXPECT_EQ(adapter.LoadMailerLibrary(), 0);
  EXPECT_EQ(adapter.FreeMailerLibrary(), 1);
  InstallPlugin("plugin_complete");
  EXPECT_EQ(adapter.LoadMailerLibrary(), 1);
}

} // namespace
