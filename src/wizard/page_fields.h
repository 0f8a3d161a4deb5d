// The fields of a page: reading and testing what was typed, and moving the focus.
#pragma once

#include "mfc/afxwin.h"
#include "wizard/input_rules.h"

#include <string>

CString GetText(const CWnd &page, int control);
CString GetTrimmedText(const CWnd &page, int control);

// Fills the page's list with the domains of a section of service.ini.
void FillDomainCombo(const CWnd &page, const char *section);

// Opens or closes the page's list.
void ShowList(const CWnd &page, bool open);

void MoveFocus(const CWnd &page, int control);

// When the control of a refused text gets the focus: at once, or after the sheet has handled the refusal. For the
// latter, FocusControlMessage is posted to the page with the control's id.
enum class Focus { Now, Later };
constexpr UINT FocusControlMessage = WM_USER + 101;

// Whether a test refuses the text. If so, this shows its message and moves the focus to its control.
bool Refuses(const CWnd &page, const input_tests::Tests &tests, const std::string &text, Focus focus = Focus::Now);

// Reads a control's text without white space at its end. If it passes the tests, it is stored, and shown without that
// white space.
bool TakeTrimmed(const CWnd &page, int control, const input_tests::Tests &tests, std::string &field,
                 Focus focus = Focus::Now);
