// The library's application object, made when the library is loaded.
#pragma once

#include "mfc/afxwin.h"

class AcctKitApp : public CWinApp {
public:
  // Shows a message box of the library, with the service's title. Every AfxMessageBox comes here.
  int DoMessageBox(const char *prompt, UINT type, UINT helpId) override;
};
