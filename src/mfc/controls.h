// Classes for controls.
#pragma once

#include "mfc/wnd.h"

// Indexes count from 0; CB_ERR (-1) means no entry.
class CComboBox : public CWnd {
  DECLARE_DYNAMIC(CComboBox)

public:
  int AddString(const std::string &text);
  int GetCurSel() const { return static_cast<int>(SendMessage(CB_GETCURSEL)); }
  int SetCurSel(int index) { return static_cast<int>(SendMessage(CB_SETCURSEL, static_cast<WPARAM>(index))); }
  DWORD_PTR GetItemData(int index) const;
  int SetItemData(int index, DWORD_PTR data);

  // For a list that draws its entries itself.
  virtual void DrawItem(DRAWITEMSTRUCT *) {}
  virtual void MeasureItem(MEASUREITEMSTRUCT *) {}
  virtual int CompareItem(COMPAREITEMSTRUCT *) { return 0; }
  virtual void DeleteItem(DELETEITEMSTRUCT *) {}

protected:
  // A dialog's list sends WM_MEASUREITEM before the object is attached to it, so this sets the entries' height.
  void PreSubclassWindow() override;
  BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result) override;
};
