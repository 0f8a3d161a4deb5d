// The operations on a prefs.js of 100,000 bytes, each compared with the plain memory or file operation on the same
// bytes.
#include "stores/prefs_file.h"

#include "support/scratch_machine.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr size_t Size = 100000;
constexpr const char *LastKey = "mail.pop_name";
const std::string LastLine = "user_pref(\"mail.pop_name\", \"ABC01234\");\n";

// Lines as a client writes them; the line that is searched for is the last.
std::string SampleText() {
  std::string text;
  for (int number = 0; text.size() < Size - LastLine.size() - 80; ++number)
    text +=
        "user_pref(\"mail.server.server" + std::to_string(number) + ".directory\", \"C:\\\\Mail\\\\pop.example\");\n";
  text += "//" + std::string(Size - LastLine.size() - text.size() - 3, 'x') + "\n";
  return text + LastLine;
}

std::unique_ptr<PrefsText> SamplePrefs() {
  auto prefs = std::make_unique<PrefsText>();
  AppendPrefLine(*prefs, SampleText().c_str());
  return prefs;
}

void Find(benchmark::State &state) {
  const auto prefs = SamplePrefs();
  for (auto _ : state)
    benchmark::DoNotOptimize(HasPrefText(LastKey, *prefs));
}
void FindPlain(benchmark::State &state) {
  const auto prefs = SamplePrefs();
  for (auto _ : state)
    benchmark::DoNotOptimize(memmem(prefs->text, prefs->length, LastKey, std::strlen(LastKey)));
}

// Removes a line in the middle and appends it again; compared with finding it and moving the bytes after it.
void RemoveAndAppend(benchmark::State &state) {
  const auto prefs = SamplePrefs();
  AppendPrefLine(*prefs, "\n");
  for (auto _ : state) {
    RemovePrefLine(LastKey, *prefs);
    AppendPrefLine(*prefs, LastLine.c_str());
  }
}
void RemoveAndAppendPlain(benchmark::State &state) {
  const auto prefs = SamplePrefs();
  const auto copy = std::make_unique<PrefsText>();
  for (auto _ : state) {
    benchmark::DoNotOptimize(memmem(prefs->text, prefs->length, LastKey, std::strlen(LastKey)));
    std::memcpy(copy->text, prefs->text, prefs->length);
    benchmark::ClobberMemory();
  }
}

// Removing the first line moves all other bytes.
void RemoveFirst(benchmark::State &state) {
  const auto prefs = SamplePrefs();
  const auto work = std::make_unique<PrefsText>();
  for (auto _ : state) {
    *work = *prefs;
    RemovePrefLine("server0.directory", *work);
    benchmark::ClobberMemory();
  }
}
void RemoveFirstPlain(benchmark::State &state) {
  const auto prefs = SamplePrefs();
  const auto work = std::make_unique<PrefsText>();
  for (auto _ : state) {
    *work = *prefs;
    std::memcpy(work->text, prefs->text + 70, prefs->length - 70);
    benchmark::ClobberMemory();
  }
}

void Load(benchmark::State &state) {
  const ScratchMachine machine;
  auto prefs = SamplePrefs();
  SavePrefsText("C:\\prefs.js", *prefs);
  for (auto _ : state)
    LoadPrefsText("C:\\prefs.js", *prefs);
}
void LoadPlain(benchmark::State &state) {
  const ScratchMachine machine;
  auto prefs = SamplePrefs();
  SavePrefsText("C:\\prefs.js", *prefs);
  const std::string path = machine.Folder() / "drive_c/prefs.js";
  for (auto _ : state) {
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    benchmark::DoNotOptimize(read(file, prefs->text, PrefsCapacity));
    close(file);
  }
}

void Save(benchmark::State &state) {
  const ScratchMachine machine;
  const auto prefs = SamplePrefs();
  for (auto _ : state)
    SavePrefsText("C:\\prefs.js", *prefs);
}
// The usual way to replace a whole file: write another one and rename it.
void SavePlain(benchmark::State &state) {
  const ScratchMachine machine;
  const auto prefs = SamplePrefs();
  const std::string path = machine.Folder() / "drive_c/prefs.js";
  const std::string other = path + ".new";
  for (auto _ : state) {
    const int file = open(other.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    benchmark::DoNotOptimize(write(file, prefs->text, prefs->length));
    close(file);
    rename(other.c_str(), path.c_str());
  }
}

BENCHMARK(Find);
BENCHMARK(FindPlain);
BENCHMARK(RemoveAndAppend);
BENCHMARK(RemoveAndAppendPlain);
BENCHMARK(RemoveFirst);
BENCHMARK(RemoveFirstPlain);
BENCHMARK(Load);
BENCHMARK(LoadPlain);
BENCHMARK(Save);
BENCHMARK(SavePlain);

} // namespace

BENCHMARK_MAIN();
