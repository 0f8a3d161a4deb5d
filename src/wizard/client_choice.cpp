#include "wizard/client_choice.h"

ClientIcon::~ClientIcon() {
  if (shown != nullptr)
    DestroyIcon(shown);
}

void ClientIcon::Put(const CWnd &page, HICON icon) {
  page.SendDlgItemMessage(IDC_CLIENT_ICON, STM_SETICON, reinterpret_cast<WPARAM>(icon), 0);
  if (shown != nullptr)
    DestroyIcon(shown);
  shown = icon;
}
