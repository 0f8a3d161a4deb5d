// Controls with operations of their own.
#pragma once

#include "mfc/wnd.h"

// Positions count from 0; -1 (CB_ERR) for none.
class CComboBox : public CWnd {
  DECLARE_DYNAMIC(CComboBox)

public:
  int AddString(const std::string &text);
  int GetCurSel() const { return static_cast<int>(SendMessage(CB_GETCURSEL)); }
  int SetCurSel(int index) { return static_cast<int>(SendMessage(CB_SETCURSEL, static_cast<WPARAM>(index))); }
  DWORD_PTR GetItemData(int index) const;
  int SetItemData(int index, DWORD_PTR data);

  // Of a list that draws its entries itself.
  virtual void DrawItem(DRAWITEMSTRUCT *) {}
  virtual void MeasureItem(MEASUREITEMSTRUCT *) {}
  virtual int CompareItem(COMPAREITEMSTRUCT *) { return 0; }
  virtual void DeleteItem(DELETEITEMSTRUCT *) {}

protected:
  // A list of a dialog asks for the height of its entries before the object is attached to it.
  void PreSubclassWindow() override;
  BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result) override;
};
