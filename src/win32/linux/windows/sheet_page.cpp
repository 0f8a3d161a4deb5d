#include "win32/linux/windows/sheet_page.h"

#include <optional>
#include <utility>

namespace {

using machine::DialogTemplate;
using machine::PropertyPage;

constexpr DWORD LargestRecord = 0x1000;

bool IsNumber(const char *name) { return reinterpret_cast<uintptr_t>(name) <= 0xFFFF; }

std::optional<DialogTemplate> ReadTemplateOf(const PROPSHEETPAGEA &page) {
  if ((page.dwFlags & PSP_DLGINDIRECT) != 0)
    return machine::ReadTemplate(page.pResource);
  const HRSRC resource = FindResourceA(page.hInstance, page.pszTemplate, RT_DIALOG);
  if (resource == nullptr)
    return std::nullopt;
  const HGLOBAL loaded = LoadResource(page.hInstance, resource);
  return machine::ReadTemplate(static_cast<const DLGTEMPLATE *>(LockResource(loaded)));
}

// A page lies within the sheet, whatever its template says, and the sheet shows it.
DWORD PageStyle(DWORD style) {
  constexpr DWORD Never = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_VISIBLE | WS_DISABLED;
  return (style & ~Never) | WS_CHILD | WS_TABSTOP | DS_CONTROL;
}

} // namespace

namespace machine {

std::shared_ptr<PropertyPage> PropertyPage::Make(const PROPSHEETPAGEA *record) {
  if (record == nullptr || record->dwSize < sizeof *record || record->dwSize > LargestRecord)
    return nullptr;
  std::optional<DialogTemplate> read = ReadTemplateOf(*record);
  return read ? std::shared_ptr<PropertyPage>(new PropertyPage(*record, std::move(*read))) : nullptr;
}

PropertyPage::PropertyPage(const PROPSHEETPAGEA &given, DialogTemplate read)
    : record(reinterpret_cast<const std::byte *>(&given), reinterpret_cast<const std::byte *>(&given) + given.dwSize),
      title(read.window.text), dialog(std::move(read)) {
  PROPSHEETPAGEA &page = Record();
  dialog.window.style = PageStyle(dialog.window.style);
  if ((page.dwFlags & PSP_DLGINDIRECT) == 0 && !IsNumber(page.pszTemplate))
    page.pszTemplate = (templateName = page.pszTemplate).c_str();
  if ((page.dwFlags & PSP_USETITLE) != 0 && !IsNumber(page.pszTitle))
    page.pszTitle = (title = page.pszTitle).c_str();
}

bool PropertyPage::MakeWindow(HWND sheet) {
  if (IsWindow(window) != FALSE)
    return true;
  const PROPSHEETPAGEA &page = Record();
  window = CreateDialogFrom(dialog, page.hInstance, sheet, page.pfnDlgProc, reinterpret_cast<LPARAM>(&page));
  return window != nullptr;
}

LRESULT PropertyPage::Id() const {
  const PROPSHEETPAGEA &page = Record();
  const bool numbered = (page.dwFlags & PSP_DLGINDIRECT) == 0 && IsNumber(page.pszTemplate);
  return numbered ? reinterpret_cast<LRESULT>(page.pszTemplate) : 0;
}

} // namespace machine
