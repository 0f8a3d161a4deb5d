// Device contexts and what is selected into them, and the system's icons and images.
#include "win32/win32_ui.h"

#include "support/test_machine.h"

#include <string>

namespace {

// A font that is asked for by the height of its characters is at least that high.
TEST(DrawingTest, MeasuresTheSelectedFont) {
  const HDC context = GetDC(nullptr);
  for (const int height : {-9, -12, -24}) {
    SCOPED_TRACE(height);
    const HFONT font = CreateFontA(height, 0, 0, 0, 400, FALSE, FALSE, FALSE, 0, 0, 0, 0, 0, "");
    const HGDIOBJ before = SelectObject(context, font);
    ASSERT_NE(before, nullptr);
    TEXTMETRICA metrics = {};
    EXPECT_TRUE(GetTextMetricsA(context, &metrics));
    EXPECT_GE(metrics.tmHeight, -height);
    EXPECT_LT(metrics.tmHeight, -height * 2);
    EXPECT_EQ(metrics.tmAscent + metrics.tmDescent, metrics.tmHeight);
    EXPECT_EQ(SelectObject(context, before), font);
    EXPECT_TRUE(DeleteObject(font));
  }
  EXPECT_EQ(ReleaseDC(nullptr, context), 1);
}

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
