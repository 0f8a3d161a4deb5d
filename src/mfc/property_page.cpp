#include "mfc/property_page.h"

IMPLEMENT_DYNAMIC(CPropertyPage, CDialog)

CPropertyPage::CPropertyPage(UINT idTemplate, UINT) {
  m_psp.dwSize = sizeof m_psp;
  m_psp.dwFlags = PSP_DEFAULT;
  m_psp.pszTemplate = MAKEINTRESOURCEA(idTemplate);
  m_psp.pfnDlgProc = DialogProc;
  m_psp.lParam = reinterpret_cast<LPARAM>(this);
}

INT_PTR CALLBACK CPropertyPage::DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_INITDIALOG || FromHandlePermanent(dialog))
    return FALSE;
  auto *page = reinterpret_cast<CPropertyPage *>(reinterpret_cast<const PROPSHEETPAGEA_V2 *>(lParam)->lParam);
  return page->Open(dialog, wParam, lParam);
}

BOOL CPropertyPage::OnNotify(WPARAM wParam, LPARAM lParam, LRESULT *result) {
  const auto &notification = *reinterpret_cast<const NMHDR *>(lParam);
  if (notification.hwndFrom != m_hWnd && notification.hwndFrom != ::GetParent(m_hWnd))
    return CDialog::OnNotify(wParam, lParam, result);

  *result = 0;
  switch (notification.code) {
  case PSN_SETACTIVE:
    *result = OnSetActive() ? 0 : -1;
    return TRUE;
  case PSN_WIZBACK:
    *result = OnWizardBack();
    return TRUE;
  case PSN_WIZNEXT:
    *result = OnWizardNext();
    return TRUE;
  case PSN_WIZFINISH:
    *result = !OnWizardFinish();
    return TRUE;
  case PSN_QUERYCANCEL:
    *result = !OnQueryCancel();
    return TRUE;
  case PSN_HELP:
    SendMessage(WM_COMMAND, ID_HELP);
    return TRUE;
  default:
    return CDialog::OnNotify(wParam, lParam, result);
  }
}

LRESULT CPropertyPage::OnFailure(UINT message, LPARAM lParam) {
  constexpr LRESULT Stay = -1;
  if (message == WM_NOTIFY) {
    const UINT code = reinterpret_cast<const NMHDR *>(lParam)->code;
    if (code == PSN_WIZNEXT || code == PSN_WIZFINISH)
      return Stay;
  }
  return CDialog::OnFailure(message, lParam);
}
