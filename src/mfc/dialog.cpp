#include "mfc/dialog.h"

#include "mfc/app.h"

IMPLEMENT_DYNAMIC(CDialogWnd, CWnd)
IMPLEMENT_DYNAMIC(CDialog, CDialogWnd)

LRESULT CDialogWnd::Open(HWND window, WPARAM wParam, LPARAM lParam) noexcept {
  try {
    SubclassWindow(window);
  } catch (...) {
    return FALSE;
  }
  return AfxCallWndProc(*this, WM_INITDIALOG, wParam, lParam);
}

BOOL CDialogWnd::OnCmdMsg(UINT nID, int nCode, void *pExtra, AFX_CMDHANDLERINFO *pHandlerInfo) {
  if (CWnd::OnCmdMsg(nID, nCode, pExtra, pHandlerInfo))
    return TRUE;
  // A control's notification concerns only its own dialog, and control numbers aren't command numbers.
  const bool isCommand = (nCode == CN_COMMAND || nCode == CN_UPDATE_COMMAND_UI) && nID >= 0x8000 && nID < 0xF000;
  if (!isCommand)
    return FALSE;
  CWnd *parent = GetParent();
  if (parent && parent->OnCmdMsg(nID, nCode, pExtra, pHandlerInfo))
    return TRUE;
  CWinApp *app = AfxGetApp();
  return app && app->OnCmdMsg(nID, nCode, pExtra, pHandlerInfo);
}

BOOL CDialogWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result) {
  if (message != WM_INITDIALOG)
    return CWnd::OnWndMsg(message, wParam, lParam, result);
  *result = OnInitDialog();
  return TRUE;
}

void DDX_Control(CDataExchange *exchange, int id, CWnd &control) {
  control.SubclassWindow(::GetDlgItem(exchange->m_pDlgWnd->m_hWnd, id));
}

BOOL CDialog::OnInitDialog() {
  CDataExchange exchange(this);
  DoDataExchange(&exchange);
  return TRUE;
}
