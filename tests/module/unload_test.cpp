// The library as a host loads and unloads it, and the resources that are left after that.
#include "support/client_machine.h"
#include "support/stubs_windows.h"
#include "support/user.h"

namespace {

// Resources of which a process has few.
struct Resources {
  DWORD kernelHandles;
  DWORD nextThreadLocalIndex;
};

Resources Count() {
  Resources now{};
  GetProcessHandleCount(GetCurrentProcess(), &now.kernelHandles);
  now.nextThreadLocalIndex = TlsAlloc();
  TlsFree(now.nextThreadLocalIndex);
  return now;
}

void RunWizard(HMODULE library) {
  using Wizard = int32_t (*)(int32_t unused, const char *id);
  const auto wizard = reinterpret_cast<Wizard>(reinterpret_cast<void *>(GetProcAddress(library, "ShortMailWizard")));
  ASSERT_NE(wizard, nullptr);
  WithUser({[](HWND sheet) { PostMessageA(sheet, PSM_PRESSBUTTON, PSBTN_CANCEL, 0); },
            [](HWND box) { SendMessageA(GetDlgItem(box, IDYES), BM_CLICK, 0, 0); }},
           [&] { EXPECT_EQ(wizard(0, "ABC01234"), 1); });
}

void LoadAndUnload() {
  const HMODULE library = LoadLibraryA(ACCTKIT_LIBRARY);
  ASSERT_NE(library, nullptr);
  StubImports(library);
  RunWizard(library);
  EXPECT_TRUE(FreeLibrary(library));
  EXPECT_EQ(GetModuleHandleA("AcctKit.dll"), nullptr);
}

class UnloadTest : public ClientTest {};

TEST_F(UnloadTest, NothingIsLeftOfAHundredWizards) {
  InstallOutlookExpress("5,50,4522,1200");
  LoadAndUnload(); // what the system makes for a process's first windows stays
  const Resources before = Count();
  for (int cycle = 0; cycle < 100 && !HasFailure(); ++cycle)
    LoadAndUnload();
  const Resources after = Count();
  EXPECT_EQ(after.kernelHandles, before.kernelHandles);
  EXPECT_EQ(after.nextThreadLocalIndex, before.nextThreadLocalIndex);
}

} // namespace
