#include "wizard/acctkit_app.h"
#include "clients/service_names.h"

namespace {

AcctKitApp theApp;

// Boxes without an icon get the exclamation icon, except those with a Retry button.
UINT WithIcon(UINT type) {
  const UINT buttons = type & MB_TYPEMASK;
  const bool takesIcon = buttons == MB_OK || buttons == MB_OKCANCEL || buttons == MB_YESNOCANCEL || buttons == MB_YESNO;
  return (type & MB_ICONMASK) == 0 && takesIcon ? type | MB_ICONEXCLAMATION : type;
}

} // namespace

int AcctKitApp::DoMessageBox(const char *prompt, UINT type, UINT) {
  HWND disabled = nullptr;
  const HWND owner = CWnd::GetSafeOwner_(&disabled);
  const int answer = MessageBoxA(owner, prompt, ServiceConnectionName, WithIcon(type));
  if (disabled != nullptr)
    EnableWindow(disabled, TRUE);
  return answer;
}
