// Dialogs, and the exchange between their controls and their fields.
#pragma once

#include "mfc/wnd.h"

// A window that is opened as a dialog: it handles the first message, and hands on what commands it has no handler for.
class CDialogWnd : public CWnd {
  DECLARE_DYNAMIC(CDialogWnd)

public:
  BOOL OnCmdMsg(UINT nID, int nCode, void *pExtra, AFX_CMDHANDLERINFO *pHandlerInfo) override;

protected:
  // Attaches the object to a window whose controls are there, and tells it so. No exception comes out of it.
  LRESULT Open(HWND window, WPARAM wParam = 0, LPARAM lParam = 0) noexcept;

  // TRUE to have the focus set to the first control.
  virtual BOOL OnInitDialog() { return TRUE; }

  BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result) override;
};

class CDataExchange {
public:
  CWnd *m_pDlgWnd;

  explicit CDataExchange(CWnd *dialog) : m_pDlgWnd(dialog) {}
};

// Makes a field stand for a control, until the control's window ends.
void DDX_Control(CDataExchange *exchange, int id, CWnd &control);

class CDialog : public CDialogWnd {
  DECLARE_DYNAMIC(CDialog)

protected:
  virtual void DoDataExchange(CDataExchange *) {}

  BOOL OnInitDialog() override;
};
