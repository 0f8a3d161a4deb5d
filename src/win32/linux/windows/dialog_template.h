// Dialog templates (DIALOGEX), read into a record that can be changed, or built, before a dialog is made from it.
#pragma once

#include "win32/win32_ui.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace machine {

// A window of a template: the dialog itself or one of its controls. Its bounds are in dialog units.
struct TemplateWindow {
  DWORD style = 0;
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  int id = 0;
  std::string className; // of a control
  std::string text;      // "#" and the number for the resource of a static
};

struct DialogTemplate {
  TemplateWindow window;
  int pointSize = 0; // of its font, 0 without one
  std::vector<TemplateWindow> controls;
};

// Nothing for bytes that are no template.
std::optional<DialogTemplate> ReadTemplate(std::string_view bytes);

} // namespace machine
