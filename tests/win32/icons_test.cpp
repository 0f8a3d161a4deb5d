// The system's icons and images.
#include "win32/win32_ui.h"

#include "support/test_machine.h"

#include <string>

namespace {

using IconTest = MachineTest;

TEST_F(IconTest, EveryProgramHasItsImage) {
  constexpr UINT Flags = SHGFI_SYSICONINDEX | SHGFI_ICON | SHGFI_SMALLICON;
  char windows[MAX_PATH] = "";
  GetWindowsDirectoryA(windows, sizeof windows);
  SHFILEINFOA info = {};
  const DWORD_PTR list = SHGetFileInfoA(windows, 0, &info, sizeof info, Flags);
  ASSERT_NE(list, 0U);
  EXPECT_TRUE(DestroyIcon(info.hIcon));

  const auto indexOf = [&](const char *path) {
    info = {};
    EXPECT_EQ(SHGetFileInfoA(path, 0, &info, sizeof info, Flags), list);
    EXPECT_NE(info.hIcon, nullptr);
    EXPECT_TRUE(DestroyIcon(info.hIcon));
    return info.iIcon;
  };
  const char *const program = "C:\\acctkit-test\\one.exe";
  CopyOntoMachine(PLUGIN_DIR "/versioned.exe", program);
  EXPECT_EQ(indexOf(program), indexOf("c:\\ACCTKIT-TEST\\One.EXE"));
  EXPECT_EQ(SHGetFileInfoA("C:\\acctkit-test\\none.exe", 0, &info, sizeof info, Flags), 0U);

  const auto images = reinterpret_cast<HIMAGELIST>(list);
  IMAGEINFO image = {};
  EXPECT_TRUE(ImageList_GetImageInfo(images, 0, &image));
  EXPECT_EQ(image.rcImage.right - image.rcImage.left, image.rcImage.bottom - image.rcImage.top);
}

} // namespace
