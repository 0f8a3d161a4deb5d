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
constexpr size_t NavigationButtonCount = 3;
constexpr NamedButton BoxButtonList[] = {{"ok", IDOK, 0}, {"cancel", IDCANCEL, 0}, {"yes", IDYES, 0}, {"no", IDNO, 0}};

constexpr int BoxTextId = 0xFFFF;

struct NamedIcon {
  const char *name;
  const char *resource;
};
const NamedIcon BoxIcons[] = {
    {"stop", IDI_HAND}, {"question", IDI_QUESTION}, {"exclamation", IDI_EXCLAMATION}, {"information", IDI_ASTERISK}};

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

std::string QuotedItems(const Control &list) {
  std::vector<std::string> items = list.items;
  std::ranges::transform(items, items.begin(), Quoted);
  return Listed(items);
}

std::string CheckOf(const Control &control) {
  if (control.kind != ControlKind::CheckBox)
    return "no check box";
  return control.checked ? "yes" : "no";
}

std::string ButtonsOf(HWND top) {
  std::string names;
  for (const NamedButton &button : IsSheet(top) ? SheetButtons.first(NavigationButtonCount) : BoxButtons)
    if (IsUsable(GetDlgItem(top, button.id)))
      names.append(names.empty() ? "" : ",").append(button.name);
  return names;
}

std::string FocusOf(HWND top) {
  const std::span<const NamedButton> buttons = IsSheet(top) ? SheetButtons : BoxButtons;
  const std::vector<Control> controls = ControlsIn(top);
  const auto focused = std::ranges::find_if(controls, &Control::focused);
  if (focused == controls.end())
    return "none";
  if (GetParent(focused->window) != top)
    return std::to_string(focused->id);
  const auto button = std::ranges::find(buttons, focused->id, &NamedButton::id);
  return button != buttons.end() ? button->name : "none";
}

std::string MessageOf(HWND box) { return QuotedText(GetDlgItem(box, BoxTextId)); }

std::string IconOf(HWND box) {
  const std::vector<Control> controls = ControlsIn(box);
  const auto shown = std::ranges::find(controls, ControlKind::Icon, &Control::kind);
  if (shown != controls.end())
    for (const NamedIcon &icon : BoxIcons)
      if (LoadIconA(nullptr, icon.resource) == shown->icon)
        return icon.name;
  return "none";
}

std::string Description(const Control &control) {
  const std::string text = Quoted(control.text);
  std::string line;
  if (control.kind == ControlKind::Icon)
    line = control.icon != nullptr ? "icon set" : "icon empty";
  else if (control.IsList())
    line = "combo " + text + ' ' + QuotedItems(control);
  else if (control.kind == ControlKind::CheckBox)
    line = "check " + text + (control.checked ? " checked" : " unchecked");
  else
    line = control.className + ' ' + text;
  if (control.IsEdit() && control.edit == nullptr)
    line += " readonly";
  if (!control.enabled)
    line += " disabled";
  if (!control.visible)
    line += " hidden";
  return line;
}

std::string ControlLine(const Control &control) {
  return "control " + std::to_string(control.id) + ' ' + Description(control);
}

std::string TopLine(HWND top) {
  if (IsSheet(top))
    return "page " + std::to_string(PageId(top)) + ' ' + QuotedText(top) + " buttons=" + ButtonsOf(top);
  if (IsBox(top))
    return "message " + MessageOf(top) + " buttons=" + ButtonsOf(top) + " icon=" + IconOf(top);
  return "window " + QuotedText(top);
}

std::vector<std::string> PageLines(HWND sheet) {
  constexpr int NoId = 0xFFFF;
  std::vector<std::string> lines;
  for (const Control &control : ControlsIn(CurrentPage(sheet)))
    if (const int id = control.id & NoId; id != 0 && id != NoId)
      lines.push_back(ControlLine(control));
  return lines;
}
