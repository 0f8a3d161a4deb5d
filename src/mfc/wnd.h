// A window that an object of the framework stands for. A window whose messages an object handles is attached to it and
// found by its handle; for any other window there is an object that lives as long as the window and only calls it.
#pragma once

#include "mfc/cmd_target.h"
#include "mfc/cstring.h"
#include "mfc/gdi.h"

class CWnd : public CCmdTarget {
  DECLARE_DYNAMIC(CWnd)

public:
  HWND m_hWnd = nullptr;

  CWnd() = default;
  // A window that outlives its object goes back to its own procedure.
  ~CWnd() override;

  static CWnd *FromHandle(HWND window);
  // Only an attached one; null otherwise.
  static CWnd *FromHandlePermanent(HWND window);
  static CWnd *GetDesktopWindow() { return FromHandle(::GetDesktopWindow()); }

  // The window that a message box is to belong to: the last active popup of the thread's active window, or of the open
  // sheet if no window is active. If there is another, enabled window at the top of its owners, that is disabled, and
  // handed out for the caller to enable again, null otherwise.
  static HWND GetSafeOwner_(HWND *topLevelToEnable);

  // Attaches the object, tells it by PreSubclassWindow and puts it ahead of the window's procedure, until the window
  // ends or the second is called. FALSE if there is no window, or the object has one.
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
  // Moves the window to the middle of another, null for its parent's.
  void CenterWindow(const CWnd *other = nullptr);

  // A window's procedure with the library's module state current; no exception comes out of it.
  friend LRESULT AfxCallWndProc(CWnd &window, UINT message, WPARAM wParam, LPARAM lParam);

protected:
  virtual void PreSubclassWindow() {}

  virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
  // FALSE if nothing handled the message.
  virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result);
  virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
  virtual BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT *result);
  virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
  // A message that the parent got about this control.
  virtual BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result);

  // The answer to a message whose handler threw an exception.
  virtual LRESULT OnFailure(UINT message, LPARAM lParam);

  // Gives the message that is being handled to the window's default handling.
  LRESULT Default();

  BOOL OnHelpInfo(HELPINFO *);

  DECLARE_MESSAGE_MAP()

  void Attach(HWND window);
  HWND Detach();
  // Null if no object is attached to a window that has no parent, as the sheet has none.
  static HWND AttachedTopLevel();
  BOOL ReflectToControl(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result);

  WNDPROC m_pfnSuper = nullptr;
};
