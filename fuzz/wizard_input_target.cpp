// What the wizards take in: service.ini, whose domains are those of its keys, the list of IDs, which is read whole and
// not beyond, and typed texts, of which a field lets only those pass that the clients can store. The text is
// service.ini, the commands are the rest.
#include "clients/service_constants.h"
#include "win32/linux/text/code_page.h"
#include "wizard/id_list.h"
#include "wizard/input_rules.h"
#include "wizard/service_ini.h"

#include "fuzzing.h"
#include "support/scratch_machine.h"

#include <cstring>

namespace {

const ScratchMachine Machine;

std::string TakeText(FuzzedDataProvider &input, size_t longest) {
  const std::string text = input.ConsumeRandomLengthString(longest);
  return text.substr(0, text.find('\0'));
}

// ---- service.ini ----

std::string Value(const char *section, const std::string &key) {
  char value[256] = "";
  GetPrivateProfileStringA(section, key.c_str(), "", value, sizeof value, "C:\\service.ini");
  return value;
}

void ReadSettings(const std::string &settings) {
  Machine.PutFile("service.ini", settings);
  setenv("ACCTKIT_PROGRAM", "C:\\program.exe", 1);
  for (const char *section : {MailSection, SecondMailSection, NewsSection}) {
    const std::vector<std::string> domains = ReadDomains(section);
    for (size_t index = 0; index < domains.size(); ++index)
      REQUIRE(!domains[index].empty() && domains[index] == Value(section, "disp" + std::to_string(index + 1)));
    const long highest = std::strtol(Value(section, "server_max").c_str(), nullptr, 10);
    const auto count = static_cast<long>(domains.size());
    REQUIRE(count <= std::max(highest, 0L));
    REQUIRE(count >= highest || Value(section, "disp" + std::to_string(count + 1)).empty());
  }
}

// The folder of a program with any path, in a buffer of any size.
void FindProgramFolder(FuzzedDataProvider &input) {
  const std::string program = TakeText(input, 300);
  setenv("ACCTKIT_PROGRAM", program.c_str(), 1);
  char path[1024];
  GetModuleFileNameA(nullptr, path, sizeof path);
  std::vector<char> folder(input.ConsumeIntegralInRange<size_t>(1, 300), 'x');
  REQUIRE(GetProgramFolder(folder.data(), static_cast<DWORD>(folder.size())) == 1);
  const size_t length = strnlen(folder.data(), folder.size());
  REQUIRE(length < folder.size() && std::string_view(path).starts_with(folder.data()));
  if (std::strlen(path) < folder.size()) {
    const std::u16string whole = text::ToWide(path);
    const size_t end = whole.rfind(u'\\') + 1; // 0 without one
    REQUIRE(text::ToWide(folder.data()) == (end == 0 ? whole : whole.substr(0, end)));
  }
  const std::string settings = ServiceIniPath();
  REQUIRE(settings.empty() || (settings.size() < MAX_PATH && settings.ends_with("service.ini")));
}

// ---- The list of IDs ----

void ReadIdList(FuzzedDataProvider &input) {
  std::string bytes = input.ConsumeRandomLengthString(100) + std::string(2, '\0');
  const std::vector<char> list(bytes.begin(), bytes.end()); // whose end ASan watches
  const std::string id = TakeText(input, 9);
  WizardData data;
  FillIds(data, id.c_str(), list.data());

  std::string listed = bytes.substr(0, bytes.find(std::string(2, '\0'))) + '\0';
  if (listed.starts_with('\0'))
    listed.erase(0, 1);
  const int spare = data.ids.GetSize() - 1;
  std::string read;
  for (int index = 0; index < spare; ++index) {
    REQUIRE(!data.ids[index].IsEmpty());
    read += data.ids[index] + '\0';
  }
  REQUIRE(read == listed && data.ids[spare].IsEmpty());
  REQUIRE(data.currentId >= 0 && data.currentId <= spare);
  for (int index = 0; index <= spare; ++index)
    REQUIRE(data.ids[index] != id || (data.CurrentId() == id && data.currentId <= index));
}

// ---- Typed texts ----

bool HasOnly(const std::string &text, char first, char last) {
  return std::all_of(text.begin(), text.end(), [&](char byte) { return byte >= first && byte <= last; });
}
bool Has(const std::string &text, const char *part) { return text.find(part) != std::string::npos; }

bool IsAnything(const std::string &text) { return !text.empty(); }
bool IsName(const std::string &text) {
  return !text.empty() &&
         std::none_of(text.begin(), text.end(), [](char byte) { return (byte >= 0 && byte < ' ') || byte == '\x7F'; });
}
bool IsAsciiWord(const std::string &text) { return !text.empty() && HasOnly(text, '!', '~'); }
bool IsAddress(const std::string &text) { return IsAsciiWord(text) && Has(text, "@"); }
bool HasNoSpace(const std::string &text) { return !text.empty() && !Has(text, " ") && !Has(text, "\x81\x40"); }
bool IsUser(const std::string &text) { return HasNoSpace(text) && !Has(text, "@"); }
bool IsHost(const std::string &text) {
  for (const char *domain : {IspPrimaryDomain, IspLegacyDomain, IspMergedDomain})
    if (text.ends_with(std::string(".") + domain) && text.find('.') == text.size() - std::strlen(domain) - 1)
      return true;
  return false;
}

// Each field, and the texts that it lets pass.
const struct {
  const input_tests::Tests &tests;
  bool (*passes)(const std::string &text);
} Fields[] = {
    {input_tests::MailerDomain, IsAnything},
    {input_tests::MailerUser, IsUser},
    {input_tests::MailerSender, IsName},
    {input_tests::NewsUser, HasNoSpace},
    {input_tests::NewsSender, IsName},
    {input_tests::SecondDomain, IsAnything},
    {input_tests::SecondHost, IsHost},
    {input_tests::SecondUser, IsAnything},
    {input_tests::OriginalAccount, IsAsciiWord},
    {input_tests::OriginalAddress, IsAddress},
    {input_tests::OriginalSender, IsName},
    {input_tests::OriginalPopServer, IsAsciiWord},
    {input_tests::OriginalSmtpServer, IsAsciiWord},
    {input_tests::ShortAlias, IsAsciiWord},
};

void TestFields(const std::string &text) {
  for (const auto &field : Fields) {
    const InputTest *const refusal = FindRefusal(field.tests, text);
    REQUIRE((refusal == nullptr) == field.passes(text));
    REQUIRE(refusal == nullptr || (refusal->refuses(text) && *refusal->message != '\0' && refusal->control != 0));
  }
}

// An ID is eight letters and digits of one of two kinds, whichever case it was typed in.
void TestId(const std::string &typed) {
  const auto inCase = [](std::string text, char first, char last) {
    for (char &byte : text)
      if (byte >= first && byte <= last)
        byte = static_cast<char>(byte ^ 0x20);
    return text;
  };
  const auto isId = [](const std::string &text, size_t letters, char first, char last) {
    return text.size() == 8 && HasOnly(text.substr(0, letters), first, last) && HasOnly(text.substr(letters), '0', '9');
  };
  std::string bare = typed;
  if (typed.size() == 12 && inCase(typed.substr(0, 4), 'a', 'z') == "ZVK-")
    bare.erase(0, 4);
  const std::string upper = inCase(bare, 'a', 'z');
  const std::string lower = inCase(bare, 'A', 'Z');
  const std::string wanted = isId(upper, 3, 'A', 'Z') ? upper : isId(lower, 4, 'a', 'z') ? lower : "";
  std::string id = typed;
  REQUIRE(NormalizeServiceId(id) == !wanted.empty() && id == wanted);
  REQUIRE(NormalizeServiceId(id) == !wanted.empty() && id == wanted);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  TextAndCommands input(data, size);
  ReadSettings(input.text);
  ReadIdList(input.commands);
  const std::string typed = TakeText(input.commands, 100);
  TestId(typed);
  TestFields(typed);
  if (const size_t at = typed.find('\n'); at != std::string::npos) // a host below one of the domains
    TestFields(typed.substr(0, at) + "." +
               input.commands.PickValueInArray({IspPrimaryDomain, IspLegacyDomain, IspMergedDomain}));
  FindProgramFolder(input.commands);
  return 0;
}
