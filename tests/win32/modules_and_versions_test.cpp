// Loadable libraries and the version resources of program files.
#include "support/test_machine.h"

namespace {

const char *const Library = "C:\\acctkit-test\\library.dll";
const char *const Versioned = "C:\\acctkit-test\\versioned.exe";

class ModulesTest : public MachineTest {
protected:
  void SetUp() override {
    MachineTest::SetUp();
    CopyOntoMachine(PLUGIN_DIR "/plugin_complete.dll", Library);
    PutFile("C:\\acctkit-test\\text.dll", "no library");
  }
};

TEST_F(ModulesTest, LoadsLibraries) {
  // A missing ".dll" is added.
  for (const char *path : {Library, "c:/ACCTKIT-test/LIBRARY.DLL", "C:\\acctkit-test\\library"}) {
    SCOPED_TRACE(path);
    const HMODULE module = LoadLibraryA(path);
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(LoadLibraryA(path), module);
    EXPECT_NE(GetProcAddress(module, "GetMailerInfo"), nullptr);
    EXPECT_EQ(GetProcAddress(module, "getmailerinfo"), nullptr);
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_TRUE(FreeLibrary(module));
  }
  for (const char *path : {"C:\\acctkit-test\\library.", "C:\\acctkit-test\\missing.dll",
                           "C:\\acctkit-test\\missing\\library.dll", "C:\\acctkit-test\\text.dll"})
    EXPECT_EQ(LoadLibraryA(path), nullptr) << path;
}

class VersionTest : public MachineTest {
protected:
  void SetUp() override {
    MachineTest::SetUp();
    CopyOntoMachine(PLUGIN_DIR "/versioned.exe", Versioned);
  }
};

TEST_F(VersionTest, QueriesTheResource) {
  DWORD ignored = 7;
  const DWORD size = GetFileVersionInfoSizeA(Versioned, &ignored);
  ASSERT_GT(size, 0U);
  EXPECT_EQ(ignored, 0U);
  std::string block(size, '\0');
  ASSERT_TRUE(GetFileVersionInfoA(Versioned, 0, size, block.data()));
  const std::string strings = "\\StringFileInfo\\041104b0\\";
  const struct {
    std::string query, value;
  } cases[] = {
      {strings + "FileDescription", std::string("\x95\x5c\x8e\xa6\0", 5)},
      {"\\stringfileinfo\\041104B0\\productversion", std::string("7.1.\x83\x78\x81\x5b\x83\x5e\0", 11)},
      {"\\VarFileInfo\\Translation", std::string("\x11\x04\xb0\x04", 4)},
  };
  void *value = nullptr;
  UINT length = 0;
  for (const auto &test : cases) {
    ASSERT_TRUE(VerQueryValueA(block.data(), test.query.c_str(), &value, &length)) << test.query;
    EXPECT_EQ(std::string(static_cast<const char *>(value), length), test.value) << test.query;
  }
  for (const std::string &query : {strings + "CompanyName", std::string("\\StringFileInfo\\04090000\\FileDescription"),
                                   std::string("\\Nothing"), strings + "FileDescription\\More"})
    EXPECT_FALSE(VerQueryValueA(block.data(), query.c_str(), &value, &length)) << query;
}

TEST_F(VersionTest, FilesWithoutOne) {
  PutFile("C:\\acctkit-test\\text.exe", "no program");
  for (const char *path :
       {"C:\\acctkit-test\\missing.exe", "C:\\acctkit-test\\missing\\program.exe", "C:\\acctkit-test\\text.exe"}) {
    DWORD ignored = 0;
    char block[64];
    EXPECT_EQ(GetFileVersionInfoSizeA(path, &ignored), 0U) << path;
    EXPECT_FALSE(GetFileVersionInfoA(path, 0, sizeof block, block)) << path;
  }
}

} // namespace
