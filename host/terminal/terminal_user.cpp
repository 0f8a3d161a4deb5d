#include "terminal/terminal_user.h"

#include "clients/file_queries.h"
#include "terminal/columns.h"
#include "terminal/keyboard.h"

#include <csignal>
#include <curses.h>
#include <vector>

namespace terminal {

namespace {

constexpr const wchar_t *Hints = L" Tab 次へ  F4 一覧  Enter 決定  Esc キャンセル  F1 ヘルプ";
constexpr const wchar_t *ListHints = L" ↑↓ 選択  Enter 決定  Esc 一覧を閉じる";

std::wstring TooSmall() {
  return L"端末が小さすぎます。" + std::to_wstring(SmallestScreen.columns) + L" 桁 " +
         std::to_wstring(SmallestScreen.rows) + L" 行以上にして下さい。";
}

// The window and those that it belongs to and lies over, the hindmost first.
std::vector<HWND> WindowsUpTo(HWND top) {
  std::vector<HWND> windows;
  for (HWND window = top; window != nullptr; window = GetWindow(window, GW_OWNER))
    if (window == top || IsWindowVisible(window) != FALSE)
      windows.insert(windows.begin(), window);
  return windows;
}

} // namespace

void User::Draw(HWND top) {
  const Size size = screen.Dimensions();
  std::vector<Pane> panes;
  std::wstring hints = Hints;
  for (const HWND window : WindowsUpTo(top)) {
    Layout layout = LayOut(window, size, scrolling);
    if (layout.scrolling.window != nullptr)
      scrolling = layout.scrolling;
    if (window == top && layout.panes.size() > 1)
      hints = ListHints;
    panes.insert(panes.end(), layout.panes.begin(), layout.panes.end());
  }
  screen.Show(panes, Fit(notice.empty() ? hints : L" " + notice, size.columns - 1));
}

bool User::Act(HWND top) noexcept {
  if (left)
    return false;
  const Size size = screen.Dimensions();
  const bool tooSmall = size.columns < SmallestScreen.columns || size.rows < SmallestScreen.rows;
  if (tooSmall)
    screen.ShowText(TooSmall()); // until it has grown again
  else
    Draw(top);
  const Key key = screen.ReadKey();
  left = key.code == KEY_EXIT;
  if (!left && !tooSmall)
    notice = Press(top, key, scrolling);
  return !left;
}

bool User::SeeHelp(const char *file, ULONG_PTR topic) noexcept {
  if (!PathExists(file))
    return false;
  const std::string text = std::string(file) + "\nトピック " + std::to_string(topic);
  MessageBoxA(GetActiveWindow(), text.c_str(), "ヘルプ", MB_OK | MB_ICONINFORMATION);
  return true;
}

bool Run(const std::function<void()> &run) {
  bool left = false;
  {
    User user;
    platform::WithUser(user, run);
    left = user.HasLeft();
  }
  if (const int signal = EndingSignals::Asked(); signal != 0) {
    std::signal(signal, SIG_DFL);
    std::raise(signal);
  }
  return !left;
}

} // namespace terminal
