#include "transcript.h"

#include "wizard_script.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr NamedButton SheetButtonList[] = {{"back", ID_WIZBACK, PSBTN_BACK},
                                           {"next", ID_WIZNEXT, PSBTN_NEXT},
                                           {"finish", ID_WIZFINISH, PSBTN_FINISH},
                                           {"cancel", IDCANCEL, PSBTN_CANCEL},
                                           {"help", IDHELP, PSBTN_HELP}};
constexpr size_t WayButtonCount = 3;
constexpr NamedButton BoxButtonList[] = {{"ok", IDOK, 0}, {"cancel", IDCANCEL, 0}, {"yes", IDYES, 0}, {"no", IDNO, 0}};

constexpr int BoxTextId = 0xFFFF;

struct NamedIcon {
  const char *name;
  const char *resource;
};
const NamedIcon BoxIcons[] = {
    {"stop", IDI_HAND}, {"question", IDI_QUESTION}, {"exclamation", IDI_EXCLAMATION}, {"information", IDI_ASTERISK}};

bool IsIcon(HWND control) { return IsClass(control, "static") && (StyleOf(control) & SS_TYPEMASK) == SS_ICON; }

HICON ShownIcon(HWND control) { return reinterpret_cast<HICON>(SendMessageA(control, STM_GETICON, 0, 0)); }

// The number of the dialog that a page was made from.
int PageId(HWND sheet) {
  const LRESULT index = SendMessageA(sheet, PSM_HWNDTOINDEX, reinterpret_cast<WPARAM>(CurrentPage(sheet)), 0);
  return static_cast<int>(SendMessageA(sheet, PSM_INDEXTOID, static_cast<WPARAM>(index), 0));
}

} // namespace

const std::span<const NamedButton> SheetButtons = SheetButtonList;
const std::span<const NamedButton> BoxButtons = BoxButtonList;

bool IsSheet(HWND window) { return GetDlgItem(window, ID_WIZNEXT) != nullptr; }

bool IsBox(HWND window) { return !IsSheet(window) && GetDlgItem(window, BoxTextId) != nullptr; }

HWND CurrentPage(HWND sheet) { return reinterpret_cast<HWND>(SendMessageA(sheet, PSM_GETCURRENTPAGEHWND, 0, 0)); }

const NamedButton *FindButton(std::span<const NamedButton> buttons, const std::string &name) {
  const auto found = std::ranges::find(buttons, name, &NamedButton::name);
  return found == buttons.end() ? nullptr : &*found;
}

std::string QuotedText(HWND window) { return Quoted(ReadText(window)); }

std::string QuotedItems(HWND comboBox) {
  std::vector<std::string> items = ReadItems(comboBox);
  std::ranges::transform(items, items.begin(), Quoted);
  return Listed(items);
}

std::string CheckOf(HWND control) {
  if (!IsCheckBox(control))
    return "no check box";
  return IsChecked(control) ? "yes" : "no";
}

std::string ButtonsOf(HWND top) {
  std::string names;
  for (const NamedButton &button : IsSheet(top) ? SheetButtons.first(WayButtonCount) : BoxButtons)
    if (IsUsable(GetDlgItem(top, button.id)))
      names.append(names.empty() ? "" : ",").append(button.name);
  return names;
}

std::string FocusOf(HWND top) {
  const HWND page = IsSheet(top) ? CurrentPage(top) : nullptr;
  for (HWND window = GetFocus(); window != nullptr && window != top && window != page; window = GetParent(window)) {
    const HWND parent = GetParent(window);
    if (page != nullptr && parent == page)
      return std::to_string(GetDlgCtrlID(window));
    if (parent == top)
      for (const NamedButton &button : IsSheet(top) ? SheetButtons : BoxButtons)
        if (button.id == GetDlgCtrlID(window))
          return button.name;
  }
  return "none";
}

std::string MessageOf(HWND box) { return QuotedText(GetDlgItem(box, BoxTextId)); }

std::string IconOf(HWND box) {
  const std::vector<HWND> children = ChildrenOf(box);
  const auto shown = std::ranges::find_if(children, IsIcon);
  if (shown != children.end())
    for (const NamedIcon &icon : BoxIcons)
      if (LoadIconA(nullptr, icon.resource) == ShownIcon(*shown))
        return icon.name;
  return "none";
}

std::string Description(HWND control) {
  std::string line;
  if (IsIcon(control))
    line = ShownIcon(control) != nullptr ? "icon set" : "icon empty";
  else if (IsClass(control, "combobox"))
    line = "combo " + QuotedText(control) + ' ' + QuotedItems(control);
  else if (IsCheckBox(control))
    line = "check " + QuotedText(control) + (IsChecked(control) ? " checked" : " unchecked");
  else
    line = ClassOf(control) + ' ' + QuotedText(control);
  if (IsClass(control, "edit") && IsReadOnly(control))
    line += " readonly";
  if (!IsWindowEnabled(control))
    line += " disabled";
  if (!IsWindowVisible(control))
    line += " hidden";
  return line;
}

std::string ControlLine(HWND control) {
  return "control " + std::to_string(GetDlgCtrlID(control)) + ' ' + Description(control);
}

std::string TopLine(HWND top) {
  if (IsSheet(top))
    return "page " + std::to_string(PageId(top)) + ' ' + QuotedText(top) + " buttons=" + ButtonsOf(top);
  if (IsBox(top))
    return "message " + MessageOf(top) + " buttons=" + ButtonsOf(top) + " icon=" + IconOf(top);
  return "window " + QuotedText(top);
}

std::vector<HWND> ControlsOf(HWND page) {
  constexpr int NoId = 0xFFFF;
  std::vector<HWND> controls = ChildrenOf(page);
  std::erase_if(controls, [](HWND control) {
    const int id = GetDlgCtrlID(control) & NoId;
    return id == 0 || id == NoId;
  });
  return controls;
}
