// Dialogs: windows that are made from templates and run by a dialog procedure before the class's own.
#pragma once

#include "win32/linux/windows/dialog_template.h"
#include "win32/linux/windows/window_tree.h"

namespace machine {

constexpr UINT DM_SETDEFID = WM_USER + 1;

// Makes a dialog, which isn't shown yet: the window, its controls, and then WM_INITDIALOG with the control that gets
// the focus if the procedure answers TRUE and the dialog is no child. Null if it can't be made.
HWND CreateDialogFrom(const DialogTemplate &dialog, HWND parent, DLGPROC procedure, LPARAM parameter);

// The procedure of the class of dialogs.
LRESULT DialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

// The next control that Tab stops at behind `control`, or the previous one; the first for null. Null if there is none.
HWND NextTabStop(HWND dialog, HWND control, bool previous);

// Does what IsDialogMessage does for Esc and Enter: the key presses a button of the dialog, unless the window with the
// focus wants it. False if the message is still to be sent.
bool PressDialogKey(HWND dialog, const PostedMessage &message);

} // namespace machine
