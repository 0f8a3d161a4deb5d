// The procedures of the controls that every system has, and what they have in common.
#pragma once

#include "win32/linux/windows/window_tree.h"

namespace machine {

// What a dialog reads of an answer to WM_GETDLGCODE, besides DLGC_WANTALLKEYS.
constexpr LRESULT DLGC_HASSETSEL = 0x0008;
constexpr LRESULT DLGC_DEFPUSHBUTTON = 0x0010;
constexpr LRESULT DLGC_UNDEFPUSHBUTTON = 0x0020;

// What edit controls tell their parents.
constexpr WORD EN_SETFOCUS = 0x0100;
constexpr WORD EN_KILLFOCUS = 0x0200;
constexpr WORD EN_CHANGE = 0x0300;
constexpr WORD EN_UPDATE = 0x0400;
constexpr WORD EN_MAXTEXT = 0x0501;

// The edit control that is part of a combo box.
constexpr DWORD ES_COMBO = 0x0200;
constexpr int ComboEditId = 1001;

LRESULT ButtonProcedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT StaticProcedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT EditProcedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT ComboBoxProcedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);

// Tells a control's parent by WM_COMMAND.
inline void NotifyParent(const Window &control, WORD code) {
  SendMessageA(control.parent, WM_COMMAND, MAKEWPARAM(static_cast<unsigned>(control.id), code),
               reinterpret_cast<LPARAM>(control.handle));
}

} // namespace machine
