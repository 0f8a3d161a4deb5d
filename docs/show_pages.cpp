// Shows every page of the five wizards, straight from the library's resources and filled with samples, for pictures:
// show_pages AcctKit.dll. Says "shot NAME" when a page is on the screen, and goes on when a line comes in.
#include <windows.h>

#include <commctrl.h>
#include <prsht.h>

#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "resources/resource.h"

namespace {

struct Flow {
  const char *name;
  std::vector<int> pages;
};

const std::vector<Flow> kFlows = {
    {"mailer", {IDD_SET_MAILER_TOP1, IDD_SET_MAILER_SELECT, IDD_SET_MAILER_ID, IDD_SET_MAILER_END}},
    {"second", {IDD_SET_MAILER_TOP2, IDD_SET_MAILER_SELECT, IDD_SET_2ND_MAILER_ID, IDD_SET_MAILER_END}},
    {"news", {IDD_SET_NEWS_TOP, IDD_SET_NEWS_SELECT, IDD_SET_NEWS_ID, IDD_SET_NEWS_SERVER, IDD_SET_NEWS_END}},
    {"kerm",
     {IDD_SET_KERM_MAILER_TOP, IDD_SET_KERM_MAILER_SELECT, IDD_SET_KERM_MAILER_ID, IDD_SET_KERM_SERVER,
      IDD_SET_KERM_END}},
    {"short", {IDD_SET_SHORT_MAILER_SELECT, IDD_SET_SHORT_MAILER_ID}},
};

using Samples = std::map<int, std::vector<const wchar_t *>>;

const std::vector<const wchar_t *> kIds = {L"ABC01234", L"abcd1234"};
const std::vector<const wchar_t *> kMailers = {L"Outlook Express 5.5", L"Netscape Messenger", L"Netscape 6"};
const std::vector<const wchar_t *> kDomains = {L"mail.zuvio.example", L"legacy.zuvio.example", L"merged.zuvio.example"};
const Samples kSelectSamples = {{IDC_CHOICE, kMailers}};
const Samples kAddressSamples = {{IDC_FIELD_1, {L"abc01234"}}, {IDC_CHOICE, kDomains}, {IDC_FIELD_2, {L"山田 花子"}}};
const Samples kMailSummary = {
    {IDC_FIELD_1,
     {L"\r\n メールアカウント： ABC01234 \r\n\r\n 　　 　メーラー ： Outlook Express 5.5 \r\n"
      L" 　メールアドレス： abc01234@mail.zuvio.example \r\n 　　 　差出人名 ： 山田 花子 \r\n"
      L"   POPサーバー名 ： pop.zuvio.example \r\n  SMTPサーバー名 ： smtp.zuvio.example \r\n"
      L"\r\n"}}};

const std::map<int, Samples> kSamples = {
    {IDD_SET_MAILER_TOP1, {{IDC_CHOICE, kIds}, {IDC_BUILD_STAMP, {L"Build 2001-02-22 012345Q"}}}},
    {IDD_SET_MAILER_SELECT, kSelectSamples},
    {IDD_SET_MAILER_ID, kAddressSamples},
    {IDD_SET_2ND_MAILER_ID,
     {{IDC_FIELD_1, {L"hanako"}}, {IDC_CHOICE, {L"abc.mail.zuvio.example"}}, {IDC_FIELD_2, {L"Hanako Yamada"}}}},
    {IDD_SET_MAILER_END, kMailSummary},
    {IDD_SET_NEWS_TOP, {{IDC_CHOICE, kIds}}},
    {IDD_SET_NEWS_SELECT, kSelectSamples},
    {IDD_SET_NEWS_ID, kAddressSamples},
    {IDD_SET_NEWS_SERVER, {{IDC_FORUM_SERVER, {}}, {IDC_SQUARE_SERVER, {}}}},
    {IDD_SET_NEWS_END,
     {{IDC_FIELD_1,
       {L"\r\n 　     @zuvioID ： ABC01234 \r\n\r\n ニュースリーダー： Outlook Express 5.5 \r\n"
        L" 　メールアドレス： abc01234@mail.zuvio.example \r\n 　　 　差出人名 ： 山田 花子 \r\n"
        L"    　サーバー名 ： forum.zuvio.example \r\n    　　　　　　　　square.zuvio.example \r\n\r\n"}}}},
    {IDD_SET_KERM_MAILER_TOP, {{IDC_FIELD_1, {L"hanako01"}}}},
    {IDD_SET_KERM_MAILER_SELECT, kSelectSamples},
    {IDD_SET_KERM_MAILER_ID, {{IDC_FIELD_1, {L"hanako@yamada.example"}}, {IDC_FIELD_2, {L"山田 花子"}}}},
    {IDD_SET_KERM_SERVER, {{IDC_FIELD_1, {L"pop.yamada.example"}}, {IDC_FIELD_2, {L"smtp.yamada.example"}}}},
    {IDD_SET_KERM_END, kMailSummary},
    {IDD_SET_SHORT_MAILER_SELECT, kSelectSamples},
    {IDD_SET_SHORT_MAILER_ID, kAddressSamples},
};

HWND sheet;

bool Is(HWND control, const wchar_t *className) {
  wchar_t name[32];
  GetClassNameW(control, name, 32);
  return lstrcmpiW(name, className) == 0;
}

void Fill(HWND control, const std::vector<const wchar_t *> &texts) {
  if (Is(control, L"Button")) {
    SendMessageW(control, BM_SETCHECK, BST_CHECKED, 0);
  } else if (Is(control, L"ComboBox")) {
    for (const auto *text : texts)
      SendMessageW(control, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    SendMessageW(control, CB_SETCURSEL, 0, 0);
  } else {
    SetWindowTextW(control, texts.front());
  }
}

void FillPage(HWND page, int dialog) {
  for (const auto &[id, texts] : kSamples.contains(dialog) ? kSamples.at(dialog) : Samples())
    Fill(GetDlgItem(page, id), texts);
  if (HWND icon = GetDlgItem(page, IDC_CLIENT_ICON))
    SendMessageW(icon, STM_SETICON, reinterpret_cast<WPARAM>(LoadIconW(nullptr, IDI_WINLOGO)), 0);
  HWND field = GetDlgItem(page, IDC_FIELD_1);
  if (field && (GetWindowLongW(field, GWL_STYLE) & ES_READONLY)) {
    HFONT font = CreateFontW(12, 0, 0, 0, FW_NORMAL, 0, 0, 0, SHIFTJIS_CHARSET, 0, 0, 0, 0, L"ＭＳ ゴシック");
    SendMessageW(field, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  }
}

void DrawClient(const DRAWITEMSTRUCT &item) {
  const bool selected = item.itemState & ODS_SELECTED;
  RECT text = item.rcItem;
  FillRect(item.hDC, &text, GetSysColorBrush(COLOR_WINDOW));
  DrawIconEx(item.hDC, text.left + 5, (text.top + text.bottom - 16) / 2, LoadIconW(nullptr, IDI_WINLOGO), 16, 16, 0,
             nullptr, DI_NORMAL);
  text.left += 26;
  FillRect(item.hDC, &text, GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
  SetBkMode(item.hDC, TRANSPARENT);
  SetTextColor(item.hDC, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
  text.left += 5;
  wchar_t name[64] = L"";
  SendMessageW(item.hwndItem, CB_GETLBTEXT, item.itemID, reinterpret_cast<LPARAM>(name));
  DrawTextW(item.hDC, name, -1, &text, DT_VCENTER | DT_SINGLELINE);
}

DWORD ButtonsOf(LPARAM place) {
  const bool first = place & 1, last = place & 2;
  return (first ? 0U : PSWIZB_BACK) | (last ? PSWIZB_FINISH : PSWIZB_NEXT);
}

INT_PTR CALLBACK PageProc(HWND page, UINT message, WPARAM, LPARAM lParam) {
  switch (message) {
  case WM_INITDIALOG: {
    const auto *header = reinterpret_cast<const PROPSHEETPAGEW *>(lParam);
    SetWindowLongPtrW(page, GWLP_USERDATA, header->lParam);
    FillPage(page, static_cast<int>(reinterpret_cast<INT_PTR>(header->pszTemplate)));
    return TRUE;
  }
  case WM_MEASUREITEM:
    reinterpret_cast<MEASUREITEMSTRUCT *>(lParam)->itemHeight = 16;
    return TRUE;
  case WM_DRAWITEM:
    DrawClient(*reinterpret_cast<const DRAWITEMSTRUCT *>(lParam));
    return TRUE;
  case WM_NOTIFY:
    if (reinterpret_cast<const NMHDR *>(lParam)->code == static_cast<UINT>(PSN_SETACTIVE))
      PostMessageW(GetParent(page), PSM_SETWIZBUTTONS, 0,
                   static_cast<LPARAM>(ButtonsOf(GetWindowLongPtrW(page, GWLP_USERDATA))));
    return FALSE;
  default:
    return FALSE;
  }
}

void Centre(HWND window) {
  RECT place;
  GetWindowRect(window, &place);
  SetWindowPos(window, nullptr, (GetSystemMetrics(SM_CXSCREEN) - place.right + place.left) / 2,
               (GetSystemMetrics(SM_CYSCREEN) - place.bottom + place.top) / 2, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
}

int CALLBACK SheetProc(HWND window, UINT message, LPARAM) {
  if (message == PSCB_INITIALIZED) {
    sheet = window;
    PostMessageW(window, WM_NULL, 0, 0);
  }
  return 0;
}

void Shot(const std::string &name) {
  SendMessageW(sheet, WM_NCACTIVATE, TRUE,
               0); // Wine draws the first sheet of a process as if it weren't the active one.
  Sleep(400);      // for the painting
  std::printf("shot %s\n", name.c_str());
  std::fflush(stdout);
  char line[16];
  if (!std::fgets(line, sizeof line, stdin))
    std::exit(1);
}

// What a user does to the sheet, page by page.
void Walk(const Flow &flow) {
  while (!sheet)
    Sleep(20);
  for (size_t i = 0; i < flow.pages.size(); ++i) {
    const std::string name = flow.name + ("-" + std::to_string(i + 1));
    if (i == 0)
      Centre(sheet);
    Shot(name);
    HWND page = reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETCURRENTPAGEHWND, 0, 0));
    HWND list = GetDlgItem(page, IDC_CHOICE);
    if (list && &flow == &kFlows.front()) {
      SendMessageW(list, CB_SHOWDROPDOWN, TRUE, 0);
      Shot(name + "-open");
      SendMessageW(list, CB_SHOWDROPDOWN, FALSE, 0);
    }
    SendMessageW(sheet, PSM_PRESSBUTTON, i + 1 < flow.pages.size() ? PSBTN_NEXT : PSBTN_CANCEL, 0);
  }
}

void Show(const Flow &flow, HINSTANCE library) {
  std::vector<PROPSHEETPAGEW> pages;
  for (const int dialog : flow.pages) {
    PROPSHEETPAGEW page = {};
    page.dwSize = sizeof page;
    page.dwFlags = PSP_HASHELP;
    page.hInstance = library;
    page.pszTemplate = MAKEINTRESOURCEW(dialog);
    page.pfnDlgProc = PageProc;
    page.lParam = (dialog == flow.pages.front() ? 1 : 0) | (dialog == flow.pages.back() ? 2 : 0);
    pages.push_back(page);
  }
  PROPSHEETHEADERW header = {};
  header.dwSize = sizeof header;
  header.dwFlags = PSH_PROPSHEETPAGE | PSH_WIZARD | PSH_HASHELP | PSH_USECALLBACK;
  header.nPages = static_cast<UINT>(pages.size());
  header.ppsp = pages.data();
  header.pfnCallback = SheetProc;
  sheet = nullptr;
  std::thread user(Walk, std::cref(flow));
  PropertySheetW(&header);
  user.join();
}

} // namespace

int wmain(int, wchar_t **arguments) {
  InitCommonControls();
  HINSTANCE library = LoadLibraryW(arguments[1]);
  if (!library)
    return 1;
  for (const Flow &flow : kFlows)
    Show(flow, library);
  return 0;
}
