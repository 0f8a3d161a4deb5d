// The library as a host loads and unloads it, and the resources that are left after that.
#include "support/client_machine.h"
#include "support/loaded_library.h"
#include "support/user.h"

namespace {

void RunWizard(HMODULE library) {
  using Wizard = int32_t (*)(int32_t unused, const char *id);
  const auto wizard = reinterpret_cast<Wizard>(reinterpret_cast<void *>(GetProcAddress(library, "ShortMailWizard")));
  ASSERT_NE(wizard, nullptr);
  WithUser({[](HWND sheet) { PostMessageA(sheet, PSM_PRESSBUTTON, PSBTN_CANCEL, 0); },
            [](HWND box) { SendMessageA(GetDlgItem(box, IDYES), BM_CLICK, 0, 0); }},
           [&] { EXPECT_EQ(wizard(0, "ABC01234"), 1); });
}

void LoadAndUnload() {
  const HMODULE library = LoadFromBuild(ACCTKIT_LIBRARY);
  ASSERT_NE(library, nullptr);
  RunWizard(library);
  EXPECT_TRUE(FreeLibrary(library));
  EXPECT_FALSE(IsInMemory(ACCTKIT_LIBRARY));
}

class UnloadTest : public ClientTest {};

TEST_F(UnloadTest, NothingIsLeftOfAHundredWizards) {
  InstallOutlookExpress("5,50,4522,1200");
  LoadAndUnload(); // what the system makes for a process's first windows stays
  const std::vector<size_t> before = CountHandles();
  for (int cycle = 0; cycle < 100 && !HasFailure(); ++cycle)
    LoadAndUnload();
  EXPECT_EQ(CountHandles(), before);
}

} // namespace
