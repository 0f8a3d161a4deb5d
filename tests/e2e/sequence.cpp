// One sequence of calls to the adapters of all clients, so that the results on both platforms can be compared: two news
// servers, overwriting, a second profile, mail besides news, Japanese names. Prints each result and the final key.
#include "clients/communicator/communicator_mail.h"
#include "clients/communicator/communicator_news.h"
#include "clients/netscape6/netscape6_mail.h"
#include "clients/netscape6/netscape6_news.h"
#include "clients/outlook_express/outlook_express_mail.h"
#include "clients/outlook_express/outlook_express_news.h"

#include <cstdio>

namespace {

template <typename Client, typename Spec> void Write(const char *what, Client &client, const Spec &spec) {
  std::string key;
  std::string message;
  const int32_t found = client.IsExistAccount(spec, key, message);
  if (found == 0)
    key.clear();
  const int32_t written = client.SetupAccount(spec, key);
  std::printf("%s: found %d, written %d, key \"%s\"\n", what, static_cast<int>(found), static_cast<int>(written),
              key.c_str());
}

template <typename Mail, typename News> void Run(const char *name, const char *title) {
  Mail mail;
  News news;
  std::string text;
  std::printf("%s: installed %d", name, static_cast<int>(news.IsInstall()));
  std::printf(", version %d %s\n", static_cast<int>(mail.GetClientVersion(text)), text.c_str());

  NewsAccountSpec newsSpec;
  newsSpec.userId = "ABC01234";
  newsSpec.senderName = "表示 ソフト";
  newsSpec.accountName = title;
  newsSpec.newsHosts = {"forum-news.zuvio.example", "square-news.zuvio.example"};
  newsSpec.newsServerNames = {"@zuvio(QZX00000) フォーラム会議室", "@zuvio(QZX00000) カモメ（web会議室）"};
  newsSpec.mailAddress = "abc01234@mail.zuvio.example";
  newsSpec.newsServerOn = {1, 1};
  for (newsSpec.serverIndex = 0; newsSpec.serverIndex < 2; ++newsSpec.serverIndex)
    Write("news", news, newsSpec);

  MailAccountSpec mailSpec;
  mailSpec.userId = "ABC01234";
  mailSpec.senderName = "能力 \xb1\xb2\xb3";
  mailSpec.accountName = title;
  mailSpec.smtpServer = "smtp.zuvio.example";
  mailSpec.popServer = "pop.zuvio.example";
  mailSpec.mailAddress = "abc01234@mail.zuvio.example";
  Write("mail", mail, mailSpec);
  mailSpec.popServer = "pop2.zuvio.example";
  Write("mail again", mail, mailSpec);
  mailSpec.accountName = "能ソ表";
  mailSpec.smtpServer = "smtp2.zuvio.example";
  Write("second profile", mail, mailSpec);
  newsSpec.accountName = "能ソ表";
  newsSpec.serverIndex = 1;
  Write("news beside mail", news, newsSpec);
  newsSpec.newsHosts[1] = "moved.zuvio.example";
  Write("news again", news, newsSpec);
}

} // namespace

int main() {
  Run<OutlookExpressMail, OutlookExpressNews>("Outlook Express", "@zuvio(ABC01234)");
  Run<CommunicatorMail, CommunicatorNews>("Communicator", "@zuvio(ABC01234)");
  Run<Netscape6Mail, Netscape6News>("Netscape 6", "山田太郎");
}
