// Untrusted INI files: the answer to a query fits the buffer, is terminated, and is the same for every size of the
// buffer except at its end. The text is the file, the commands choose the query.
#include "win32/win32.h"

#include "fuzzing.h"
#include "support/scratch_machine.h"

#include <cstring>

namespace {

const ScratchMachine Machine;
constexpr const char *Path = "C:\\service.ini";

// Queries with a buffer of exactly that size, whose end ASan watches.
std::string Ask(const char *section, const char *key, const char *fallback, size_t size) {
  std::vector<char> buffer(size, 'x');
  const DWORD length = GetPrivateProfileStringA(section, key, fallback, buffer.data(), static_cast<DWORD>(size), Path);
  REQUIRE(length < size);
  REQUIRE(buffer[length] == '\0');
  REQUIRE(std::strlen(buffer.data()) <= length);
  return {buffer.data(), length};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  TextAndCommands input(data, size);
  Machine.PutFile("service.ini", input.text);
  const std::string typedSection = input.commands.ConsumeRandomLengthString(20);
  const std::string typedKey = input.commands.ConsumeRandomLengthString(20);
  const std::string fallback = input.commands.ConsumeRandomLengthString(20);
  const size_t small = input.commands.ConsumeIntegralInRange<size_t>(1, 40);
  for (const char *section : {"MAIL_SERVER", typedSection.c_str()})
    for (const char *key : {"server_max", "disp1", typedKey.c_str()}) {
      const std::string whole = Ask(section, key, fallback.c_str(), 40000);
      const std::string cut = Ask(section, key, fallback.c_str(), small);
      REQUIRE(whole.starts_with(cut)); // which is whole characters
    }
  return 0;
}
