// Dialogs, and the exchange of data between a dialog's controls and its member variables.
#pragma once

#include "mfc/wnd.h"

// A window that is opened as a dialog. It handles the first message, and passes on commands without a handler.
class CDialogWnd : public CWnd {
  DECLARE_DYNAMIC(CDialogWnd)

public:
  BOOL OnCmdMsg(UINT nID, int nCode, void *pExtra, AFX_CMDHANDLERINFO *pHandlerInfo) override;

protected:
  // Attaches the object to a window whose controls exist already, and calls OnInitDialog. Throws nothing.
  LRESULT Open(HWND window, WPARAM wParam = 0, LPARAM lParam = 0) noexcept;

  // TRUE lets the dialog set the focus to the first control.
  virtual BOOL OnInitDialog() { return TRUE; }

  BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result) override;
};

class CDataExchange {
public:
  CWnd *m_pDlgWnd;

  explicit CDataExchange(CWnd *dialog) : m_pDlgWnd(dialog) {}
};

// Attaches a member variable to a control until the control's window is destroyed.
void DDX_Control(CDataExchange *exchange, int id, CWnd &control);

class CDialog : public CDialogWnd {
  DECLARE_DYNAMIC(CDialog)

protected:
  virtual void DoDataExchange(CDataExchange *) {}

  BOOL OnInitDialog() override;
};
