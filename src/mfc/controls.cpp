#include "mfc/controls.h"

IMPLEMENT_DYNAMIC(CComboBox, CWnd)

int CComboBox::AddString(const std::string &text) {
  return static_cast<int>(SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str())));
}

DWORD_PTR CComboBox::GetItemData(int index) const {
  return static_cast<DWORD_PTR>(SendMessage(CB_GETITEMDATA, static_cast<WPARAM>(index)));
}

int CComboBox::SetItemData(int index, DWORD_PTR data) {
  return static_cast<int>(SendMessage(CB_SETITEMDATA, static_cast<WPARAM>(index), static_cast<LPARAM>(data)));
}

void CComboBox::PreSubclassWindow() {
  if ((GetStyle() & CBS_OWNERDRAWFIXED) == 0)
    return;
  MEASUREITEMSTRUCT measure{};
  measure.CtlType = ODT_COMBOBOX;
  measure.CtlID = static_cast<UINT>(::GetDlgCtrlID(m_hWnd));
  measure.itemHeight = static_cast<UINT>(SendMessage(CB_GETITEMHEIGHT));
  MeasureItem(&measure);
  for (const WPARAM part : {static_cast<WPARAM>(-1), WPARAM{0}}) // the selection field, and the entries of the list
    SendMessage(CB_SETITEMHEIGHT, part, static_cast<LPARAM>(measure.itemHeight));
}

BOOL CComboBox::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result) {
  *result = TRUE;
  switch (message) {
  case WM_DRAWITEM:
    DrawItem(reinterpret_cast<DRAWITEMSTRUCT *>(lParam));
    return TRUE;
  case WM_MEASUREITEM:
    MeasureItem(reinterpret_cast<MEASUREITEMSTRUCT *>(lParam));
    return TRUE;
  case WM_COMPAREITEM:
    *result = CompareItem(reinterpret_cast<COMPAREITEMSTRUCT *>(lParam));
    return TRUE;
  case WM_DELETEITEM:
    DeleteItem(reinterpret_cast<DELETEITEMSTRUCT *>(lParam));
    return TRUE;
  default:
    return CWnd::OnChildNotify(message, wParam, lParam, result);
  }
}
