// Opening, reading and closing a registry value with the hives loaded, outside of a transaction and within one; the
// search for a mail account among more and more accounts; and more and more new accounts in one transaction.
#include "acctkit/acctkit.h"
#include "clients/registry_key.h"

#include "support/scratch_machine.h"
#include "win32/linux/public/transaction.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>

namespace {

constexpr const char *AccountsKey = "Software\\Microsoft\\Internet Account Manager\\Accounts";

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

BENCHMARK(ReadValue)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(ReadValueInTransaction)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(NewAccountsInOneTransaction)->RangeMultiplier(10)->Range(10, 1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(IsExistMailAccountOver)->RangeMultiplier(10)->Range(10, 10000)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
