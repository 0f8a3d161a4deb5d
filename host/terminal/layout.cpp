#include "terminal/layout.h"

#include "terminal/columns.h"
#include "utf8.h"
#include "window_controls.h"

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <utility>

namespace terminal {

namespace {

constexpr int Frame = 1;
constexpr int Margin = 1; // between the frame and the texts, left and right
constexpr int Shadow = 1;
constexpr int HintRow = 1;
constexpr int ButtonRow = 1;
constexpr int BetweenButtons = 1;
constexpr int AroundTitle = 4;
constexpr int NarrowestField = 8;
constexpr int FewestLines = 3; // that a long text keeps however small the screen is
constexpr int MostItems = 8;   // of an open list
// A window with pages takes some of the room that a screen has, a message box is as wide as its text.
constexpr double WidestStretch = 1.45;

constexpr const wchar_t *DropButton = L"[v]";
constexpr int DropButtonWidth = 3;

// A control where it is to be, in columns and rows within the pane.
struct Placed {
  Control control;
  int column = 0;
  int width = 0;
  std::vector<std::wstring> lines;
};

struct Row {
  int naturalTop = 0; // in the window, in pixels
  std::vector<Placed> parts;
  int row = 0;
  int height = 1;
  bool mayShrink = false;
};

// How the pixels of a window become columns and rows.
struct Scale {
  int left = 0;
  int columns = 0;
  int rows = 0;
  double across = 0;
  double down = 0;
};

int Rounded(double value) { return static_cast<int>(std::lround(value)); }

// Whether it is as wide as in the window, whatever stands in it.
bool HasOwnWidth(const Control &control) { return control.kind == ControlKind::Field || control.IsList(); }

int WidthOf(const std::vector<std::wstring> &lines) {
  int width = 0;
  for (const std::wstring &line : lines)
    width = std::max(width, Width(line));
  return width;
}

std::wstring ShownText(const Control &control) {
  std::wstring label = Widen(control.label);
  switch (control.kind) {
  case ControlKind::CheckBox:
    return (control.checked ? L"[*] " : L"[ ] ") + label;
  case ControlKind::Button:
    return control.enabled ? L"[ " + label + L" ]" : L"  " + label + L"  ";
  default:
    return label;
  }
}

// The buttons of the window itself stand below all else.
bool IsInButtonRow(HWND top, const Control &control) {
  return control.kind == ControlKind::Button && GetParent(control.window) == top;
}

// What shows a text or can be worked, with its bounds from the corner of the window.
std::vector<Control> ShownControls(HWND top) {
  std::vector<Control> controls = ControlsIn(top);
  std::erase_if(controls, [](const Control &control) {
    const bool isPicture = control.kind == ControlKind::Icon || control.kind == ControlKind::Other;
    return !control.visible || isPicture || (control.kind == ControlKind::Label && control.text.empty());
  });
  RECT window{};
  GetWindowRect(top, &window);
  for (Control &control : controls) {
    RECT &bounds = control.bounds;
    bounds = {bounds.left - window.left, bounds.top - window.top, bounds.right - window.left,
              bounds.bottom - window.top};
  }
  return controls;
}

// The button that Enter presses: the one with the focus, in whichever window, or else the window's default one.
HWND DefaultButton(HWND top) {
  if (const HWND focus = GetFocus(); focus != nullptr && ReadControl(focus).kind == ControlKind::Button)
    return focus;
  const LRESULT answer = SendMessageA(top, DM_GETDEFID, 0, 0);
  return GetDlgItem(top, LOWORD(static_cast<uintptr_t>(answer)));
}

// ---- Measuring ----

bool HasPages(HWND top, const std::vector<Control> &controls) {
  return std::ranges::any_of(controls, [&](const Control &control) { return GetParent(control.window) != top; });
}

Scale MeasureWindow(HWND top, const std::vector<Control> &controls, Size screen) {
  RECT area{};
  GetClientRect(top, &area);
  RECT cell = {0, 0, 4, 8}; // a letter of the dialog's font, in dialog units
  MapDialogRect(top, &cell);

  LONG left = area.right;
  LONG bottom = area.bottom;
  for (const Control &control : controls)
    if (IsInButtonRow(top, control))
      bottom = std::min(bottom, control.bounds.top);
    else
      left = std::min(left, control.bounds.left);

  const int mostColumns = screen.columns - 2 * (Frame + Margin) - 2 * Shadow;
  const int mostRows = screen.rows - 2 * Frame - Shadow - HintRow - ButtonRow;
  const double naturalColumns = std::max(static_cast<double>(area.right - left) / cell.right, 1.0);
  const double naturalRows = std::max(static_cast<double>(bottom) / cell.bottom, 1.0);
  const double stretch = std::min(mostColumns / naturalColumns, HasPages(top, controls) ? WidestStretch : 1.0);
  const double squeeze = std::min(mostRows / naturalRows, 1.0);
  return {static_cast<int>(left), Rounded(naturalColumns * stretch), mostRows, stretch / cell.right,
          squeeze / cell.bottom};
}

// What begins at about the same height stands in one row, from left to right.
std::vector<Row> GroupInRows(std::vector<Control> controls, LONG tolerance) {
  std::ranges::stable_sort(controls, {}, [](const Control &control) { return control.bounds.top; });
  std::vector<Row> rows;
  for (Control &control : controls) {
    if (rows.empty() || control.bounds.top - rows.back().naturalTop >= tolerance)
      rows.emplace_back().naturalTop = static_cast<int>(control.bounds.top);
    rows.back().parts.push_back({std::move(control), 0, 0, {}});
  }
  for (Row &row : rows)
    std::ranges::stable_sort(row.parts, {}, [](const Placed &part) { return part.control.bounds.left; });
  return rows;
}

// ---- Placing ----

int WidthSideBySide(const Row &buttons) {
  int width = -BetweenButtons;
  for (const Placed &button : buttons.parts)
    width += button.width + BetweenButtons;
  return width;
}

void PlaceAcross(Row &row, const Scale &scale) {
  int behind = 0;
  for (Placed &part : row.parts) {
    const RECT &bounds = part.control.bounds;
    const int natural = Rounded(static_cast<double>(bounds.right - bounds.left) * scale.across);
    part.column = std::max(Rounded(static_cast<double>(bounds.left - scale.left) * scale.across), behind);
    const int space = std::max(scale.columns - part.column, 1);
    if (HasOwnWidth(part.control)) {
      part.width = std::min(std::max(natural, NarrowestField), space);
      part.lines = {Widen(part.control.text)};
    } else if (part.control.kind == ControlKind::Document) {
      part.width = space;
      part.lines = Wrap(Widen(part.control.text), std::max(space - 1, 1)); // the last column has the marks of scrolling
    } else {
      part.lines = Wrap(ShownText(part.control), space);
      part.width = WidthOf(part.lines);
    }
    behind = part.column + part.width + 1;
  }
}

void MeasureHeight(Row &row, const Scale &scale) {
  for (const Placed &part : row.parts) {
    int lines = static_cast<int>(part.lines.size());
    const RECT &bounds = part.control.bounds;
    if (part.control.kind == ControlKind::Document)
      lines = std::max(lines, Rounded(static_cast<double>(bounds.bottom - bounds.top) * scale.down));
    row.height = std::max(row.height, lines);
    row.mayShrink = row.mayShrink || (!part.control.IsButton() && lines > FewestLines);
  }
}

void ShrinkLongTexts(std::vector<Row> &rows, int available) {
  int excess = -available;
  for (const Row &row : rows)
    excess += row.height;
  for (Row &row : rows)
    if (row.mayShrink && excess > 0) {
      const int less = std::min(excess, row.height - FewestLines);
      row.height -= less;
      excess -= less;
    }
}

// As far down as in the window, pushed down by what is above and up by the end of the pane.
void PlaceDown(std::vector<Row> &rows, const Scale &scale) {
  ShrinkLongTexts(rows, scale.rows);
  int behind = 0;
  for (Row &row : rows) {
    row.row = std::max(Rounded(row.naturalTop * scale.down), behind);
    behind = row.row + row.height;
  }
  int end = scale.rows;
  for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
    row->row = std::max(std::min(row->row, end - row->height), 0);
    end = row->row;
  }
}

void PlaceButtons(Row &buttons, int columns) {
  int column = (columns - WidthSideBySide(buttons)) / 2;
  for (Placed &button : buttons.parts) {
    button.column = column;
    column += button.width + BetweenButtons;
  }
}

// ---- The plan of a window ----

struct Plan {
  std::vector<Row> rows;
  Row buttons;
  Size size;
};

// The contents of a window, and apart from them the buttons in their order.
Row TakeButtons(HWND top, std::vector<Control> &contents) {
  const auto first = std::stable_partition(contents.begin(), contents.end(),
                                           [&](const Control &control) { return !IsInButtonRow(top, control); });
  std::stable_sort(first, contents.end(),
                   [](const Control &left, const Control &right) { return left.bounds.left < right.bounds.left; });
  Row row;
  for (auto button = first; button != contents.end(); ++button) {
    row.naturalTop = static_cast<int>(button->bounds.top);
    const std::wstring text = ShownText(*button);
    row.parts.push_back({std::move(*button), 0, Width(text), {text}});
  }
  contents.erase(first, contents.end());
  return row;
}

Plan MakePlan(HWND top, Size screen) {
  std::vector<Control> contents = ShownControls(top);
  const Scale scale = MeasureWindow(top, contents, screen);
  Plan plan;
  plan.buttons = TakeButtons(top, contents);
  plan.rows = GroupInRows(std::move(contents), Rounded(0.5 / scale.down));
  for (Row &row : plan.rows) {
    PlaceAcross(row, scale);
    MeasureHeight(row, scale);
  }
  PlaceDown(plan.rows, scale);

  const int columns =
      std::max({scale.columns, WidthSideBySide(plan.buttons), Width(Widen(ReadText(top))) + AroundTitle});
  PlaceButtons(plan.buttons, columns);
  const int end = plan.rows.empty() ? 0 : plan.rows.back().row + plan.rows.back().height;
  plan.buttons.row = std::min(std::max(Rounded(plan.buttons.naturalTop * scale.down), end + 1), scale.rows);
  plan.size = {columns + 2 * Margin, plan.buttons.row + ButtonRow};
  return plan;
}

// ---- Drawing ----

// How many characters are within the first so many bytes of an edit's text.
size_t CharactersIn(HWND edit, size_t bytes) { return Widen(ToUtf8(ReadRawText(edit).substr(0, bytes))).size(); }

class PaneBuilder {
public:
  PaneBuilder(HWND itsTop, Size itsScreen, const Scrolling &before)
      : top(itsTop), screen(itsScreen), defaultButton(DefaultButton(itsTop)), scrolled(before) {}

  Layout Draw();

private:
  void DrawRow(const Row &row);
  void DrawField(const Placed &part, Position position, int width);
  void DrawLines(const Placed &part, Position position, int height);
  Look LookOf(const Control &control) const;
  Pane OpenList(const Placed &part, int row) const;

  void Put(Position position, const std::wstring &text, Look look) { pane.texts.push_back({position, text, look}); }

  HWND top;
  Size screen;
  HWND defaultButton;
  Scrolling scrolled; // before
  Scrolling scrolling;
  Pane pane;
};

Layout PaneBuilder::Draw() {
  const Plan plan = MakePlan(top, screen);
  pane.title = Widen(ReadText(top));
  pane.size = plan.size;
  pane.corner = {(screen.columns - pane.size.columns) / 2,
                 std::max((screen.rows - HintRow - pane.size.rows) / 2, Frame)};
  for (const Row &row : plan.rows)
    DrawRow(row);
  DrawRow(plan.buttons);

  Layout layout = {{pane}, scrolling};
  for (const Row &row : plan.rows)
    for (const Placed &part : row.parts)
      if (part.control.listIsOpen)
        layout.panes.push_back(OpenList(part, row.row));
  return layout;
}

Look PaneBuilder::LookOf(const Control &control) const {
  if (!control.enabled)
    return Look::Disabled;
  if (control.focused)
    return control.IsEdit() || control.edit != nullptr ? Look::FocusedField : Look::Focused;
  if (control.IsEdit() || control.IsList())
    return Look::Field;
  return control.window == defaultButton ? Look::DefaultButton : Look::Plain;
}

void PaneBuilder::DrawRow(const Row &row) {
  for (const Placed &part : row.parts) {
    const Position position = {Margin + part.column, row.row};
    const Look look = LookOf(part.control);
    if (part.control.focused)
      pane.cursor = position;
    const int beforeButton = part.width - DropButtonWidth;
    switch (part.control.kind) {
    case ControlKind::Field:
      DrawField(part, position, part.width);
      break;
    case ControlKind::EditableList:
      DrawField(part, position, beforeButton);
      Put({position.column + beforeButton, position.row}, DropButton, look);
      break;
    case ControlKind::List:
      Put(position, Fit(part.lines.front(), beforeButton) + DropButton, look);
      break;
    default:
      DrawLines(part, position, row.height);
    }
  }
}

// The visible part of a field's text, around the caret, with the selection.
void PaneBuilder::DrawField(const Placed &part, Position position, int width) {
  const Look look = LookOf(part.control);
  const bool focused = look == Look::FocusedField;
  const std::wstring &text = part.lines.front();
  const Selection selection = SelectionIn(part.control.edit);
  const size_t begin = CharactersIn(part.control.edit, selection.begin);
  const size_t end = CharactersIn(part.control.edit, selection.end);
  const int caret = Width(text.substr(0, end));
  const int hidden = focused ? std::max(caret - width + 1, 0) : 0;

  Put(position, Fit(L"", width), look);
  int column = -hidden;
  for (size_t at = 0; at < text.size(); ++at) {
    const int from = std::exchange(column, column + wcwidth(text[at]));
    if (from >= 0 && column <= width)
      Put({position.column + from, position.row}, {text[at]},
          focused && at >= begin && at < end ? Look::Selected : look);
  }
  if (focused)
    pane.cursor = {position.column + caret - hidden, position.row};
}

void PaneBuilder::DrawLines(const Placed &part, Position position, int height) {
  const Look look = LookOf(part.control);
  const bool isDocument = part.control.kind == ControlKind::Document;
  const int lines = static_cast<int>(part.lines.size());
  const int shown = isDocument ? height : std::min(lines, height);
  const bool scrolls = lines > height;
  int first = 0;
  if (scrolls) {
    first = std::clamp(scrolled.window == part.control.window ? scrolled.first : 0, 0, lines - shown);
    scrolling = {part.control.window, first, shown, lines};
  }
  for (int line = 0; line < shown; ++line) {
    const auto index = static_cast<size_t>(first) + static_cast<size_t>(line);
    const std::wstring text = index < part.lines.size() ? part.lines[index] : L"";
    Put({position.column, position.row + line}, isDocument ? Fit(text, part.width) : text, look);
  }
  const int markColumn = position.column + part.width - (isDocument ? 1 : 0);
  if (first > 0)
    Put({markColumn, position.row}, L"^", look);
  if (scrolls && first + shown < lines)
    Put({markColumn, position.row + shown - 1}, L"v", look);
}

// The list of a combo box, below it or else above.
Pane PaneBuilder::OpenList(const Placed &part, int row) const {
  std::vector<std::wstring> items(part.control.items.size());
  std::ranges::transform(part.control.items, items.begin(), Widen);
  const int selection = part.control.selected;
  const int lineOfList = pane.corner.row + row;
  const int below = screen.rows - HintRow - (lineOfList + 1) - 2 * Frame;
  const int above = lineOfList - 2 * Frame;
  const int wanted = std::clamp(static_cast<int>(items.size()), 1, MostItems);
  const bool opensDown = wanted <= below || below >= above;

  Pane list;
  list.size.rows = std::min(wanted, opensDown ? below : above);
  list.size.columns = std::min(std::max(part.width, WidthOf(items) + 2 * Margin), screen.columns - 2 * Frame - Shadow);
  list.corner.column =
      std::min(pane.corner.column + Margin + part.column, screen.columns - list.size.columns - Frame - Shadow);
  list.corner.row = opensDown ? lineOfList + 1 + Frame : lineOfList - Frame - list.size.rows;
  const int first = std::max(selection - list.size.rows + 1, 0);
  list.cursor = {0, std::max(selection - first, 0)};
  for (int line = 0; line < list.size.rows && first + line < static_cast<int>(items.size()); ++line) {
    const int item = first + line;
    list.texts.push_back({{0, line},
                          Fit(L" " + items[static_cast<size_t>(item)], list.size.columns),
                          item == selection ? Look::Selected : Look::Plain});
  }
  return list;
}

} // namespace

Layout LayOut(HWND top, Size screen, const Scrolling &scrolling) { return PaneBuilder(top, screen, scrolling).Draw(); }

} // namespace terminal
