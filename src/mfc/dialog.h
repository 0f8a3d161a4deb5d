// Dialogs, and the exchange between their controls and their fields.
#pragma once

#include "mfc/wnd.h"

class CDataExchange {
public:
  BOOL m_bSaveAndValidate;
  CWnd *m_pDlgWnd;

  CDataExchange(CWnd *dialog, BOOL save) : m_bSaveAndValidate(save), m_pDlgWnd(dialog) {}
};

// Makes a field stand for a control, from the first exchange until the control's window ends.
void DDX_Control(CDataExchange *exchange, int id, CWnd &control);

class CDialog : public CWnd {
  DECLARE_DYNAMIC(CDialog)

public:
  BOOL OnCmdMsg(UINT nID, int nCode, void *pExtra, AFX_CMDHANDLERINFO *pHandlerInfo) override;

protected:
  // TRUE to have the focus set to the first control.
  virtual BOOL OnInitDialog();

  BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result) override;
};
