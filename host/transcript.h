// The words of a transcript for what a user sees of a wizard's windows: UTF-8, texts in quotes.
#pragma once

#include "window_controls.h"

#include <span>
#include <string>
#include <vector>

struct NamedButton {
  const char *name;
  int id;
  int press; // what presses it by PSM_PRESSBUTTON, of a sheet
};
extern const std::span<const NamedButton> SheetButtons;
extern const std::span<const NamedButton> BoxButtons;

bool IsSheet(HWND window);
bool IsBox(HWND window);
// The page that a sheet shows.
HWND CurrentPage(HWND sheet);
// Null if the buttons have none of that name.
const NamedButton *FindButton(std::span<const NamedButton> buttons, const std::string &name);

std::string QuotedText(HWND window);
std::string QuotedItems(const Control &list);
// "yes", "no", or "no check box".
std::string CheckOf(const Control &control);
// The buttons that can be pressed, of a sheet those that lead through the wizard.
std::string ButtonsOf(HWND top);
// The control of the page, or the button, that has the focus.
std::string FocusOf(HWND top);
std::string MessageOf(HWND box);
std::string IconOf(HWND box);

// A control's kind, text and state, and the same with its id before it.
std::string Description(const Control &control);
std::string ControlLine(const Control &control);
// A line about the window in front.
std::string TopLine(HWND top);
// A line about each control of a sheet's page that has an id.
std::vector<std::string> PageLines(HWND sheet);
