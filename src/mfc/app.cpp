#include "mfc/app.h"

#include <utility>

IMPLEMENT_DYNAMIC(CWinApp, CCmdTarget)

namespace {

AFX_MODULE_STATE *currentState = nullptr;

// A module's handle is its base address, which every Windows gives for any address inside the module.
HINSTANCE LibraryModule() {
  static const char withinLibrary = 0;
  MEMORY_BASIC_INFORMATION region{};
  ::VirtualQuery(&withinLibrary, &region, sizeof region);
  return static_cast<HINSTANCE>(region.AllocationBase);
}

} // namespace

AFX_MODULE_STATE *AfxGetStaticModuleState() {
  static AFX_MODULE_STATE library;
  return &library;
}

AFX_MODULE_STATE *AfxGetModuleState() {
  static AFX_MODULE_STATE host;
  return currentState ? currentState : &host;
}

AFX_MAINTAIN_STATE2::AFX_MAINTAIN_STATE2(AFX_MODULE_STATE *state)
    : m_pPrevModuleState(std::exchange(currentState, state)) {}

AFX_MAINTAIN_STATE2::~AFX_MAINTAIN_STATE2() { currentState = m_pPrevModuleState; }

CWinApp::CWinApp(const char *appName) : m_pszAppName(appName) { AfxGetStaticModuleState()->m_pCurrentWinApp = this; }

CWinApp::~CWinApp() { AfxGetStaticModuleState()->m_pCurrentWinApp = nullptr; }

CWinApp *AfxGetApp() { return AfxGetModuleState()->m_pCurrentWinApp; }

HINSTANCE AfxGetResourceHandle() {
  return AfxGetModuleState() == AfxGetStaticModuleState() ? LibraryModule() : nullptr;
}

int AfxMessageBox(const std::string &text, UINT type, UINT helpId) {
  return AfxGetApp()->DoMessageBox(text.c_str(), type, helpId);
}
