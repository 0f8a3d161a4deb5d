// Dialog templates, old form and new, read into a record that can be changed before a dialog is made from it.
#pragma once

#include "win32/win32_ui.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace machine {

// A window of a template: the dialog itself or one of its controls. Places are in dialog units.
struct TemplateWindow {
  DWORD style = 0;
  DWORD exStyle = 0;
  int16_t x = 0;
  int16_t y = 0;
  int16_t width = 0;
  int16_t height = 0;
  DWORD id = 0;
  std::string className;
  std::string text; // "#" and the number for the resource of a static
};

struct DialogTemplate {
  TemplateWindow window;
  int pointSize = 0; // 0 without a font
  int weight = 0;
  bool italic = false;
  BYTE charSet = 0;
  std::string face;
  std::vector<TemplateWindow> controls;
};

// Nothing for bytes that are no template.
std::optional<DialogTemplate> ReadTemplate(std::string_view bytes);
// The same where the size isn't known, unless the template is one of the library's resources.
std::optional<DialogTemplate> ReadTemplate(const DLGTEMPLATE *bytes);

HWND CreateDialogFrom(const DialogTemplate &dialog, HINSTANCE instance, HWND parent, DLGPROC procedure,
                      LPARAM parameter);

// Does what IsDialogMessage does for Esc and Enter: the key works the dialog, unless the window that it is for wants
// it. False if the message is still to be sent.
bool PressDialogKey(HWND dialog, const MSG &message);

} // namespace machine
