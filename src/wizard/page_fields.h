// The fields of a page: reading them, testing what was typed, and moving between them.
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

// When the control of a refused text gets the focus: at once, or once the sheet has dealt with the refusal, by the
// message FocusControlMessage that is posted to the page with the control's id.
enum class Focus { Now, Later };
constexpr UINT FocusControlMessage = WM_USER + 101;

// Whether a test refuses the text. If so its message has been shown, and its control gets the focus.
bool Refuses(const CWnd &page, const input_tests::Tests &tests, const std::string &text, Focus focus = Focus::Now);

// Takes a control's text without white space at its end: once it has passed the tests it is stored, and shown so.
bool TakeTrimmed(const CWnd &page, int control, const input_tests::Tests &tests, std::string &field,
                 Focus focus = Focus::Now);
