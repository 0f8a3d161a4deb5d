// Reads windows and their controls, and sends keys to them, by the platform's calls alone.
#pragma once

#include "win32/win32_ui.h"

#include <string>
#include <vector>

DWORD StyleOf(HWND window);
// The name of its class, in small letters.
std::string ClassOf(HWND window);
bool IsClass(HWND window, const char *className);
// Whether a user could press or fill it.
bool IsUsable(HWND control);
// In the order in which Tab goes through them.
std::vector<HWND> ChildrenOf(HWND window);

// The window's text, for a control what stands in it: in the system's code page, and in UTF-8.
std::string ReadRawText(HWND window);
std::string ReadText(HWND window);
// In UTF-8.
std::vector<std::string> ReadItems(HWND comboBox);

// Any button that isn't to be pushed.
bool IsCheckBox(HWND control);
bool IsChecked(HWND button);
bool IsReadOnly(HWND edit);

// Posts a key to what has the focus, or to the window if nothing has: its modal loop finds out whose key it is.
void PostKey(HWND top, int key);
