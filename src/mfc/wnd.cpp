#include "mfc/wnd.h"

#include "mfc/app.h"

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <utility>

IMPLEMENT_DYNAMIC(CWnd, CCmdTarget)

BEGIN_MESSAGE_MAP(CWnd, CCmdTarget)
ON_WM_HELPINFO()
END_MESSAGE_MAP()

namespace {

struct Message {
  UINT message = WM_NULL;
  WPARAM wParam = 0;
  LPARAM lParam = 0;
};

// The objects of the windows.
struct WindowObjects {
  std::unordered_map<HWND, CWnd *> attached;
  std::unordered_map<HWND, std::unique_ptr<CWnd>> others;
};

WindowObjects objects;

Message innermost; // the innermost message being handled

class HandledMessage {
public:
  explicit HandledMessage(const Message &message) : outer(std::exchange(innermost, message)) {}
  HandledMessage(const HandledMessage &) = delete;
  HandledMessage &operator=(const HandledMessage &) = delete;
  ~HandledMessage() { innermost = outer; }

private:
  Message outer;
};

LRESULT CALLBACK AttachedProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  CWnd *window = CWnd::FromHandlePermanent(handle);
  return window ? AfxCallWndProc(*window, message, wParam, lParam) : ::DefWindowProcA(handle, message, wParam, lParam);
}

WNDPROC SetProc(HWND window, WNDPROC procedure) {
  return reinterpret_cast<WNDPROC>(::SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
}

bool AnyDown(std::initializer_list<int> keys) {
  return std::ranges::any_of(keys, [](int key) { return ::GetKeyState(key) < 0; });
}

} // namespace

LRESULT AfxCallWndProc(CWnd &window, UINT message, WPARAM wParam, LPARAM lParam) {
  const AFX_MAINTAIN_STATE2 state(AfxGetStaticModuleState());
  const HandledMessage handled({message, wParam, lParam});
  try {
    return window.WindowProc(message, wParam, lParam);
  } catch (...) {
    return window.OnFailure(message, lParam);
  }
}

// ---- Handles ----

CWnd::~CWnd() {
  if (m_pfnSuper)
    UnsubclassWindow();
}

CWnd *CWnd::FromHandle(HWND window) {
  if (!window)
    return nullptr;
  if (CWnd *attached = FromHandlePermanent(window))
    return attached;
  std::unique_ptr<CWnd> &other = objects.others[window];
  if (!other) {
    other = std::make_unique<CWnd>();
    other->m_hWnd = window;
  }
  return other.get();
}

CWnd *CWnd::FromHandlePermanent(HWND window) {
  const auto found = objects.attached.find(window);
  return found == objects.attached.end() ? nullptr : found->second;
}

void CWnd::Attach(HWND window) {
  objects.attached[window] = this;
  m_hWnd = window;
}

HWND CWnd::Detach() {
  objects.attached.erase(m_hWnd);
  std::erase_if(objects.others, [](const auto &other) { return !::IsWindow(other.first); });
  return std::exchange(m_hWnd, nullptr);
}

BOOL CWnd::SubclassWindow(HWND window) {
  if (!window || m_hWnd)
    return FALSE;
  Attach(window);
  PreSubclassWindow();
  m_pfnSuper = SetProc(window, AttachedProc);
  if (!m_pfnSuper)
    Detach();
  return m_pfnSuper != nullptr;
}

HWND CWnd::UnsubclassWindow() {
  // If somebody subclassed the window after us, their procedure goes on calling ours, which then does only the default
  // handling.
  if (reinterpret_cast<WNDPROC>(::GetWindowLongPtrA(m_hWnd, GWLP_WNDPROC)) == AttachedProc)
    SetProc(m_hWnd, m_pfnSuper);
  m_pfnSuper = nullptr;
  return Detach();
}

HWND CWnd::AttachedTopLevel() {
  const auto isTopLevel = [](const auto &attached) { return (attached.second->GetStyle() & WS_CHILD) == 0; };
  const auto found = std::ranges::find_if(objects.attached, isTopLevel);
  return found == objects.attached.end() ? nullptr : found->first;
}

HWND CWnd::GetSafeOwner_(HWND *topLevelToEnable) {
  HWND owner = ::GetActiveWindow();
  if (!owner) // another application is in front
    owner = AttachedTopLevel();
  HWND topLevel = owner;
  while (HWND above = topLevel ? ::GetParent(topLevel) : nullptr)
    topLevel = above;

  if (owner)
    owner = ::GetLastActivePopup(owner);
  *topLevelToEnable = topLevel && topLevel != owner && ::IsWindowEnabled(topLevel) ? topLevel : nullptr;
  if (*topLevelToEnable)
    ::EnableWindow(*topLevelToEnable, FALSE);
  return owner;
}

// ---- Messages ----

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  LRESULT result = 0;
  return OnWndMsg(message, wParam, lParam, &result) ? result : DefWindowProc(message, wParam, lParam);
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  return m_pfnSuper ? ::CallWindowProcA(m_pfnSuper, m_hWnd, message, wParam, lParam)
                    : ::DefWindowProcA(m_hWnd, message, wParam, lParam);
}

LRESULT CWnd::OnFailure(UINT message, LPARAM) {
  // A window that stays invalid would get WM_PAINT forever.
  return message == WM_PAINT ? Default() : 0;
}

LRESULT CWnd::Default() {
  const Message handled = innermost;
  return DefWindowProc(handled.message, handled.wParam, handled.lParam);
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result) {
  switch (message) {
  case WM_COMMAND:
    *result = OnCommand(wParam, lParam);
    return *result != 0;
  case WM_NOTIFY:
    return OnNotify(wParam, lParam, result);
  case WM_DRAWITEM:
  case WM_MEASUREITEM:
  case WM_COMPAREITEM:
  case WM_DELETEITEM:
    return ReflectToControl(message, wParam, lParam, result);
  case WM_NCDESTROY:
    *result = Default();
    UnsubclassWindow();
    return TRUE;
  default:
    break;
  }
  const AFX_MSGMAP_ENTRY *entry = GetMessageMap()->Find(message, 0, 0);
  if (entry)
    *result = entry->pfn(*this, wParam, lParam);
  return entry != nullptr;
}

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM lParam) {
  const UINT id = LOWORD(wParam);
  if (id == 0)
    return FALSE;
  if (lParam != 0)
    return OnCmdMsg(id, HIWORD(wParam), nullptr, nullptr);

  CCmdUI question;
  question.m_nID = id;
  OnCmdMsg(id, CN_UPDATE_COMMAND_UI, &question, nullptr);
  return !question.m_bEnabled || OnCmdMsg(id, CN_COMMAND, nullptr, nullptr);
}

BOOL CWnd::OnNotify(WPARAM, LPARAM, LRESULT *) { return FALSE; }

BOOL CWnd::OnChildNotify(UINT, WPARAM, LPARAM, LRESULT *) { return FALSE; }

BOOL CWnd::ReflectToControl(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result) {
  HWND control = nullptr;
  switch (message) {
  case WM_DRAWITEM:
    control = reinterpret_cast<const DRAWITEMSTRUCT *>(lParam)->hwndItem;
    break;
  case WM_MEASUREITEM:
    control = ::GetDlgItem(m_hWnd, static_cast<int>(reinterpret_cast<const MEASUREITEMSTRUCT *>(lParam)->CtlID));
    break;
  case WM_COMPAREITEM:
    control = reinterpret_cast<const COMPAREITEMSTRUCT *>(lParam)->hwndItem;
    break;
  default:
    control = reinterpret_cast<const DELETEITEMSTRUCT *>(lParam)->hwndItem;
    break;
  }
  CWnd *child = FromHandlePermanent(control);
  return child && child->OnChildNotify(message, wParam, lParam, result);
}

BOOL CWnd::OnHelpInfo(HELPINFO *) {
  HWND active = ::GetActiveWindow();
  if ((GetStyle() & WS_CHILD) != 0 || !active || AnyDown({VK_SHIFT, VK_CONTROL, VK_MENU}))
    return static_cast<BOOL>(Default());
  ::SendMessageA(active, WM_COMMAND, ID_HELP, 0);
  return TRUE;
}

// ---- Calls on the window ----

void CWnd::GetWindowText(CString &text) const {
  const int length = ::GetWindowTextLengthA(m_hWnd);
  text.resize(static_cast<size_t>(length) + 1);
  text.resize(static_cast<size_t>(::GetWindowTextA(m_hWnd, text.data(), length + 1)));
}

void CWnd::CenterWindow(const CWnd *other) {
  HWND around = other ? other->m_hWnd : ::GetParent(m_hWnd);
  RECT area;
  RECT own;
  if (!::GetWindowRect(around ? around : ::GetDesktopWindow(), &area) || !::GetWindowRect(m_hWnd, &own))
    return;
  const int x = (area.left + area.right - (own.right - own.left)) / 2;
  const int y = (area.top + area.bottom - (own.bottom - own.top)) / 2;
  ::SetWindowPos(m_hWnd, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}
