#include "platform.h"

#include "utf8.h"

#include <cstring>
#include <string_view>
#include <system_error>
#include <utility>

namespace platform {

bool HasMachineFolders() { return false; }

void UseMachine(const std::string &) {}

std::string MachineName() { return "this machine"; }

std::string MakeMachine() { return {}; }

struct MachineCall::Held {};

MachineCall::MachineCall(bool) {}
MachineCall::~MachineCall() = default;
bool MachineCall::Commit() { return true; }

std::string FindFault(bool) { return {}; }

std::string TakeFault() { return {}; }

std::string TakeNotice() { return {}; }

bool HasNotice() { return false; }

std::filesystem::path SamplePlugin() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::filesystem::path(path).parent_path() / "sample_mailer.dll";
}

namespace {

User *userInFront = nullptr;

BOOL CALLBACK FindDialog(HWND window, LPARAM found) {
  char className[16] = "";
  GetClassNameA(window, className, sizeof className);
  if (std::string_view(className) != "#32770" || !IsWindowVisible(window) || !IsWindowEnabled(window))
    return TRUE;
  *reinterpret_cast<HWND *>(found) = window;
  return FALSE;
}

// A timer's message comes when a thread has no other, from whichever modal loop is the innermost.
void CALLBACK LetUserAct(HWND, UINT, UINT_PTR, DWORD) {
  HWND top = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), FindDialog, reinterpret_cast<LPARAM>(&top));
  if (top != nullptr && !userInFront->Act(top))
    PostQuitMessage(0);
}

// What the system sends its help program: a record that says where in it the texts begin.
struct HelpRequest {
  WORD size;
  WORD command;
  LONG data;
  LONG reserved;
  WORD fileOffset;
  WORD dataOffset;
};

LRESULT CALLBACK HelpProgram(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_COPYDATA)
    return DefWindowProcA(window, message, wParam, lParam);
  const auto &copy = *reinterpret_cast<const COPYDATASTRUCT *>(lParam);
  HelpRequest request{};
  if (copy.cbData < sizeof request)
    return FALSE;
  std::memcpy(&request, copy.lpData, sizeof request);
  if (request.command != HELP_CONTEXT || request.fileOffset >= copy.cbData)
    return FALSE;
  const char *const file = static_cast<const char *>(copy.lpData) + request.fileOffset;
  return userInFront->SeeHelp(file, static_cast<ULONG_PTR>(request.data)) ? TRUE : FALSE;
}

// Stands where the system looks for its help program's window.
class HelpWindow {
public:
  HelpWindow() {
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = HelpProgram;
    windowClass.lpszClassName = "MS_WINHELP";
    RegisterClassA(&windowClass);
    window =
        CreateWindowExA(0, windowClass.lpszClassName, "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
  }
  HelpWindow(const HelpWindow &) = delete;
  HelpWindow &operator=(const HelpWindow &) = delete;
  ~HelpWindow() { DestroyWindow(window); }

private:
  HWND window;
};

} // namespace

void WithUser(User &user, const std::function<void()> &run) {
  constexpr UINT Milliseconds = 10;
  userInFront = &user;
  const HelpWindow help;
  const UINT_PTR timer = SetTimer(nullptr, 0, Milliseconds, LetUserAct);
  run();
  KillTimer(nullptr, timer);
  userInFront = nullptr;
}

std::string ScreenFault() { return {}; }

bool RunOnScreen(const std::function<void()> &run) {
  run();
  return true;
}

namespace {

using Work = std::function<void()>;

DWORD WINAPI RunWork(void *work) {
  (*std::unique_ptr<Work>(static_cast<Work *>(work)))();
  return 0;
}

} // namespace

void RunDetached(std::function<void()> work) {
  auto owned = std::make_unique<Work>(std::move(work));
  const HANDLE thread = CreateThread(nullptr, 0, RunWork, owned.get(), 0, nullptr);
  if (thread == nullptr)
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "a thread");
  owned.release();
  CloseHandle(thread);
}

void PressKey(int key) {
  keybd_event(static_cast<BYTE>(key), 0, 0, 0);
  keybd_event(static_cast<BYTE>(key), 0, KEYEVENTF_KEYUP, 0);
}

} // namespace platform

int wmain(int count, wchar_t **wide) {
  std::vector<std::string> arguments;
  for (int index = 1; index < count; ++index)
    arguments.push_back(WideToUtf8(wide[index]));
  return RunHost(arguments);
}
