#include "wizard/input_rules.h"

#include "clients/service_constants.h"
#include "mfc/cstring.h"
#include "resources/resource.h"
#include "win32/win32.h"

#include <algorithm>
#include <cstring>

// ---- Service IDs ----

namespace {

constexpr size_t IdLength = 8;
constexpr const char *IdPrefix = "ZVK-";

// Half-width kana aren't allowed in an ID, but a run-time library may count them as letters.
bool IsLetter(char byte) {
  const auto character = static_cast<unsigned char>(byte);
  return character < 0x80 && _ismbcalpha(character) != 0;
}
bool IsDigit(char byte) { return _ismbcdigit(static_cast<unsigned char>(byte)) != 0; }

} // namespace

int32_t NormalizeServiceId(std::string &text) {
  CString id = text;
  text.clear();
  CString upper = id;
  upper.MakeUpper();
  if (id.size() == std::strlen(IdPrefix) + IdLength && upper.Find(IdPrefix) == 0)
    id = id.Mid(static_cast<int>(std::strlen(IdPrefix)));
  if (id.size() != IdLength || !std::all_of(id.begin(), id.begin() + 3, IsLetter) ||
      !std::all_of(id.begin() + 4, id.end(), IsDigit))
    return 0;
  if (IsDigit(id[3]))
    id.MakeUpper();
  else if (IsLetter(id[3]))
    id.MakeLower();
  else
    return 0;
  text = id;
  return 1;
}

// ---- Tests ----

namespace {

constexpr int Choice = IDC_CHOICE;
constexpr int FirstField = IDC_FIELD_1;
constexpr int SecondField = IDC_FIELD_2;
constexpr const char *FullWidthSpace = "\x81\x40";

bool IsControl(char byte) { return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F; }
bool IsControlOrWide(char byte) {
  return static_cast<unsigned char>(byte) < 0x20 || static_cast<unsigned char>(byte) >= 0x7F;
}

bool IsEmpty(const std::string &text) { return text.empty(); }
bool HasControlCharacter(const std::string &text) { return std::ranges::any_of(text, IsControl); }
bool HasControlOrWide(const std::string &text) { return std::ranges::any_of(text, IsControlOrWide); }
bool HasBlank(const std::string &text) { return text.find(' ') != std::string::npos; }
bool HasAnySpace(const std::string &text) { return HasBlank(text) || text.find(FullWidthSpace) != std::string::npos; }
bool HasSpaceOrAt(const std::string &text) { return HasAnySpace(text) || text.find('@') != std::string::npos; }
bool HasNoAt(const std::string &text) { return text.find('@') == std::string::npos; }

// Whether the text isn't exactly one name before one of the service's domains.
bool IsForeignHost(const std::string &text) {
  const size_t dot = text.find('.');
  const std::string domain = dot == std::string::npos ? std::string() : text.substr(dot + 1);
  return domain != IspLegacyDomain && domain != IspPrimaryDomain && domain != IspMergedDomain;
}

constexpr const char *NoDomain =
    "ドメインが選択されていません。\nドロップダウンリストボックスからドメインを選択してください。";
constexpr const char *NoAddress = "メールアドレスが入力されていません。\nメールアドレスを入力してください。";
constexpr const char *InvalidAddress = "メールアドレスが無効です。\n正しいメールアドレスを入力してください。";
constexpr const char *WrongHost = "不正なメールアドレスが入力されています。\n正しいメールアドレスを入力してください。";
constexpr const char *WrongAddress = "メールアドレスが不正です。正しいメールアドレスを入力して下さい。";
constexpr const char *WrongSender = "入力できない文字が含まれています。正しい差出人名を入力して下さい。";

#define NO_WIDE "全角または半角カナ文字は使用できません。正しい"
#define NO_BLANK "空白文字（スペース）が存在しています。正しい"
#define TYPE_IT "を入力して下さい。"

} // namespace

const char *const WrongIdMessage = "入力されたＩＤが不正です。\n正しいＩＤを入力してください。";
const char *const NoServerMessage = "会議室が選択されていません。\n会議室を選択してください。";

namespace input_tests {

const Tests MailerDomain = {{IsEmpty, NoDomain, Choice}};
const Tests MailerUser = {{IsEmpty, NoAddress, FirstField}, {HasSpaceOrAt, InvalidAddress, FirstField}};
const Tests MailerSender = {
    {HasControlCharacter, WrongSender, SecondField},
    {IsEmpty, "差出人の名前が入力されていません。\n差出人の名前を入力してください。", SecondField}};

const Tests NewsUser = {{IsEmpty, NoAddress, FirstField}, {HasAnySpace, InvalidAddress, FirstField}};
const Tests NewsSender = {{HasControlCharacter, WrongSender, SecondField},
                          {IsEmpty, "名前が入力されていません。\n名前を入力してください。", SecondField}};

const Tests SecondDomain = {{IsEmpty,
                             "ドメインが選択されていません。\n"
                             "ドロップダウンリストボックスからドメインを選択するか、ドメイン名を入力してください。",
                             Choice}};
const Tests SecondHost = {{IsForeignHost, WrongHost, Choice}};
const Tests SecondUser = {{IsEmpty, NoAddress, FirstField}};

const Tests OriginalAccount = {{HasControlOrWide, NO_WIDE "メールアカウント" TYPE_IT, FirstField},
                               {HasBlank, NO_BLANK "メールアカウント" TYPE_IT, FirstField},
                               {IsEmpty, "メールアカウントが入力されていません。メールアカウント" TYPE_IT, FirstField}};
const Tests OriginalAddress = {{IsEmpty, WrongAddress, FirstField},
                               {HasNoAt, WrongAddress, FirstField},
                               {HasControlOrWide, NO_WIDE "メールアドレス" TYPE_IT, FirstField},
                               {HasBlank, NO_BLANK "メールアドレス" TYPE_IT, FirstField}};
const Tests OriginalSender = {{HasControlCharacter, WrongSender, SecondField},
                              {IsEmpty, "差出人名が入力されていません。差出人名" TYPE_IT, SecondField}};
const Tests OriginalPopServer = {{HasControlOrWide, NO_WIDE "POPサーバー" TYPE_IT, FirstField},
                                 {HasBlank, NO_BLANK "POPサーバー" TYPE_IT, FirstField},
                                 {IsEmpty, "POPサーバーが入力されていません。正しいPOPサーバー" TYPE_IT, FirstField}};
const Tests OriginalSmtpServer = {
    {HasControlOrWide, NO_WIDE "SMTPサーバー" TYPE_IT, SecondField},
    {HasBlank, NO_BLANK "SMTPサーバー" TYPE_IT, SecondField},
    {IsEmpty, "SMTPサーバーが入力されていません。正しいSMTPサーバー" TYPE_IT, SecondField}};

const Tests ShortAlias = {{HasControlOrWide, NO_WIDE "別名" TYPE_IT, FirstField},
                          {HasBlank, NO_BLANK "別名" TYPE_IT, FirstField},
                          {IsEmpty, NoAddress, FirstField}};

#undef NO_WIDE
#undef NO_BLANK
#undef TYPE_IT

} // namespace input_tests

const InputTest *FindRefusal(const input_tests::Tests &tests, const std::string &text) {
  const auto refusal = std::ranges::find_if(tests, [&](const InputTest &test) { return test.refuses(text); });
  return refusal != tests.end() ? &*refusal : nullptr;
}
