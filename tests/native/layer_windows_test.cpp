// What only the layer's windows have: a front end, windows of each thread, and templates and resources of any bytes.
#include "resources/resource.h"
#include "win32/linux/windows/dialog_template.h"
#include "win32/linux/windows/modal_loop.h"
#include "win32/linux/windows/painting.h"
#include "win32/linux/windows/resources.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

namespace {

std::string events;

LRESULT Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_PAINT)
    events += "paint ";
  if (message >= WM_USER)
    events += "posted " + std::to_string(message - WM_USER) + " ";
  if (message == WM_USER + 1)
    PostMessageA(window, WM_USER + 2, 0, 0);
  return DefWindowProcA(window, message, wParam, lParam);
}

class FrontEnd : public machine::FrontEnd {
public:
  std::function<bool(HWND top)> act;

  bool WaitForUser(HWND top) override { return act(top); }
  bool ShowHelp(const char *, ULONG_PTR) override { return false; }
};

class LayerWindowsTest : public testing::Test {
protected:
  FrontEnd user;
  HWND top = nullptr;
  HWND child = nullptr;

  void SetUp() override {
    machine::SetFrontEnd(nullptr);
    top = Create(WS_POPUP | WS_VISIBLE, nullptr);
    child = Create(WS_CHILD | WS_VISIBLE, top);
    events.clear();
  }
  void TearDown() override {
    machine::SetFrontEnd(nullptr);
    if (IsWindow(top))
      DestroyWindow(top);
  }

  static HWND Create(DWORD style, HWND parent) {
    const HWND window = CreateWindowExA(0, "STATIC", "", style, 0, 0, 10, 10, parent, nullptr, nullptr, nullptr);
    SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure));
    return window;
  }
  bool Run(std::function<bool(HWND top)> act) {
    user.act = std::move(act);
    machine::SetFrontEnd(&user);
    return machine::RunModalLoop(top, [] { return false; });
  }
};

TEST_F(LayerWindowsTest, UserComesAfterMessagesAndPainting) {
  PostMessageA(child, WM_USER + 1, 0, 0);
  int turns = 0;
  EXPECT_TRUE(Run([&](HWND window) {
    events += "user ";
    EXPECT_EQ(window, top);
    machine::Invalidate(machine::WindowOf(child));
    return (++turns == 2 ? DestroyWindow(top) : PostMessageA(child, WM_USER, 0, 0)) != FALSE;
  }));
  EXPECT_EQ(events, "posted 1 posted 2 paint paint user posted 0 paint user ");
}

TEST_F(LayerWindowsTest, LoopEndsWithoutUser) {
  EXPECT_FALSE(Run([](HWND) { return false; }));
  EXPECT_TRUE(IsWindow(top));
}

TEST_F(LayerWindowsTest, EachThreadHasItsOwn) {
  SetFocus(child);
  std::thread([this] {
    EXPECT_FALSE(IsWindow(top));
    EXPECT_EQ(GetFocus(), nullptr);
    const HWND own = Create(WS_POPUP | WS_VISIBLE, nullptr);
    EXPECT_EQ(GetActiveWindow(), own);
  }).join();
  EXPECT_EQ(GetFocus(), child);
}

TEST(TemplateTest, CutOnesAreNone) {
  const std::string_view whole = machine::DialogResource(MAKEINTRESOURCEA(IDD_SET_MAILER_ID));
  const auto read = machine::ReadTemplate(whole);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->window.text, "メーラー設定 (3/4)");
  EXPECT_EQ(read->controls.back().text, "入力が終わりましたら「次へ」ボタンを押してください。");
  const size_t end = whole.size() - 2; // how many bytes of a control's own there are, which is none
  for (size_t size = 0; size < end; ++size)
    EXPECT_FALSE(machine::ReadTemplate(whole.substr(0, size))) << size;
  EXPECT_TRUE(machine::DialogResource(MAKEINTRESOURCEA(1)).empty());
}

TEST(ResourcesTest, AreReadUpToWhereTheyAreCut) {
  const auto resource = [](std::u16string_view name, std::string data) {
    std::u16string header = u"\xFFFF\x0005" + std::u16string(name);
    header.resize((header.size() + 1) / 2 * 2 + 8);
    const DWORD sizes[] = {static_cast<DWORD>(data.size()), static_cast<DWORD>(8 + header.size() * 2)};
    data.resize((data.size() + 3) / 4 * 4);
    return std::string(reinterpret_cast<const char *>(sizes), sizeof sizes) +
           std::string(reinterpret_cast<const char *>(header.data()), header.size() * 2) + data;
  };
  const std::string first = resource(u"\xFFFF\x0081", "first");
  const std::string block = resource(u"\xFFFF", "") + first + resource(std::u16string_view(u"name\0", 5), "second");
  const auto read = machine::ReadResources(block);
  ASSERT_EQ(read.size(), 2U);
  EXPECT_EQ(read[0].type, 5);
  EXPECT_EQ(read[0].name, 0x81);
  EXPECT_EQ(read[0].data, "first");
  EXPECT_EQ(read[1].name, 0); // a text
  EXPECT_EQ(read[1].data, "second");
  const size_t endOfFirst = block.find("first") + 5;
  const size_t endOfSecond = block.find("second") + 6;
  for (size_t size = 0; size < block.size(); ++size)
    EXPECT_EQ(machine::ReadResources(std::string(block, 0, size)).size(),
              size_t{size >= endOfFirst} + size_t{size >= endOfSecond});
}

} // namespace
