// The procedures of the controls that every system has, and what they have in common.
#pragma once

#include "win32/linux/windows/window_tree.h"

namespace machine {

// What WM_GETDLGCODE answers, besides DLGC_WANTALLKEYS.
constexpr LRESULT DLGC_WANTARROWS = 0x0001;
constexpr LRESULT DLGC_HASSETSEL = 0x0008;
constexpr LRESULT DLGC_DEFPUSHBUTTON = 0x0010;
constexpr LRESULT DLGC_UNDEFPUSHBUTTON = 0x0020;
constexpr LRESULT DLGC_WANTCHARS = 0x0080;
constexpr LRESULT DLGC_STATIC = 0x0100;
constexpr LRESULT DLGC_BUTTON = 0x2000;

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

// What every control does that has nothing of its own to do: it keeps a font and is painted anew when it changes.
LRESULT ControlDefault(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);

// Tells a control's parent by WM_COMMAND.
void NotifyParent(const Window &control, WORD code);

} // namespace machine
