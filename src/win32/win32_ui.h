// The user-interface half of the platform: windows, dialogs, controls, property sheets, drawing. As in win32.h, Windows
// has its own headers for it; elsewhere this declares just what AcctKit and its host program use, and what tests need
// to make windows; src/win32/linux/windows implements it. There a window is a record with a text, a state and a window
// procedure; a front end (a script, a terminal; src/win32/linux/public/front_end.h) shows it to a user; what is drawn
// goes nowhere.
//
// What holds for all calls:
// - A window belongs to the thread that made it. Its procedure runs on that thread, and its handle is valid there
// alone.
// - If the handle is null, or its window is destroyed or belongs to another thread, a call does nothing and returns 0,
//   FALSE or null. Here no call sets GetLastError.
// - Texts are in code page 932 and end with a 0. Pointers must not be null unless the call allows it.
// - Positions and sizes are in pixels.
#pragma once

#include "win32/win32.h"

#ifdef _WIN32

#include <commctrl.h>
#include <prsht.h>

#else

#define CALLBACK

// ---- Types ----

using WPARAM = uintptr_t;
using LPARAM = intptr_t;
using LRESULT = intptr_t;
using LONG_PTR = intptr_t;
using UINT_PTR = uintptr_t;
using COLORREF = DWORD;
using HDC = struct HDC__ *;
using HGDIOBJ = void *;
using HFONT = struct HFONT__ *;
using HBRUSH = struct HBRUSH__ *;
using HMENU = struct HMENU__ *;
using HIMAGELIST = struct IMAGELIST__ *;
using WNDPROC = LRESULT (*)(HWND, UINT, WPARAM, LPARAM);
using DLGPROC = INT_PTR (*)(HWND, UINT, WPARAM, LPARAM);

struct POINT {
  LONG x;
  LONG y;
};
struct SIZE {
  LONG cx;
  LONG cy;
};
struct RECT {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
};

constexpr WORD LOWORD(uintptr_t value) { return static_cast<WORD>(value & 0xFFFF); }
constexpr WORD HIWORD(uintptr_t value) { return static_cast<WORD>(value >> 16 & 0xFFFF); }
constexpr LPARAM MAKELPARAM(unsigned low, unsigned high) {
  return static_cast<LPARAM>((low & 0xFFFF) | (high & 0xFFFF) << 16);
}
constexpr WPARAM MAKEWPARAM(unsigned low, unsigned high) { return static_cast<WPARAM>(MAKELPARAM(low, high)); }
// The name of a resource that has a number, which stands where the address of a text would.
inline char *MAKEINTRESOURCEA(unsigned id) { return reinterpret_cast<char *>(static_cast<uintptr_t>(id & 0xFFFF)); }

// ---- Windows ----

DWORD GetCurrentThreadId();

constexpr DWORD WS_POPUP = 0x80000000;
constexpr DWORD WS_CHILD = 0x40000000;
constexpr DWORD WS_VISIBLE = 0x10000000;

constexpr int GWL_STYLE = -16;
constexpr int GWLP_WNDPROC = -4;
constexpr int DWLP_MSGRESULT = 0;
constexpr int DWLP_USER = static_cast<int>(sizeof(LRESULT) + sizeof(DLGPROC));

constexpr UINT GW_HWNDNEXT = 2;
constexpr UINT GW_OWNER = 4;
constexpr UINT GW_CHILD = 5;

constexpr int SW_HIDE = 0;
constexpr int SW_SHOW = 5;
constexpr UINT SWP_NOSIZE = 0x1;
constexpr UINT SWP_NOZORDER = 0x4;
constexpr UINT SWP_NOACTIVATE = 0x10;

constexpr UINT WM_NULL = 0x0000;
constexpr UINT WM_DESTROY = 0x0002;
constexpr UINT WM_SETFOCUS = 0x0007;
constexpr UINT WM_KILLFOCUS = 0x0008;
constexpr UINT WM_ENABLE = 0x000A;
constexpr UINT WM_PAINT = 0x000F;
constexpr UINT WM_CLOSE = 0x0010;
constexpr UINT WM_SHOWWINDOW = 0x0018;
constexpr UINT WM_NEXTDLGCTL = 0x0028;
constexpr UINT WM_DRAWITEM = 0x002B;
constexpr UINT WM_MEASUREITEM = 0x002C;
constexpr UINT WM_DELETEITEM = 0x002D;
constexpr UINT WM_SETFONT = 0x0030;
constexpr UINT WM_GETFONT = 0x0031;
constexpr UINT WM_COMPAREITEM = 0x0039;
constexpr UINT WM_NOTIFY = 0x004E;
constexpr UINT WM_HELP = 0x0053;
constexpr UINT WM_NCDESTROY = 0x0082;
constexpr UINT WM_GETDLGCODE = 0x0087;
constexpr UINT WM_KEYDOWN = 0x0100;
constexpr UINT WM_CHAR = 0x0102;
constexpr UINT WM_INITDIALOG = 0x0110;
constexpr UINT WM_COMMAND = 0x0111;
constexpr UINT WM_LBUTTONDBLCLK = 0x0203;
constexpr UINT WM_USER = 0x0400;

constexpr UINT_PTR MK_LBUTTON = 0x0001;
constexpr int VK_BACK = 0x08;
constexpr int VK_RETURN = 0x0D;
constexpr int VK_SHIFT = 0x10;
constexpr int VK_CONTROL = 0x11;
constexpr int VK_MENU = 0x12;
constexpr int VK_ESCAPE = 0x1B;
constexpr int VK_END = 0x23;
constexpr int VK_HOME = 0x24;
constexpr int VK_UP = 0x26;
constexpr int VK_DOWN = 0x28;

struct NMHDR {
  HWND hwndFrom;
  UINT_PTR idFrom;
  UINT code;
};
struct HELPINFO {
  UINT cbSize;
  int iContextType;
  int iCtrlId;
  HANDLE hItemHandle;
  DWORD_PTR dwContextId;
  POINT MousePos;
};

// Makes a window of the class Button, Static, Edit, ComboBox or #32770 (a dialog), in letters of any case. A child
// (WS_CHILD) needs a parent that isn't being destroyed; of a top-level window (WS_POPUP) the parent is the owner, or
// null. The menu of a child is its id; extended style, instance and parameter don't count. Null if it can't be made.
HWND CreateWindowExA(DWORD exStyle, const char *className, const char *text, DWORD style, int x, int y, int width,
                     int height, HWND parent, HMENU menu, HINSTANCE instance, void *parameter);
// Sends WM_DESTROY to the window and then to its children, and WM_NCDESTROY last of all; windows that it owns go first.
// FALSE for a window that is being destroyed already.
BOOL DestroyWindow(HWND window);
BOOL IsWindow(HWND window);
LRESULT DefWindowProcA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
// The procedure may be null.
LRESULT CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam);
// Of GWL_STYLE alone.
LONG GetWindowLongA(HWND window, int index);
// Of GWLP_WNDPROC, DWLP_MSGRESULT and DWLP_USER; the second answers what was there before.
LONG_PTR GetWindowLongPtrA(HWND window, int index);
LONG_PTR SetWindowLongPtrA(HWND window, int index, LONG_PTR value);
// A buffer of `size` bytes gets the name, cut to fit; answers its length.
int GetClassNameA(HWND window, char *buffer, int size);

// Runs the window's procedure, and answers what that answers.
LRESULT SendMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
// Queues the message for the thread's modal loop, which hands messages out in their order. Esc and Enter, as
// WM_KEYDOWN, do what they do to a dialog, unless the window answers WM_GETDLGCODE that it wants them itself.
BOOL PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// The parent of a child, the owner of a top-level window, or null.
HWND GetParent(HWND window);
HWND GetWindow(HWND window, UINT which);
HWND GetDesktopWindow();
// The thread's top-level window that has the focus, or had it last.
HWND GetActiveWindow();
// The window that was active last, of this one and the visible ones that it owns, directly or not.
HWND GetLastActivePopup(HWND owner);

// Does nothing to a drop-down list, which shows its selected entry.
BOOL SetWindowTextA(HWND window, const char *text);
// Copies the text into a buffer of `size` bytes, cut to whole characters and terminated. Its length without the 0.
int GetWindowTextA(HWND window, char *buffer, int size);
// In bytes, without the 0.
int GetWindowTextLengthA(HWND window);
// Returns whether the window was disabled before.
BOOL EnableWindow(HWND window, BOOL enable);
BOOL IsWindowEnabled(HWND window);
// Shows the window, and makes it the active one if it has no parent, or hides it (SW_HIDE). Returns whether it was
// shown before.
BOOL ShowWindow(HWND window, int command);
// Whether the window and all its parents are shown.
BOOL IsWindowVisible(HWND window);
// Null takes the focus from the window that has it. A window that is disabled, or within a disabled one, doesn't get
// it; the result is null then, and otherwise the window that had the focus before.
HWND SetFocus(HWND window);
HWND GetFocus();
// Negative while the key is down. Here no key ever is.
int16_t GetKeyState(int key);
// Bit 0 if the key was pressed since the last call for it.
int16_t GetAsyncKeyState(int key);

// The first in screen coordinates, the second relative to the window itself. Here windows have no frame.
BOOL GetWindowRect(HWND window, RECT *rect);
BOOL GetClientRect(HWND window, RECT *rect);
// Moves it within its parent and, without SWP_NOSIZE, gives it a size; its order among its siblings stays.
BOOL SetWindowPos(HWND window, HWND insertAfter, int x, int y, int width, int height, UINT flags);
BOOL CopyRect(RECT *target, const RECT *source);

// ---- Dialogs ----

constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDYES = 6;
constexpr int IDNO = 7;
constexpr int IDHELP = 9;
constexpr UINT DM_GETDEFID = WM_USER;
// The answer to WM_GETDLGCODE of a control that wants every key, also those that its dialog would use.
constexpr UINT DLGC_WANTALLKEYS = 0x0004;

// The first control with that id among the dialog's children.
HWND GetDlgItem(HWND dialog, int id);
int GetDlgCtrlID(HWND control);
BOOL SetDlgItemTextA(HWND dialog, int id, const char *text);
LRESULT SendDlgItemMessageA(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam);
// Turns dialog units into pixels.
BOOL MapDialogRect(HWND dialog, RECT *rect);

// ---- Controls ----
// They answer the messages declared here as on Windows. A parent gets WM_COMMAND for what a user does (keys, typing, a
// click), and not for what a program does, except for a new text of an edit control of one line. EM_LIMITTEXT, in
// bytes, cuts only what is typed. The caller provides the buffers: two DWORDs for EM_GETSEL, CB_GETLBTEXTLEN + 1 bytes
// for CB_GETLBTEXT.
//
// The parent of a list that it draws itself (CBS_OWNERDRAWFIXED, with CBS_HASSTRINGS) gets WM_MEASUREITEM twice when
// the list is made, for the closed list and for the entries; WM_DRAWITEM when the list is painted; and WM_DELETEITEM
// for each entry just before it is removed.

constexpr DWORD SS_ICON = 0x03;
constexpr DWORD SS_BITMAP = 0x0E;
constexpr DWORD SS_TYPEMASK = 0x1F;
constexpr DWORD SS_NOPREFIX = 0x80; // an ampersand is shown as it is
constexpr UINT STM_SETICON = 0x0170;
constexpr UINT STM_GETICON = 0x0171;

constexpr DWORD BS_PUSHBUTTON = 0x0;
constexpr DWORD BS_DEFPUSHBUTTON = 0x1;
constexpr DWORD BS_AUTOCHECKBOX = 0x3;
constexpr DWORD BS_TYPEMASK = 0xF;
constexpr UINT BM_GETCHECK = 0x00F0;
constexpr UINT BM_SETCHECK = 0x00F1;
constexpr UINT BM_CLICK = 0x00F5;
constexpr WORD BN_CLICKED = 0;
constexpr WPARAM BST_CHECKED = 1;

constexpr DWORD ES_MULTILINE = 0x0004;
constexpr DWORD ES_READONLY = 0x0800;
constexpr UINT EM_GETSEL = 0x00B0;
constexpr UINT EM_SETSEL = 0x00B1;
constexpr UINT EM_LIMITTEXT = 0x00C5;
constexpr UINT EM_REPLACESEL = 0x00C2;
constexpr UINT EM_GETLIMITTEXT = 0x00D5;

constexpr DWORD CBS_DROPDOWN = 0x0002;
constexpr DWORD CBS_DROPDOWNLIST = 0x0003;
constexpr DWORD CBS_OWNERDRAWFIXED = 0x0010;
constexpr DWORD CBS_HASSTRINGS = 0x0200;
constexpr UINT CB_ADDSTRING = 0x0143;
constexpr UINT CB_GETCOUNT = 0x0146;
constexpr UINT CB_GETCURSEL = 0x0147;
constexpr UINT CB_GETLBTEXT = 0x0148;
constexpr UINT CB_GETLBTEXTLEN = 0x0149;
constexpr UINT CB_RESETCONTENT = 0x014B;
constexpr UINT CB_SETCURSEL = 0x014E;
constexpr UINT CB_SHOWDROPDOWN = 0x014F;
constexpr UINT CB_GETITEMDATA = 0x0150;
constexpr UINT CB_SETITEMDATA = 0x0151;
constexpr UINT CB_SETITEMHEIGHT = 0x0153;
constexpr UINT CB_GETITEMHEIGHT = 0x0154;
constexpr UINT CB_GETDROPPEDSTATE = 0x0157;
constexpr LRESULT CB_ERR = -1;
constexpr WORD CBN_SELCHANGE = 1;

constexpr UINT ODT_COMBOBOX = 3;
constexpr UINT ODA_SELECT = 0x2;
constexpr UINT ODS_SELECTED = 0x0001;
constexpr UINT ODS_FOCUS = 0x0010;

struct DRAWITEMSTRUCT {
  UINT CtlType;
  UINT CtlID;
  UINT itemID;
  UINT itemAction;
  UINT itemState;
  HWND hwndItem;
  HDC hDC;
  RECT rcItem;
  ULONG_PTR itemData;
};
struct MEASUREITEMSTRUCT {
  UINT CtlType;
  UINT CtlID;
  UINT itemID;
  UINT itemWidth;
  UINT itemHeight;
  ULONG_PTR itemData;
};
struct COMPAREITEMSTRUCT {
  UINT CtlType;
  UINT CtlID;
  HWND hwndItem;
  UINT itemID1;
  ULONG_PTR itemData1;
  UINT itemID2;
  ULONG_PTR itemData2;
  DWORD dwLocaleId;
};
struct DELETEITEMSTRUCT {
  UINT CtlType;
  UINT CtlID;
  UINT itemID;
  HWND hwndItem;
  ULONG_PTR itemData;
};

// ---- Message boxes and help ----

constexpr UINT MB_OK = 0x0;
constexpr UINT MB_OKCANCEL = 0x1;
constexpr UINT MB_YESNOCANCEL = 0x3;
constexpr UINT MB_YESNO = 0x4;
constexpr UINT MB_ICONEXCLAMATION = 0x30;
constexpr UINT MB_ICONINFORMATION = 0x40;
constexpr UINT MB_ICONMASK = 0xF0;
constexpr UINT MB_TYPEMASK = 0x0F;
constexpr UINT HELP_CONTEXT = 1;

// Blocks until the user has answered; the owner, which may be null, is disabled meanwhile. The id of the button, 0 if
// no box came up. The window is a dialog with buttons of those ids, a static for the icon and one with the id 0xFFFF
// for the text.
int MessageBoxA(HWND owner, const char *text, const char *title, UINT type);
// Shows a help file, by its path on the machine, at a topic (HELP_CONTEXT). FALSE if no help came up.
BOOL WinHelpA(HWND window, const char *file, UINT command, ULONG_PTR data);

// ---- Drawing ----

constexpr int COLOR_WINDOW = 5;
constexpr int COLOR_WINDOWTEXT = 8;
constexpr int COLOR_HIGHLIGHT = 13;
constexpr int COLOR_HIGHLIGHTTEXT = 14;
constexpr int TRANSPARENT = 1;
constexpr UINT DT_VCENTER = 0x04;
constexpr UINT DT_SINGLELINE = 0x20;
constexpr DWORD PATCOPY = 0x00F00021;

struct PAINTSTRUCT {
  HDC hdc;
};
struct TEXTMETRICA {
  LONG tmHeight;
  LONG tmExternalLeading;
};

// A context that was begun is to be ended, and one that was got, released. Painting makes the window valid: only then
// does the modal loop stop sending it WM_PAINT.
HDC BeginPaint(HWND window, PAINTSTRUCT *paint);
BOOL EndPaint(HWND window, const PAINTSTRUCT *paint);
HDC GetDC(HWND window);
int ReleaseDC(HWND window, HDC context);
// Answers the font or brush that was selected before, which the caller selects again when it is done.
HGDIOBJ SelectObject(HDC context, HGDIOBJ object);
// What is created here is to be deleted. Of a font the height alone counts.
BOOL DeleteObject(HGDIOBJ object);
HBRUSH CreateSolidBrush(COLORREF colour);
HFONT CreateFontA(int height, int width, int escapement, int orientation, int weight, DWORD italic, DWORD underline,
                  DWORD strikeOut, DWORD charSet, DWORD outPrecision, DWORD clipPrecision, DWORD quality,
                  DWORD pitchAndFamily, const char *face);
BOOL GetTextMetricsA(HDC context, TEXTMETRICA *metrics);
// Both answer what was set before.
COLORREF SetTextColor(HDC context, COLORREF colour);
int SetBkMode(HDC context, int mode);
BOOL PatBlt(HDC context, int x, int y, int width, int height, DWORD operation);
// A text of `length` bytes, which needs no 0. Answers the height of a line.
int DrawTextA(HDC context, const char *text, int length, RECT *rect, UINT format);
BOOL DrawFocusRect(HDC context, const RECT *rect);
DWORD GetSysColor(int index);

// ---- Icons and image lists ----

constexpr UINT SHGFI_SYSICONINDEX = 0x4000;
constexpr UINT SHGFI_SMALLICON = 0x1;
constexpr UINT ILD_TRANSPARENT = 0x1;
constexpr UINT ILD_SELECTED = 0x4;

struct IMAGEINFO {
  RECT rcImage;
};

inline char *const IDI_HAND = MAKEINTRESOURCEA(32513);
inline char *const IDI_QUESTION = MAKEINTRESOURCEA(32514);
inline char *const IDI_EXCLAMATION = MAKEINTRESOURCEA(32515);
inline char *const IDI_ASTERISK = MAKEINTRESOURCEA(32516);
// A system icon (null module), the same handle at every call, never destroyed.
HICON LoadIconA(HINSTANCE instance, const char *name);
// List and index as SHGetFileInfoA gives them.
BOOL ImageList_GetImageInfo(HIMAGELIST list, int index, IMAGEINFO *info);
BOOL ImageList_Draw(HIMAGELIST list, int index, HDC context, int x, int y, UINT style);

// ---- Property sheets ----

constexpr DWORD PSP_DEFAULT = 0x0;
constexpr DWORD PSP_HASHELP = 0x20;
constexpr DWORD PSH_PROPSHEETPAGE = 0x8;
constexpr DWORD PSH_WIZARD = 0x20;
constexpr DWORD PSH_USECALLBACK = 0x100;
constexpr DWORD PSH_HASHELP = 0x200;
constexpr UINT PSCB_INITIALIZED = 1;

constexpr UINT PSN_SETACTIVE = static_cast<UINT>(-200);
constexpr UINT PSN_HELP = static_cast<UINT>(-205);
constexpr UINT PSN_WIZBACK = static_cast<UINT>(-206);
constexpr UINT PSN_WIZNEXT = static_cast<UINT>(-207);
constexpr UINT PSN_WIZFINISH = static_cast<UINT>(-208);
constexpr UINT PSN_QUERYCANCEL = static_cast<UINT>(-209);

constexpr UINT PSM_SETWIZBUTTONS = WM_USER + 112;
constexpr UINT PSM_PRESSBUTTON = WM_USER + 113;
constexpr UINT PSM_GETCURRENTPAGEHWND = WM_USER + 118;
constexpr UINT PSM_HWNDTOINDEX = WM_USER + 129;
constexpr UINT PSM_INDEXTOID = WM_USER + 134;
constexpr DWORD PSWIZB_BACK = 0x1;
constexpr DWORD PSWIZB_NEXT = 0x2;
constexpr DWORD PSWIZB_FINISH = 0x4;
constexpr int PSBTN_BACK = 0;
constexpr int PSBTN_NEXT = 1;
constexpr int PSBTN_FINISH = 2;
constexpr int PSBTN_CANCEL = 5;
constexpr int PSBTN_HELP = 6;

// The form of Internet Explorer 5. The plain name means a later one on Windows; the sheet takes either.
struct PROPSHEETPAGEA_V2 {
  DWORD dwSize;
  DWORD dwFlags;
  HINSTANCE hInstance;
  const char *pszTemplate;
  DLGPROC pfnDlgProc;
  LPARAM lParam;
};
using PROPSHEETPAGEA = PROPSHEETPAGEA_V2;
struct PROPSHEETHEADERA {
  DWORD dwSize;
  DWORD dwFlags;
  HWND hwndParent;
  HINSTANCE hInstance;
  UINT nPages;
  const PROPSHEETPAGEA *ppsp;
  int (*pfnCallback)(HWND, UINT, LPARAM);
};

// Runs a wizard (PSH_WIZARD) of pages that are given as records (PSH_PROPSHEETPAGE), each with the number of a dialog
// template among the resources of the record's module. Blocks until the wizard is finished (positive) or cancelled (0);
// -1 if no sheet came up. The callback gets PSCB_INITIALIZED once the sheet's window exists.
//
// A page's dialog is made when the page is first shown, and gets WM_INITDIALOG with its record. Its caption becomes the
// sheet's. The PSN_ notifications come to it as WM_NOTIFY with a NMHDR; an answer other than 0 skips the page
// (PSN_SETACTIVE) or refuses the user's action. The sheet's window is a dialog with the buttons ID_WIZBACK,
// ID_WIZNEXT, ID_WIZFINISH, IDCANCEL and IDHELP; PSM_SETWIZBUTTONS shows either Next or Finish, and enables the
// buttons that it names.
INT_PTR PropertySheetA(const PROPSHEETHEADERA *sheet);

#endif

// The buttons of a wizard, which have the same ids everywhere and names in no header of Windows.
constexpr int ID_WIZBACK = 0x3023;
constexpr int ID_WIZNEXT = 0x3024;
constexpr int ID_WIZFINISH = 0x3025;
