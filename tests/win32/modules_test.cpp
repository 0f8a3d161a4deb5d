// Loadable libraries.
#include "support/test_machine.h"

namespace {

const char *const Library = "C:\\acctkit-test\\library.dll";

using ModulesTest = MachineTest;

TEST_F(ModulesTest, LoadsLibraries) {
  CopyOntoMachine(PLUGIN_DIR "/plugin_complete.dll", Library);
  PutFile("C:\\acctkit-test\\text.dll", "no library");
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

} // namespace
