// Edit controls. What is typed is cut at the limit, what a program puts in isn't. One of several lines is only for a
// program to fill.
#include "win32/linux/text/code_page.h"
#include "win32/linux/windows/painting.h"
#include "win32/linux/windows/system_controls.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <utility>

namespace {

using machine::WindowPtr;

constexpr size_t DefaultLimit = 30000;
constexpr size_t LargestLimit = 0x7FFFFFFE; // which 0 stands for

struct EditState : machine::WindowState {
  size_t limit = DefaultLimit; // in bytes
  size_t begin = 0;            // of the selection, in bytes
  size_t end = 0;
  char lead = '\0'; // the first byte of a character whose second one is still to come
};

struct Edit {
  WindowPtr window;
  std::shared_ptr<EditState> state;

  bool IsMultiline() const { return window->Has(ES_MULTILINE); }
};

void Select(const Edit &edit, LPARAM begin, LPARAM end) {
  const auto size = static_cast<LPARAM>(edit.window->text.size());
  const auto within = [&](LPARAM position) {
    return static_cast<size_t>(position < 0 ? size : std::min(position, size));
  };
  std::tie(edit.state->begin, edit.state->end) =
      begin < 0 ? std::pair(edit.state->end, edit.state->end) : std::minmax({within(begin), within(end)});
}

// Puts a text in place of the selection, as much of it as the limit allows.
void ReplaceSelection(const Edit &edit, std::string_view with) {
  const auto &[window, state] = edit;
  state->end = std::min(state->end, window->text.size());
  state->begin = std::min(state->begin, state->end);
  const size_t selected = state->end - state->begin;
  const size_t kept = window->text.size() - selected;
  with = with.substr(0, with.find_first_of("\r\n"));
  const std::string_view fitting = text::WholeCharacters(with, state->limit > kept ? state->limit - kept : 0);
  window->text.replace(state->begin, selected, fitting);
  state->begin = state->end = state->begin + fitting.size();
  if (fitting.size() < with.size())
    machine::NotifyParent(*window, machine::EN_MAXTEXT);
  if (selected == 0 && fitting.empty())
    return;
  machine::Invalidate(window);
  machine::NotifyParent(*window, machine::EN_UPDATE);
  machine::NotifyParent(*window, machine::EN_CHANGE);
}

// Takes away the selection or, without one, the character before it.
void EraseBack(const Edit &edit) {
  const auto &[window, state] = edit;
  if (state->begin == state->end && state->begin > 0) {
    const std::string_view before = std::string_view(window->text).substr(0, state->end);
    state->begin = text::WholeCharacters(before, before.size() - 1).size();
  }
  ReplaceSelection(edit, "");
}

void Type(const Edit &edit, char character) {
  const auto &[window, state] = edit;
  if (window->Has(ES_READONLY))
    return;
  if (state->lead != '\0')
    return ReplaceSelection(edit, std::string{std::exchange(state->lead, '\0'), character});
  if (text::IsLeadByte(static_cast<unsigned char>(character)))
    state->lead = character;
  else if (character == VK_BACK)
    EraseBack(edit);
  else if (static_cast<unsigned char>(character) >= ' ' && character != '\x7F')
    ReplaceSelection(edit, {&character, 1});
}

// Sets the text for a program. The parent of a multi-line control isn't told, nor a combo box, which set it itself.
LRESULT SetText(const Edit &edit, const char *text) {
  DefWindowProcA(edit.window->handle, machine::WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
  edit.state->begin = edit.state->end = 0;
  if (edit.IsMultiline() || edit.window->Has(machine::ES_COMBO))
    return TRUE;
  machine::NotifyParent(*edit.window, machine::EN_UPDATE);
  machine::NotifyParent(*edit.window, machine::EN_CHANGE);
  return TRUE;
}

} // namespace

LRESULT machine::EditProcedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowPtr window = WindowOf(handle);
  const Edit edit = {window, StateOf<EditState>(window, message)};
  if (!edit.state)
    return DefWindowProcA(handle, message, wParam, lParam);
  switch (message) {
  case WM_GETDLGCODE:
    return DLGC_HASSETSEL | (edit.IsMultiline() ? DLGC_WANTALLKEYS : 0) |
           (window->Has(ES_COMBO) ? SendMessageA(window->parent, message, wParam, lParam) : 0);
  case WM_SETFOCUS:
  case WM_KILLFOCUS:
    NotifyParent(*window, message == WM_SETFOCUS ? EN_SETFOCUS : EN_KILLFOCUS);
    return 0;
  case WM_SETTEXT:
    return SetText(edit, reinterpret_cast<const char *>(lParam));
  case WM_CHAR:
    Type(edit, static_cast<char>(wParam));
    return 0;
  case WM_KEYDOWN: // the list of a combo box follows the keys of its edit control
    return window->Has(ES_COMBO) ? SendMessageA(window->parent, message, wParam, lParam) : 0;
  case EM_SETSEL:
    Select(edit, static_cast<int>(wParam), static_cast<int>(lParam));
    return TRUE;
  case EM_GETSEL:
    *reinterpret_cast<DWORD *>(wParam) = static_cast<DWORD>(edit.state->begin);
    *reinterpret_cast<DWORD *>(lParam) = static_cast<DWORD>(edit.state->end);
    return 0;
  case EM_REPLACESEL:
    ReplaceSelection(edit, reinterpret_cast<const char *>(lParam));
    return 0;
  case EM_LIMITTEXT:
    edit.state->limit = wParam != 0 ? wParam : LargestLimit;
    return 0;
  case EM_GETLIMITTEXT:
    return static_cast<LRESULT>(edit.state->limit);
  default:
    return DefWindowProcA(handle, message, wParam, lParam);
  }
}
