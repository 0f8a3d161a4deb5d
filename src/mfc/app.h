// The library's application object, and the state of the module that the framework works for: outside of the library's
// exports and windows that is the host, whose resources aren't the library's. The framework works for one thread at a
// time, the one that has a wizard open.
#pragma once

#include "mfc/wnd.h"

class CWinApp;

struct AFX_MODULE_STATE {
  CWinApp *m_pCurrentWinApp = nullptr;
};

// The library's own state, and the current one.
AFX_MODULE_STATE *AfxGetStaticModuleState();
AFX_MODULE_STATE *AfxGetModuleState();

// Makes a state the current one as long as it lives.
class AFX_MAINTAIN_STATE2 {
public:
  explicit AFX_MAINTAIN_STATE2(AFX_MODULE_STATE *state);
  AFX_MAINTAIN_STATE2(const AFX_MAINTAIN_STATE2 &) = delete;
  AFX_MAINTAIN_STATE2 &operator=(const AFX_MAINTAIN_STATE2 &) = delete;
  ~AFX_MAINTAIN_STATE2();

private:
  AFX_MODULE_STATE *m_pPrevModuleState;
};

// The module's one application object, a global of a class of its own; it enters itself into the library's state.
class CWinApp : public CCmdTarget {
  DECLARE_DYNAMIC(CWinApp)

public:
  const char *m_pszAppName;

  explicit CWinApp(const char *appName = nullptr);
  ~CWinApp() override;

  // Where every AfxMessageBox ends. The id of the button, 0 if no box came up.
  virtual int DoMessageBox(const char *prompt, UINT type, UINT helpId) = 0;
};

// The current module's application object, null if it has none, and the module with its resources, null for the host's
// program.
CWinApp *AfxGetApp();
HINSTANCE AfxGetResourceHandle();
// A box of the library's; only while its state is current.
int AfxMessageBox(const std::string &text, UINT type = MB_OK, UINT helpId = 0);
