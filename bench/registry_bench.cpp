// Loading a hive as large as a Wine prefix has, and finding a key in it; opening, reading and closing a registry value
// with the hives loaded, outside of a transaction and within one; the search for a mail account among more and more
// accounts; and more and more new accounts in one transaction.
#include "acctkit/acctkit.h"
#include "clients/registry_key.h"

#include "support/scratch_machine.h"
#include "win32/linux/machine/hive.h"
#include "win32/linux/public/transaction.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>

namespace {

constexpr const char *AccountsKey = "Software\\Microsoft\\Internet Account Manager\\Accounts";

// 3 MB of keys and values like those of a prefix's system.reg.
std::string LargeHive() {
  std::string text = machine::Hive::EmptyText("\\\\Machine");
  for (unsigned number = 0; text.size() < 3'000'000; ++number) {
    char section[512];
    std::snprintf(section, sizeof section,
                  "[Software\\\\Classes\\\\Interface\\\\{%08X-0000-0000-C000-000000000046}] 1000000000\n"
                  "#time=1dd7d23ac556f6e\n@=\"IInterface%u\"\n\"NumMethods\"=dword:%08x\n\n"
                  "[Software\\\\Classes\\\\Interface\\\\{%08X-0000-0000-C000-000000000046}\\\\ProxyStubClsid32] "
                  "1000000000\n#time=1dd7d23ac556f6e\n@=hex(2):25,00,53,00,79,00,73,00,74,00,65,00,6d,00,52,00,6f,\\\n"
                  "  00,6f,00,74,00,25,00,00,00\n\n",
                  number, number, number, number);
    text += section;
  }
  return text;
}

void LoadHive(benchmark::State &state) {
  const std::string text = LargeHive();
  for (auto _ : state) {
    machine::Hive hive;
    if (!hive.Load(text).empty() || hive.Find(hive.Root(), u"Software\\Classes\\Interface") == nullptr)
      state.SkipWithError("the hive is no hive");
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

void ReadServer() {
  char text[RegistryTextSize];
  HKEY key = nullptr;
  DWORD size = sizeof text;
  RegOpenKeyExA(HKEY_CURRENT_USER, AccountsKey, 0, KEY_READ, &key);
  RegQueryValueExA(key, "Server", nullptr, nullptr, reinterpret_cast<BYTE *>(text), &size);
  RegCloseKey(key);
}

void ReadValue(benchmark::State &state) {
  const ScratchMachine machine;
  WriteValuesFullAccess(HKEY_CURRENT_USER, AccountsKey, {{"Server", "pop.example"}});
  for (auto _ : state)
    ReadServer();
}

void ReadValueInTransaction(benchmark::State &state) {
  const ScratchMachine machine;
  WriteValuesFullAccess(HKEY_CURRENT_USER, AccountsKey, {{"Server", "pop.example"}});
  const machine::Transaction transaction(machine::Purpose::Look);
  for (auto _ : state)
    ReadServer();
}

// Writes the accounts into the hive as text, since entering them one by one isn't what this measures.
void WriteAccounts(const std::filesystem::path &folder, int64_t count) {
  std::ofstream hive(folder / "user.reg");
  hive << "WINE REGISTRY Version 2\n;; All keys relative to \\\\User\\\\S-1-5-21-0-0-0-1000\n\n";
  for (int64_t number = 1; number <= count; ++number) {
    char name[16];
    std::snprintf(name, sizeof name, "%08x", static_cast<unsigned>(number));
    hive << "[Software\\\\Microsoft\\\\Internet Account Manager\\\\Accounts\\\\" << name << "] 1000000000\n"
         << "\"Account Name\"=\"account " << name
         << "\"\n\"POP3 Server\"=\"pop.example\"\n\"POP3 User Name\"=\"user\"\n\n";
  }
}

void IsExistMailAccountOver(benchmark::State &state) {
  const ScratchMachine machine;
  WriteAccounts(machine.Folder(), state.range(0));
  const char *const spec[] = {"none", "", "none", "", "", "", "", "", nullptr};
  char key[ACCTKIT_KEY_SIZE] = "";
  char message[ACCTKIT_MESSAGE_SIZE];
  for (auto _ : state)
    benchmark::DoNotOptimize(IsExistMailAccount(0, spec, key, message));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void NewAccountsInOneTransaction(benchmark::State &state) {
  for (auto _ : state) {
    state.PauseTiming();
    const ScratchMachine machine;
    state.ResumeTiming();
    machine::Transaction transaction;
    for (int64_t number = 0; number < state.range(0); ++number) {
      const std::string user = "user" + std::to_string(number);
      const char *const spec[] = {user.c_str(),  "name",        user.c_str(), "",     "smtp.example",
                                  "pop.example", "a@b.example", "dialer",     nullptr};
      SetupMailAccount(0, spec, "");
    }
    transaction.Commit();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(LoadHive)->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadValue)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(ReadValueInTransaction)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(NewAccountsInOneTransaction)->RangeMultiplier(10)->Range(10, 1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(IsExistMailAccountOver)->RangeMultiplier(10)->Range(10, 10000)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
