// Loadable libraries and the version resources of program files.
#include "support/test_machine.h"

#include <cstring>

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
  const struct {
    const char *path;
    LONG error;
  } cases[] = {
      {Library, ERROR_SUCCESS},
      {"c:/ACCTKIT-test/LIBRARY.DLL", ERROR_SUCCESS},
      {"C:\\acctkit-test\\library", ERROR_SUCCESS}, // ".dll" goes without saying
      {"C:\\acctkit-test\\library.", ERROR_MOD_NOT_FOUND},
      {"C:\\acctkit-test\\missing.dll", ERROR_MOD_NOT_FOUND},
      {"C:\\acctkit-test\\missing\\library.dll", ERROR_MOD_NOT_FOUND},
      {"C:\\acctkit-test\\text.dll", ERROR_BAD_EXE_FORMAT},
  };
  for (const auto &test : cases) {
    SCOPED_TRACE(test.path);
    SetLastError(0);
    const HMODULE module = LoadLibraryA(test.path);
    EXPECT_EQ(module != nullptr, test.error == ERROR_SUCCESS);
    if (module == nullptr) {
      EXPECT_EQ(static_cast<LONG>(GetLastError()), test.error);
      continue;
    }
    EXPECT_EQ(LoadLibraryA(test.path), module);
    EXPECT_NE(GetProcAddress(module, "GetMailerInfo"), nullptr);
    EXPECT_EQ(GetProcAddress(module, "getmailerinfo"), nullptr);
    EXPECT_EQ(static_cast<LONG>(GetLastError()), ERROR_PROC_NOT_FOUND);
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_TRUE(FreeLibrary(module));
  }
  EXPECT_FALSE(FreeLibrary(nullptr));
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
  for (const auto &test : cases) {
    void *value = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueA(block.data(), test.query.c_str(), &value, &length)) << test.query;
    EXPECT_EQ(std::string(static_cast<const char *>(value), length), test.value) << test.query;
  }
  void *value = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueA(block.data(), "\\", &value, &length));
  DWORD fixed[13] = {};
  ASSERT_EQ(length, sizeof fixed);
  std::memcpy(fixed, value, sizeof fixed);
  EXPECT_EQ(fixed[0], 0xFEEF04BD);
  EXPECT_EQ(fixed[2], DWORD{7} << 16 | 1);
  for (const std::string &query : {strings + "CompanyName", std::string("\\StringFileInfo\\04090000\\FileDescription"),
                                   std::string("\\Nothing"), strings + "FileDescription\\More"}) {
    EXPECT_FALSE(VerQueryValueA(block.data(), query.c_str(), &value, &length)) << query;
    EXPECT_EQ(static_cast<LONG>(GetLastError()), ERROR_RESOURCE_TYPE_NOT_FOUND) << query;
  }
}

TEST_F(VersionTest, FilesWithoutOne) {
  PutFile("C:\\acctkit-test\\text.exe", "no program");
  const struct {
    const char *path;
    LONG error;
  } cases[] = {
      {"C:\\acctkit-test\\missing.exe", ERROR_FILE_NOT_FOUND},
      {"C:\\acctkit-test\\missing\\program.exe", ERROR_PATH_NOT_FOUND},
      {"C:\\acctkit-test\\text.exe", ERROR_RESOURCE_DATA_NOT_FOUND},
  };
  for (const auto &test : cases) {
    DWORD ignored = 0;
    char block[64];
    SetLastError(0);
    EXPECT_EQ(GetFileVersionInfoSizeA(test.path, &ignored), 0U) << test.path;
    EXPECT_EQ(static_cast<LONG>(GetLastError()), test.error) << test.path;
    EXPECT_FALSE(GetFileVersionInfoA(test.path, 0, sizeof block, block)) << test.path;
  }
  std::string small(32, '#');
  EXPECT_TRUE(GetFileVersionInfoA(Versioned, 0, 16, small.data())); // gets what fits
  EXPECT_EQ(small.substr(16), std::string(16, '#'));
}

} // namespace
