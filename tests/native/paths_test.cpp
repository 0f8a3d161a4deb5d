// Where paths of the machine lead on disk, and that none leads out of the machine.
#include "support/test_machine.h"

#include "stores/file_handle.h"
#include "win32/linux/public/machine.h"
#include "wizard/service_ini.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

class PathsTest : public MachineTest {
protected:
  static fs::path Drive() { return machine::Folder() / "drive_c"; }
};

TEST_F(PathsTest, NoPathLeadsOutOfTheMachine) {
  std::ofstream(machine::Folder() / "outside") << "secret";
  const fs::path elsewhere = fs::temp_directory_path() / ("acctkit-outside-" + std::to_string(getpid()));
  std::ofstream(elsewhere) << "secret";
  fs::create_symlink(elsewhere, Drive() / "link");
  fs::create_directory_symlink("/", Drive() / "root");
  fs::create_symlink("nowhere", Drive() / "dangling");
  fs::create_symlink("loop", Drive() / "loop");
  for (const char *path : {"C:\\..\\outside", "C:\\acctkit-test\\..\\..\\outside", "C:\\link", "C:\\root\\etc\\passwd",
                           "C:\\dangling", "C:\\loop", "\\\\host\\share\\file", "Z:\\etc\\passwd", "relative"}) {
    SCOPED_TRACE(path);
    for (const DWORD disposition : {OPEN_EXISTING, OPEN_ALWAYS, CREATE_ALWAYS}) {
      FileHandle file(CreateFileA(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, disposition, 0, nullptr));
      char bytes[16] = "";
      DWORD read = 0;
      if (file)
        ReadFile(file.Get(), bytes, sizeof bytes - 1, &read, nullptr);
      EXPECT_STREQ(bytes, "");
    }
  }
  std::ifstream file(elsewhere);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "secret");
  EXPECT_FALSE(fs::exists(machine::Folder() / "nowhere"));
  fs::remove(elsewhere);
}

TEST_F(PathsTest, DrivesAreTheLinksOfDosdevices) {
  const fs::path data = machine::Folder() / "data";
  fs::create_directories(data / "sub");
  std::ofstream(data / "sub/Text.TXT") << "bytes";
  fs::create_directories(machine::Folder() / "dosdevices");
  fs::create_directory_symlink("../drive_c", machine::Folder() / "dosdevices/c:");
  fs::create_directory_symlink(data, machine::Folder() / "dosdevices/d:");
  EXPECT_EQ(GetFile("d:/SUB/text.txt"), "bytes");
  PutFile("C:\\acctkit-test\\new.txt", "new");
  EXPECT_TRUE(fs::exists(Drive() / "acctkit-test/new.txt"));
}

TEST_F(PathsTest, NamesAreUtf8OnDisk) {
  PutFile("C:\\acctkit-test\\\x95\x5c\x8e\xa6.txt", "bytes");
  EXPECT_TRUE(fs::exists(Drive() / "acctkit-test/\xe8\xa1\xa8\xe7\xa4\xba.txt"));
  SetEnvironment("ACCTKIT_PROGRAM", "C:/acctkit-test\\\xe8\xa1\xa8.exe");
  EXPECT_EQ(ServiceIniPath(), "C:\\acctkit-test\\service.ini");
  SetEnvironment("ACCTKIT_PROGRAM", "");
}

TEST_F(PathsTest, AFolderThatIsNoMachineIsToldOf) {
  const std::string folder = machine::Folder();
  SetEnvironment("ACCTKIT_MACHINE", folder + "/missing");
  EXPECT_EQ(machine::FindFault(false), folder + "/missing: No such file or directory");
  HKEY key = nullptr;
  EXPECT_NE(RegOpenKeyExA(HKEY_CURRENT_USER, "a", 0, KEY_READ, &key), ERROR_SUCCESS);
  EXPECT_FALSE(fs::exists(folder + "/missing"));
  SetEnvironment("ACCTKIT_MACHINE", folder + "/drive_c");
  EXPECT_NE(machine::FindFault(false).find("no machine folder"), std::string::npos);
}

// A program file that was cut anywhere has a version or none, and nothing beyond its end is looked at.
TEST_F(PathsTest, VersionsOfCutProgramFiles) {
  CopyOntoMachine(PLUGIN_DIR "/versioned.exe", "C:\\acctkit-test\\whole.exe");
  const std::string whole = GetFile("C:\\acctkit-test\\whole.exe").value();
  const char *const cut = "C:\\acctkit-test\\cut.exe";
  size_t found = 0;
  for (size_t size = 0; size <= whole.size(); size += size + 16 < whole.size() && size > 1024 ? 97 : 1) {
    std::ofstream(Drive() / "acctkit-test/cut.exe", std::ios::binary) << whole.substr(0, size);
    DWORD ignored = 0;
    const DWORD length = GetFileVersionInfoSizeA(cut, &ignored);
    std::string block(length, '\0');
    found += length != 0 && GetFileVersionInfoA(cut, 0, length, block.data()) ? 1 : 0;
  }
  EXPECT_GT(found, 0U);
}

// What reads a file whole, and with what answer if it has none.
const std::pair<const char *, bool (*)(const char *)> Readers[] = {
    {"library", [](const char *path) { return LoadLibraryA(path) == nullptr; }},
    {"version", [](const char *path) { return GetFileVersionInfoSizeA(path, nullptr) == 0; }},
    {"settings", [](const char *path) {
       char value[8] = "";
       return GetPrivateProfileStringA("A", "k", "", value, sizeof value, path) == 0;
     }}};

// Nobody waits for a pipe, and what has a file's place without being one is told of.
TEST_F(PathsTest, OddFilesAreToldOf) {
  const fs::path odd = Drive() / "acctkit-test/odd.dll";
  const std::pair<const char *, std::function<void()>> kinds[] = {
      {"pipe", [&] { EXPECT_EQ(mkfifo(odd.c_str(), 0666), 0); }},
      {"folder", [&] { fs::create_directory(odd); }},
      {"link", [&] { fs::create_symlink("/dev/zero", odd); }}};
  for (const auto &[kind, make] : kinds) {
    make();
    for (const auto &[reader, hasNone] : Readers) {
      SCOPED_TRACE(std::string(kind) + " as " + reader);
      EXPECT_TRUE(hasNone("C:\\acctkit-test\\odd.dll"));
      EXPECT_EQ(machine::TakeFault(), "C:\\acctkit-test\\odd.dll: this is no file of the machine");
      EXPECT_TRUE(hasNone("C:\\acctkit-test\\missing.dll"));
      EXPECT_EQ(machine::TakeFault(), "");
    }
    fs::remove(odd);
  }
}

TEST_F(PathsTest, LargeFilesAreNotRead) {
  PutFile("C:\\acctkit-test\\large", "[A]\nk=v\n");
  fs::resize_file(Drive() / "acctkit-test/large", uintmax_t{1} << 32);
  for (const auto &[reader, hasNone] : Readers) {
    EXPECT_TRUE(hasNone("C:\\acctkit-test\\large.")) << reader;
    EXPECT_NE(machine::TakeFault(), "") << reader;
  }
}

// Loading what is missing of a library would end the process.
TEST_F(PathsTest, CutLibrariesAreNotLoaded) {
  CopyOntoMachine(PLUGIN_DIR "/plugin_complete.dll", "C:\\acctkit-test\\whole.dll");
  const std::string whole = GetFile("C:\\acctkit-test\\whole.dll").value();
  size_t told = 0;
  for (size_t size = 0; size < whole.size(); size += 200) {
    std::ofstream(Drive() / "acctkit-test/cut.dll", std::ios::binary) << whole.substr(0, size);
    FreeLibrary(LoadLibraryA("C:\\acctkit-test\\cut.dll"));
    told += machine::TakeFault().ends_with("cut.dll: this library is cut short") ? 1 : 0;
  }
  EXPECT_GT(told, 0U);
}

} // namespace
