#include "mfc/dialog.h"

IMPLEMENT_DYNAMIC(CDialog, CWnd)

void DDX_Control(CDataExchange *exchange, int id, CWnd &control) {
  if (!control.m_hWnd)
    control.SubclassWindow(::GetDlgItem(exchange->m_pDlgWnd->m_hWnd, id));
}

BOOL CDialog::OnCmdMsg(UINT nID, int nCode, void *pExtra, AFX_CMDHANDLERINFO *pHandlerInfo) {
  return CWnd::OnCmdMsg(nID, nCode, pExtra, pHandlerInfo) || RouteCommand(nID, nCode, pExtra, pHandlerInfo);
}

BOOL CDialog::OnInitDialog() {
  UpdateData(FALSE);
  return TRUE;
}

BOOL CDialog::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result) {
  if (message != WM_INITDIALOG)
    return CWnd::OnWndMsg(message, wParam, lParam, result);
  *result = OnInitDialog();
  return TRUE;
}
