#include "terminal/screen.h"

#include "terminal/columns.h"

#include <csignal>
#include <curses.h>
#include <cwchar>
#include <iterator>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace terminal {

namespace {

constexpr int KeyTimeout = 200; // milliseconds between the bytes of one key
constexpr wint_t Escape = 0x1B;

// ---- Colours ----

constexpr short Bright = 8;

struct Style {
  short foreground;
  short background;
  attr_t withoutColours;
};
// In the order of Look.
constexpr Style Styles[] = {
    {COLOR_WHITE + Bright, COLOR_BLUE, A_NORMAL},    // Backdrop
    {COLOR_WHITE + Bright, COLOR_BLACK, A_NORMAL},   // Shadow
    {COLOR_RED, COLOR_WHITE, A_NORMAL},              // Title
    {COLOR_BLACK, COLOR_WHITE, A_NORMAL},            // Plain
    {COLOR_BLACK + Bright, COLOR_WHITE, A_NORMAL},   // Disabled
    {COLOR_BLACK, COLOR_CYAN, A_UNDERLINE},          // Field
    {COLOR_WHITE + Bright, COLOR_BLUE, A_UNDERLINE}, // FocusedField
    {COLOR_BLACK, COLOR_YELLOW + Bright, A_REVERSE}, // Selected
    {COLOR_BLUE, COLOR_WHITE, A_BOLD},               // DefaultButton
    {COLOR_WHITE + Bright, COLOR_RED, A_REVERSE},    // Focused
};

bool HasBrightColours() { return COLORS >= 2 * Bright; }

void SetColours() {
  start_color();
  const short colours = HasBrightColours() ? 2 * Bright : Bright;
  for (short pair = 1; const Style &style : Styles)
    init_pair(pair++, style.foreground % colours, style.background % colours);
}

// A_PROTECT changes nothing that is shown, but it keeps curses from clearing columns where it can write blanks: in
// tmux, half of a character of two columns that is cleared loses its colour.
attr_t AttributesOf(Look look) {
  const Style &style = Styles[static_cast<size_t>(look)];
  if (!has_colors())
    return style.withoutColours;
  const bool isBold = style.foreground >= Bright && !HasBrightColours();
  return static_cast<attr_t>(COLOR_PAIR(static_cast<int>(look) + 1)) | (isBold ? A_BOLD : A_NORMAL) | A_PROTECT;
}

// ---- Drawing ----

// What the screen is to show, put together before curses gets it: curses itself draws in the wrong place what is to
// cover half of a character of two columns.
class Canvas {
public:
  explicit Canvas(Size itsSize)
      : size(itsSize), cells(static_cast<size_t>(size.columns * size.rows), {L' ', Look::Backdrop}) {}

  void Put(Position position, std::wstring_view text, Look look) {
    for (const wchar_t character : text) {
      const int end = position.column + wcwidth(character);
      if (position.row >= 0 && position.row < size.rows && position.column >= 0 && end <= size.columns)
        for (wchar_t part = character; position.column < end; part = SecondHalf)
          Set(position.row * size.columns + position.column++, {part, look});
      position.column = end;
    }
  }

  void Show() const {
    erase();
    for (int index = 0; const auto &[character, look] : cells) {
      if (character != SecondHalf) {
        attrset(static_cast<int>(AttributesOf(look)));
        mvaddnwstr(index / size.columns, index % size.columns, &character, 1);
      }
      ++index;
    }
  }

private:
  static constexpr wchar_t SecondHalf = L'\0';
  struct Cell {
    wchar_t character;
    Look look;
  };

  // What is left of a character whose other half goes becomes a blank.
  void Set(int index, Cell cell) {
    const auto replaced = cells.begin() + index;
    if (replaced->character == SecondHalf && cell.character != SecondHalf)
      std::prev(replaced)->character = L' ';
    if (const auto next = std::next(replaced); next != cells.end() && next->character == SecondHalf)
      next->character = L' ';
    *replaced = cell;
  }

  Size size;
  std::vector<Cell> cells;
};

void Draw(Canvas &canvas, const Pane &pane) {
  const auto [left, top] = pane.corner;
  const int bottom = top + pane.size.rows;
  const std::wstring line(static_cast<size_t>(pane.size.columns), L'─');
  const std::wstring blanks(line.size(), L' ');
  for (int row = top; row <= bottom + 1; ++row)
    canvas.Put({left, row}, blanks + L"  ", Look::Shadow);
  canvas.Put({left - 1, top - 1}, L'┌' + line + L'┐', Look::Plain);
  for (int row = top; row < bottom; ++row)
    canvas.Put({left - 1, row}, L'│' + blanks + L'│', Look::Plain);
  canvas.Put({left - 1, bottom}, L'└' + line + L'┘', Look::Plain);
  if (!pane.title.empty()) {
    const int column = left + (pane.size.columns - Width(pane.title)) / 2;
    canvas.Put({column - 2, top - 1}, L"┤ ", Look::Plain);
    canvas.Put({column, top - 1}, pane.title, Look::Title);
    canvas.Put({column + Width(pane.title), top - 1}, L" ├", Look::Plain);
  }
  for (const auto &[position, text, look] : pane.texts)
    canvas.Put({left + position.column, top + position.row}, text, look);
}

// ---- Keys ----

// What curses is to read as a key besides what the terminal's own description says.
const std::vector<std::pair<int, std::vector<const char *>>> MoreKeys = {
    {KEY_ENTER, {"\r", "\n"}},
    {KEY_NEXT, {"\t"}},
    {KEY_BTAB, {"\033[Z"}},
    {KEY_BACKSPACE, {"\b", "\x7F"}},
    {KEY_DC, {"\033[3~"}},
    {KEY_UP, {"\033[A", "\033OA"}},
    {KEY_DOWN, {"\033[B", "\033OB"}},
    {KEY_RIGHT, {"\033[C", "\033OC"}},
    {KEY_LEFT, {"\033[D", "\033OD"}},
    {KEY_HOME, {"\x01" /* Ctrl+A */, "\033[H", "\033OH", "\033[1~", "\033[7~"}},
    {KEY_END, {"\x05" /* Ctrl+E */, "\033[F", "\033OF", "\033[4~", "\033[8~"}},
    {KEY_PPAGE, {"\033[5~"}},
    {KEY_NPAGE, {"\033[6~"}},
    {KEY_F(1), {"\033OP", "\033[11~", "\033[[A"}},
    {KEY_F(4), {"\033OS", "\033[14~", "\033[[D", "\033[1;3A" /* Alt+Up */, "\033[1;3B" /* Alt+Down */}},
    {KEY_EXIT, {"\x03"}},    // Ctrl+C
    {KEY_REFRESH, {"\x0C"}}, // Ctrl+L
    {KEY_DL, {"\x15"}},      // Ctrl+U
    {KEY_SUSPEND, {"\x1A"}}, // Ctrl+Z
};

void DefineMoreKeys() {
  for (const auto &[code, sequences] : MoreKeys)
    for (const char *const sequence : sequences)
      if (const int known = key_defined(sequence); known == 0 || known > KEY_MAX) // no key or one without a name
        define_key(sequence, code);
}

// poll is asked for no event, so it reports a hang-up or an error alone, and not a key that comes just now.
bool IsHungUp() {
  pollfd input = {STDIN_FILENO, 0, 0};
  return poll(&input, 1, 0) > 0;
}

// Escape itself, Alt with a character, or an unknown key. The bytes that belong to the Escape have come with it.
Key ReadBehindEscape() {
  wint_t read = 0;
  timeout(0);
  const int kind = get_wch(&read);
  timeout(KeyTimeout);
  if (kind == OK && (read == '[' || read == 'O')) {
    while (get_wch(&read) == OK && (read < '@' || read == '[')) {
    }
    return {};
  }
  if (kind == OK && read >= ' ')
    return {0, static_cast<wchar_t>(read), true};
  if (kind != ERR)
    ungetch(static_cast<int>(read));
  return {KEY_CANCEL};
}

} // namespace

Screen::Screen() : opened(newterm(nullptr, stdout, stdin)) {
  raw();
  noecho();
  nonl();
  keypad(stdscr, TRUE);
  set_escdelay(KeyTimeout);
  timeout(KeyTimeout);
  SetColours();
  DefineMoreKeys();
}

void Screen::Closer::operator()(screen *opened) const {
  erase(); // for terminals that don't bring back what they showed before
  refresh();
  endwin();
  delscreen(opened);
}

Screen::~Screen() = default;

Size Screen::Dimensions() const { return {COLS, LINES}; }

void Screen::Show(const std::vector<Pane> &panes, const std::wstring &hints) {
  Canvas canvas(Dimensions());
  canvas.Put({0, LINES - 1}, hints, Look::Backdrop);
  for (const Pane &pane : panes)
    Draw(canvas, pane);
  canvas.Show();
  const Pane &front = panes.back();
  move(front.corner.row + front.cursor.row, front.corner.column + front.cursor.column);
  refresh();
}

void Screen::ShowText(const std::wstring &text) {
  Canvas canvas(Dimensions());
  for (int row = 0; const std::wstring &line : Wrap(text, COLS))
    canvas.Put({0, row++}, line, Look::Backdrop);
  canvas.Show();
  refresh();
}

Key Screen::ReadKey() {
  for (;;) {
    wint_t read = 0;
    const int kind = get_wch(&read); // which wakes up now and then
    if (EndingSignals::Asked() != 0 || (kind == ERR && IsHungUp()))
      return {KEY_EXIT};
    if (kind == KEY_CODE_YES && read == KEY_SUSPEND)
      kill(0, SIGTSTP); // with the script that started it, which otherwise would go on waiting
    if (kind == KEY_CODE_YES && read == KEY_REFRESH)
      clearok(curscr, TRUE);
    if (kind == KEY_CODE_YES)
      return {static_cast<int>(read)};
    if (kind == OK && read == Escape)
      return ReadBehindEscape();
    if (kind == OK && read >= ' ')
      return {0, static_cast<wchar_t>(read)};
  }
}

} // namespace terminal
