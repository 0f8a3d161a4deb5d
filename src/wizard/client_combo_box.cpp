#include "wizard/client_combo_box.h"

#include <memory>

struct ClientComboBox::ClientItem {
  std::string path;
  std::string name;
  int32_t iconIndex = 0; // in the system's image list
};

namespace {

constexpr int IconMargin = 5; // on either side of the icon
constexpr int TextMargin = 5; // from the edge of the highlight
constexpr UINT SmallIcon = SHGFI_SYSICONINDEX | SHGFI_ICON | SHGFI_SMALLICON;

// Asks the shell about a file's icon. The handle of the icon that it also returns isn't needed.
DWORD_PTR AskShell(const char *path, SHFILEINFOA &info) {
  const DWORD_PTR list = SHGetFileInfoA(path, 0, &info, sizeof info, SmallIcon);
  if (list != 0 && info.hIcon != nullptr)
    DestroyIcon(info.hIcon);
  return list;
}

void Fill(CDC &context, const RECT &rect, COLORREF colour) {
  CBrush brush(colour);
  const HGDIOBJ old = context.SelectObject(brush);
  context.PatBlt(rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, PATCOPY);
  context.SelectObject(old);
}

} // namespace

int32_t ClientComboBox::AddClient(const std::string &path, const std::string &name) {
  auto item = std::make_unique<ClientItem>(ClientItem{path, name});
  GetIconIndex(path, item->iconIndex);
  const int entry = AddString(name);
  if (entry >= 0) // the list owns it from now on, until DeleteItem
    SetItemData(entry, reinterpret_cast<DWORD_PTR>(item.release()));
  return 1;
}

int32_t ClientComboBox::GetSelectedPath(std::string &out) const {
  const int selected = GetCurSel();
  const ClientItem *const item = selected == CB_ERR ? nullptr : ItemAt(static_cast<UINT>(selected));
  if (item == nullptr)
    return 0;
  out = item->path;
  return 1;
}

ClientComboBox::ClientItem *ClientComboBox::ItemAt(UINT index) const {
  const DWORD_PTR data = GetItemData(static_cast<int>(index));
  return data == static_cast<DWORD_PTR>(CB_ERR) ? nullptr : reinterpret_cast<ClientItem *>(data);
}

HIMAGELIST ClientComboBox::GetImageList() {
  char folder[MAX_PATH] = "";
  GetWindowsDirectoryA(folder, sizeof folder);
  SHFILEINFOA info{};
  return reinterpret_cast<HIMAGELIST>(AskShell(folder, info));
}

int32_t ClientComboBox::GetIconSize(SIZE &size) {
  IMAGEINFO image{};
  ImageList_GetImageInfo(GetImageList(), 0, &image);
  size = {image.rcImage.right - image.rcImage.left, image.rcImage.bottom - image.rcImage.top};
  return 1;
}

int32_t ClientComboBox::GetIconIndex(const std::string &path, int32_t &index) {
  SHFILEINFOA info{};
  AskShell(path.c_str(), info);
  index = info.iIcon;
  return 1;
}

void ClientComboBox::MeasureItem(MEASUREITEMSTRUCT *measure) {
  const HWND parent = ::GetParent(m_hWnd);
  const LRESULT font = ::SendMessageA(parent != nullptr ? parent : m_hWnd, WM_GETFONT, 0, 0);
  CClientDC context(this);
  const HGDIOBJ old = context.SelectObject(reinterpret_cast<HGDIOBJ>(font));
  TEXTMETRICA metrics{};
  context.GetTextMetrics(&metrics);
  context.SelectObject(old);
  SIZE icon{};
  GetIconSize(icon);
  const LONG text = metrics.tmHeight + metrics.tmExternalLeading;
  measure->itemHeight = static_cast<UINT>(text > icon.cx ? text : icon.cx);
}

void ClientComboBox::DrawItem(DRAWITEMSTRUCT *draw) {
  CDC context(draw->hDC);
  RECT rect{};
  CopyRect(&rect, &draw->rcItem);
  Fill(context, rect, GetSysColor(COLOR_WINDOW));
  const ClientItem *const item = ItemAt(draw->itemID);
  if (item == nullptr)
    return;

  const bool isSelected = (draw->itemState & ODS_SELECTED) != 0;
  SIZE icon{};
  GetIconSize(icon);
  ImageList_Draw(GetImageList(), item->iconIndex, draw->hDC, rect.left + IconMargin,
                 rect.top + (rect.bottom - rect.top - icon.cy) / 2,
                 isSelected ? ILD_TRANSPARENT | ILD_SELECTED : ILD_TRANSPARENT);

  // The highlight doesn't cover the strip with the icon.
  rect.left += icon.cx + 2 * IconMargin;
  Fill(context, rect, GetSysColor(isSelected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
  const int oldMode = context.SetBkMode(TRANSPARENT);
  const COLORREF oldColour = context.SetTextColor(GetSysColor(isSelected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
  RECT textRect = rect;
  textRect.left += TextMargin;
  context.DrawText(item->name, &textRect, DT_VCENTER | DT_SINGLELINE);
  context.SetTextColor(oldColour);
  context.SetBkMode(oldMode);

  if ((draw->itemState & ODS_FOCUS) != 0 && draw->itemAction != ODA_SELECT)
    DrawFocusRect(draw->hDC, &rect);
}

int ClientComboBox::CompareItem(COMPAREITEMSTRUCT *compare) {
  const ClientItem *const first = ItemAt(compare->itemID1);
  const ClientItem *const second = ItemAt(compare->itemID2);
  return first != nullptr && second != nullptr ? lstrcmpA(first->path.c_str(), second->path.c_str()) : 0;
}

void ClientComboBox::DeleteItem(DELETEITEMSTRUCT *deleted) { delete ItemAt(deleted->itemID); }
