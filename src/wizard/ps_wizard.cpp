#include "wizard/ps_wizard.h"

#include "wizard/service_ini.h"

#include <utility>

IMPLEMENT_DYNAMIC(CPsWizard, CPropertySheet)

BEGIN_MESSAGE_MAP(CPsWizard, CPropertySheet)
ON_WM_HELPINFO()
ON_WM_SHOWWINDOW()
END_MESSAGE_MAP()

BOOL CPsWizard::OnInitDialog() {
  const BOOL result = CPropertySheet::OnInitDialog();
  CenterWindow(CWnd::GetDesktopWindow());
  return result;
}

// Only now the sheet has its final size, which the system sets after the first message to fit the pages.
void CPsWizard::OnShowWindow(BOOL show, UINT) {
  if (show && !std::exchange(shown, true))
    CenterWindow(CWnd::GetDesktopWindow());
  Default();
}

BOOL CPsWizard::OnHelpInfo(HELPINFO *info) {
  helpKeySeen = 1;
  return CPropertySheet::OnHelpInfo(info);
}

BOOL CPsWizard::OnCmdMsg(UINT nID, int nCode, void *pExtra, AFX_CMDHANDLERINFO *pHandlerInfo) {
  if (nID == ID_HELP && nCode == CN_UPDATE_COMMAND_UI) {
    if (helpKeySeen == 1)
      helpKeySeen = 0;
    else
      ShowHelp();
  }
  return CPropertySheet::OnCmdMsg(nID, nCode, pExtra, pHandlerInfo);
}

void CPsWizard::ShowHelp() {
  constexpr ULONG_PTR NewsTopic = 6;
  constexpr ULONG_PTR MailTopic = 5;
  char folder[MAX_PATH] = "";
  GetProgramFolder(folder, sizeof folder);
  const std::string file = std::string(folder) + "kantan.hlp";
  if (!WinHelpA(m_hWnd, file.c_str(), HELP_CONTEXT, wizardKind == News ? NewsTopic : MailTopic))
    AfxMessageBox("ヘルプファイルの読み込みに失敗しました。");
}

void PostButtons(const CWnd &page, DWORD buttons) {
  ::PostMessageA(::GetParent(page.m_hWnd), PSM_SETWIZBUTTONS, 0, static_cast<LPARAM>(buttons));
}
