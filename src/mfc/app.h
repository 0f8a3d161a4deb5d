// The library's application object, and the module state that the framework works with. Outside the library's exports
// and windows the current state is the host's, so resources aren't looked up in the library. The framework works for
// one thread at a time, the one that has a wizard open.
#pragma once

#include "mfc/wnd.h"

class CWinApp;

struct AFX_MODULE_STATE {
  CWinApp *m_pCurrentWinApp = nullptr;
};

// The library's own state, and the current one.
AFX_MODULE_STATE *AfxGetStaticModuleState();
AFX_MODULE_STATE *AfxGetModuleState();

// Makes a state the current one for the lifetime of this object.
class AFX_MAINTAIN_STATE2 {
public:
  explicit AFX_MAINTAIN_STATE2(AFX_MODULE_STATE *state);
  AFX_MAINTAIN_STATE2(const AFX_MAINTAIN_STATE2 &) = delete;
  AFX_MAINTAIN_STATE2 &operator=(const AFX_MAINTAIN_STATE2 &) = delete;
  ~AFX_MAINTAIN_STATE2();

private:
  AFX_MODULE_STATE *m_pPrevModuleState;
};

// The base of the module's only application object, a global, which registers itself in the library's state.
class CWinApp : public CCmdTarget {
  DECLARE_DYNAMIC(CWinApp)

public:
  const char *m_pszAppName;

  explicit CWinApp(const char *appName = nullptr);
  ~CWinApp() override;

  // Every AfxMessageBox calls this. Returns the id of the pressed button, 0 if no box was shown.
  virtual int DoMessageBox(const char *prompt, UINT type, UINT helpId) = 0;
};

// The current module's application object, null if it has none, and the module that holds its resources, null for the
// host's program.
CWinApp *AfxGetApp();
HINSTANCE AfxGetResourceHandle();
// Shows a message box of the library; works only while the library's state is the current one.
int AfxMessageBox(const std::string &text, UINT type = MB_OK, UINT helpId = 0);
