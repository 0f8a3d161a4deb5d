#include "wizard/page_fields.h"

#include "resources/resource.h"
#include "wizard/service_ini.h"

CString GetText(const CWnd &page, int control) {
  CString text;
  page.GetDlgItem(control)->GetWindowText(text);
  return text;
}

CString GetTrimmedText(const CWnd &page, int control) {
  CString text = GetText(page, control);
  text.TrimRight();
  return text;
}

void FillDomainCombo(const CWnd &page, const char *section) {
  for (const std::string &domain : ReadDomains(section))
    page.SendDlgItemMessage(IDC_CHOICE, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(domain.c_str()));
}

void ShowList(const CWnd &page, bool open) {
  page.SendDlgItemMessage(IDC_CHOICE, CB_SHOWDROPDOWN, open ? TRUE : FALSE, 0);
}

void MoveFocus(const CWnd &page, int control) {
  ::SendMessageA(page.m_hWnd, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(::GetDlgItem(page.m_hWnd, control)), TRUE);
}

bool Refuses(const CWnd &page, const input_tests::Tests &tests, const std::string &text, Focus focus) {
  const InputTest *const refusal = FindRefusal(tests, text);
  if (refusal == nullptr)
    return false;
  AfxMessageBox(refusal->message);
  if (focus == Focus::Now)
    MoveFocus(page, refusal->control);
  else
    page.PostMessage(FocusControlMessage, static_cast<WPARAM>(refusal->control));
  return true;
}

bool TakeTrimmed(const CWnd &page, int control, const input_tests::Tests &tests, std::string &field, Focus focus) {
  const CString text = GetTrimmedText(page, control);
  if (Refuses(page, tests, text, focus))
    return false;
  field = text;
  page.SetDlgItemText(control, text);
  return true;
}
