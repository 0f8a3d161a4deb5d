// A window of the framework. An object that handles the messages of its window is attached to the window and found by
// its handle. For any other window there is a plain object, which lives as long as the window and only calls it.
#pragma once

#include "mfc/cmd_target.h"
#include "mfc/cstring.h"
#include "mfc/gdi.h"

class CWnd : public CCmdTarget {
  DECLARE_DYNAMIC(CWnd)

public:
  HWND m_hWnd = nullptr;

  CWnd() = default;
  // If the window still exists, it gets back its own procedure.
  ~CWnd() override;

  static CWnd *FromHandle(HWND window);
  // Returns only an attached object; null otherwise.
  static CWnd *FromHandlePermanent(HWND window);
  static CWnd *GetDesktopWindow() { return FromHandle(::GetDesktopWindow()); }

  // The owner for a message box: the last active popup of the thread's active window, or of the open sheet if no window
  // is active. If the top-level window above it is another, enabled window, that one is disabled and returned in
  // `topLevelToEnable`, so that the caller can enable it again; otherwise null is returned there.
  static HWND GetSafeOwner_(HWND *topLevelToEnable);

  // SubclassWindow attaches the object, calls PreSubclassWindow and puts the object's procedure before the window's
  // own, until the window is destroyed or UnsubclassWindow is called. FALSE if there is no window, or the object has
  // one already.
  BOOL SubclassWindow(HWND window);
  HWND UnsubclassWindow();

  LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return ::SendMessageA(m_hWnd, message, wParam, lParam);
  }
  BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return ::PostMessageA(m_hWnd, message, wParam, lParam);
  }

  CWnd *GetParent() const { return FromHandle(::GetParent(m_hWnd)); }
  LRESULT SendDlgItemMessage(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return ::SendDlgItemMessageA(m_hWnd, id, message, wParam, lParam);
  }
  void SetDlgItemText(int id, const std::string &text) const { ::SetDlgItemTextA(m_hWnd, id, text.c_str()); }
  // Null if there is no such control.
  CWnd *GetDlgItem(int id) const { return FromHandle(::GetDlgItem(m_hWnd, id)); }
  DWORD GetStyle() const { return static_cast<DWORD>(::GetWindowLongA(m_hWnd, GWL_STYLE)); }

  void GetWindowText(CString &text) const;
  void SetWindowText(const std::string &text) { ::SetWindowTextA(m_hWnd, text.c_str()); }
  // Moves the window to the middle of another window, by default its parent.
  void CenterWindow(const CWnd *other = nullptr);

  // The window procedure of all objects, which makes the library's module state the current one. Throws nothing.
  friend LRESULT AfxCallWndProc(CWnd &window, UINT message, WPARAM wParam, LPARAM lParam);

protected:
  virtual void PreSubclassWindow() {}

  virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
  // Returns FALSE if no handler was found.
  virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result);
  virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
  virtual BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT *result);
  virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
  // Handles a message about this control that its parent got.
  virtual BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result);

  // The result of a message whose handler threw an exception.
  virtual LRESULT OnFailure(UINT message, LPARAM lParam);

  // Passes the message that is being handled to the window's default handling.
  LRESULT Default();

  BOOL OnHelpInfo(HELPINFO *);

  DECLARE_MESSAGE_MAP()

  void Attach(HWND window);
  HWND Detach();
  // The top-level window with an attached object, which is the sheet; null if there is none.
  static HWND AttachedTopLevel();
  BOOL ReflectToControl(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result);

  WNDPROC m_pfnSuper = nullptr;
};
