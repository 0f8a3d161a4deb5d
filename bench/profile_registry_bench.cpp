// registry.dat with more and more profiles: reading it, finding a profile, entering one, and the memory needed. Also
// writing an account into a large prefs.js of Netscape 6.
#include "clients/netscape6/netscape6_mail.h"
#include "stores/profile_registry.h"
#include "stores/registry_dat.h"

#include "support/scratch_machine.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr const char *Path = "C:\\registry.dat";

// The values that the client itself stores for each profile, besides our two.
constexpr std::initializer_list<const char *> OwnValues = {"NCProfileName", "NCServiceDenial", "NCEmailAddress",
                                                           "NCHavePregInfo"};

// Writes a registry as a client has it.
void WriteRegistry(const std::filesystem::path &folder, int64_t profiles,
                   std::initializer_list<const char *> ownValues = OwnValues) {
  std::ofstream(folder / "drive_c/registry.dat", std::ios::binary) << NewRegistryDat();
  ProfileRegistry registry;
  registry.Open(Path);
  registry.Parse();
  const int32_t list = registry.AddKey(registry.AddKey(0, "Common"), "Profiles");
  for (int64_t number = 0; number < profiles; ++number) {
    const std::string name = "profile" + std::to_string(number);
    const int32_t profile = registry.AddKey(list, name);
    registry.SetValue(profile, "migrated", "yes");
    for (const char *value : ownValues)
      registry.SetValue(profile, value, "");
    registry.SetValue(profile, "directory",
                      "C:\\WINDOWS\\Application Data\\Mozilla\\Users50\\" + name + "\\4x7q2k1m.slt");
  }
  registry.Save();
}

void Enter(ProfileRegistry &registry, const std::string &name) {
  const int32_t list = registry.AddKey(registry.AddKey(0, "Common"), "Profiles");
  registry.SetValue(list, "CurrentProfile", name);
  const int32_t profile = registry.AddKey(list, name);
  registry.SetValue(profile, "migrated", "yes");
  registry.SetValue(profile, "directory", "C:\\WINDOWS\\Application Data\\Mozilla\\Users50\\zuvio0.slt");
}

void OpenAndParse(benchmark::State &state) {
  const ScratchMachine machine;
  WriteRegistry(machine.Folder(), state.range(0));
  size_t size = 0;
  for (auto _ : state) {
    ProfileRegistry registry;
    registry.Open(Path);
    registry.Parse();
    size = registry.ImageLength();
    benchmark::DoNotOptimize(registry.NodeCount());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(size));
}

void FindPath(benchmark::State &state) {
  const ScratchMachine machine;
  WriteRegistry(machine.Folder(), state.range(0));
  ProfileRegistry registry;
  registry.Open(Path);
  registry.Parse();
  const std::string path = "Common\\Profiles\\profile" + std::to_string(state.range(0) - 1);
  for (auto _ : state)
    benchmark::DoNotOptimize(registry.FindPath(path, "directory"));
}

// Only the edits; the other benchmarks measure reading and writing the file.
void EnterProfile(benchmark::State &state) {
  const ScratchMachine machine;
  WriteRegistry(machine.Folder(), state.range(0));
  ProfileRegistry registry;
  registry.Open(Path);
  registry.Parse();
  int64_t number = state.range(0);
  for (auto _ : state)
    Enter(registry, "profile" + std::to_string(number++));
}

// All steps, on files with the two values per profile that an early client stores: 20 kB, 200 kB and 1 MB.
void EnterOneProfile(benchmark::State &state) {
  const ScratchMachine machine;
  WriteRegistry(machine.Folder(), state.range(0), {});
  const std::filesystem::path file = machine.Folder() / "drive_c/registry.dat";
  const std::filesystem::path before = machine.Folder() / "before.dat";
  std::filesystem::copy(file, before);
  for (auto _ : state) {
    state.PauseTiming();
    std::filesystem::copy_file(before, file, std::filesystem::copy_options::overwrite_existing);
    state.ResumeTiming();
    ProfileRegistry registry;
    registry.Open(Path);
    registry.Parse();
    Enter(registry, "zuvio");
    if (registry.Save() != 1)
      state.SkipWithError("not written");
  }
  state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(before));
}

// A file of 100,000 bytes with 100 accounts; the written account isn't among them.
void WriteAccountAmong100(benchmark::State &state) {
  const ScratchMachine machine;
  std::string list = "account1";
  std::string text;
  for (int number = 1; number <= 100; ++number) {
    const std::string digits = std::to_string(number);
    if (number > 1)
      list += ",account" + digits;
    text += "user_pref(\"mail.account.account" + digits + ".identities\", \"id" + digits + "\");\n" +
            "user_pref(\"mail.account.account" + digits + ".server\", \"server" + digits + "\");\n" +
            "user_pref(\"mail.identity.id" + digits + ".useremail\", \"user@company.example\");\n" +
            "user_pref(\"mail.server.server" + digits + ".hostname\", \"pop.company.example\");\n" +
            "user_pref(\"mail.server.server" + digits + ".type\", \"pop3\");\n" + "user_pref(\"mail.server.server" +
            digits + ".userName\", \"user" + digits + "\");\n";
  }
  text = "user_pref(\"mail.accountmanager.accounts\", \"" + list + "\");\n" + text;
  for (int number = 0; text.size() < 99900; ++number)
    text += "user_pref(\"browser.history.entry" + std::to_string(number) + "\", \"http://www.example/\");\n";
  MailAccountSpec spec;
  spec.userId = "ABC01234";
  spec.smtpServer = spec.popServer = "mail.example";
  Netscape6Mail adapter;
  std::string key = "C:\\profile";
  std::filesystem::create_directories(machine.Folder() / "drive_c/profile");
  for (auto _ : state) {
    state.PauseTiming();
    std::ofstream(machine.Folder() / "drive_c/profile/prefs.js", std::ios::binary) << text;
    state.ResumeTiming();
    if (adapter.SetupAccount(spec, key) != 1)
      state.SkipWithError("not written");
  }
}

BENCHMARK(OpenAndParse)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(FindPath)->Arg(1000)->Arg(10000);
BENCHMARK(EnterProfile)->Arg(1000)->Arg(10000);
BENCHMARK(EnterOneProfile)->Arg(100)->Arg(1000)->Arg(5000)->Unit(benchmark::kMicrosecond);
BENCHMARK(WriteAccountAmong100)->Unit(benchmark::kMicrosecond);

} // namespace

// `profile_registry_bench --memory N` reads a registry of N profiles once and prints the peak beside the file's size.
int main(int count, char **arguments) {
  if (count == 3 && std::string(arguments[1]) == "--memory") {
    const ScratchMachine machine;
    const std::string profiles = arguments[2];
    if (const pid_t child = fork(); child == 0) {
      WriteRegistry(machine.Folder(), std::stoll(profiles));
      _exit(0);
    } else {
      waitpid(child, nullptr, 0);
    }
    rusage before{};
    rusage after{};
    getrusage(RUSAGE_SELF, &before);
    ProfileRegistry registry;
    registry.Open(Path);
    registry.Parse();
    getrusage(RUSAGE_SELF, &after);
    const auto size = static_cast<double>(registry.ImageLength());
    std::printf("%s profiles, a file of %.1f MB: peak memory %.1f times that\n", profiles.c_str(), size / 1e6,
                static_cast<double>(after.ru_maxrss - before.ru_maxrss) * 1024 / size);
    return 0;
  }
  benchmark::Initialize(&count, arguments);
  benchmark::RunSpecifiedBenchmarks();
}
