#include "win32/linux/windows/window_classes.h"

#include "win32/linux/windows/dialogs.h"
#include "win32/linux/windows/system_controls.h"

#include <algorithm>
#include <iterator>
#include <strings.h>

namespace machine {

const WindowClass *FindClass(const char *name) {
  static constexpr WindowClass Classes[] = {{"#32770", DialogProcedure},
                                            {"Button", ButtonProcedure},
                                            {"Static", StaticProcedure},
                                            {"Edit", EditProcedure},
                                            {"ComboBox", ComboBoxProcedure}};
  const auto *const found =
      std::ranges::find_if(Classes, [&](const WindowClass &known) { return strcasecmp(known.name, name) == 0; });
  return found != std::end(Classes) ? found : nullptr;
}

} // namespace machine
