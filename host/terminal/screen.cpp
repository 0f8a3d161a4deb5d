#include "terminal/screen.h"

#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>
#include <map>
#include <newt.h>
#include <slang.h>
#include <unistd.h>
#include <utility>

namespace terminal {

namespace {

constexpr int FirstCharacter = ' ';
constexpr int LastByte = 0xFF;
constexpr int LastSpecialKey = NEWT_KEY_ERROR;
constexpr int Control = 0x1F; // Control and a letter

// newt's keys of a terminal's own codes.
const std::map<int, KeyCode> keyCodes = {
    {NEWT_KEY_ENTER, KeyCode::Enter},     {'\n', KeyCode::Enter},
    {NEWT_KEY_TAB, KeyCode::Tab},         {NEWT_KEY_UNTAB, KeyCode::BackTab},
    {NEWT_KEY_BKSPC, KeyCode::Backspace}, {'\b', KeyCode::Backspace},
    {'\x7F', KeyCode::Backspace},         {NEWT_KEY_DELETE, KeyCode::Delete},
    {NEWT_KEY_LEFT, KeyCode::Left},       {NEWT_KEY_RIGHT, KeyCode::Right},
    {NEWT_KEY_UP, KeyCode::Up},           {NEWT_KEY_DOWN, KeyCode::Down},
    {NEWT_KEY_HOME, KeyCode::Home},       {NEWT_KEY_END, KeyCode::End},
    {NEWT_KEY_PGUP, KeyCode::PageUp},     {NEWT_KEY_PGDN, KeyCode::PageDown},
    {NEWT_KEY_F1, KeyCode::Help},         {NEWT_KEY_F4, KeyCode::ToggleList},
    {NEWT_KEY_ERROR, KeyCode::Quit},      {NEWT_KEY_RESIZE, KeyCode::Redraw},
    {'C' & Control, KeyCode::Quit},       {'L' & Control, KeyCode::Redraw},
    {'U' & Control, KeyCode::EraseAll},   {'A' & Control, KeyCode::Home},
    {'E' & Control, KeyCode::End},
};

struct Colours {
  Look look;
  const char *foreground;
  const char *background;
};
constexpr Colours colours[] = {
    {Look::Plain, "black", "lightgray"},
    {Look::Disabled, "gray", "lightgray"},
    {Look::Field, "black", "cyan"},
    {Look::FocusedField, "white", "blue"},
    {Look::Selected, "black", "yellow"},
    {Look::Button, "black", "lightgray"},
    {Look::DefaultButton, "blue", "lightgray"},
    {Look::Focused, "white", "red"},
};

int ColourSet(Look look) { return NEWT_COLORSET_CUSTOM(static_cast<int>(look)); }

// Without colours what has the focus is told by reversed letters.
void SetColours() {
  for (const auto &[look, foreground, background] : colours)
    newtSetColor(ColourSet(look), const_cast<char *>(foreground), const_cast<char *>(background));
  for (const Look look : {Look::FocusedField, Look::Focused, Look::Selected})
    SLtt_set_mono(ColourSet(look), nullptr, SLTT_REV_MASK);
  for (const Look look : {Look::Field, Look::DefaultButton})
    SLtt_set_mono(ColourSet(look), nullptr, SLTT_ULINE_MASK);
}

// What undoes the setting up of the screen: attributes, keypad, cursor, the other screen.
std::string RestoringSequences() {
  std::string sequences;
  for (const char *const capability : {"me", "ke", "ve", "te"})
    if (const char *const sequence = SLtt_tgetstr(const_cast<char *>(capability)))
      sequences += sequence;
  return sequences + "\r\n";
}

void Suspend(void *) {
  newtSuspend();
  std::raise(SIGTSTP);
  newtResume();
}

// The next byte, -1 if none comes soon: the rest of a character or of a key's sequence comes at once.
int NextByte(int tenthsOfSecond) {
  return SLang_input_pending(tenthsOfSecond) > 0 ? static_cast<int>(SLang_getkey()) : -1;
}

newtComponent MakeForm(const Pane &pane) {
  const newtComponent form = newtForm(nullptr, nullptr, NEWT_FLAG_NOF12);
  for (const auto &[place, text, look] : pane.labels) {
    const newtComponent label = newtLabel(place.column, place.row, text.c_str());
    newtLabelSetColors(label, ColourSet(look));
    newtFormAddComponent(form, label);
  }
  // The cursor stays where the last thing was drawn.
  newtFormAddComponent(form, newtLabel(pane.cursor.column, pane.cursor.row, ""));
  return form;
}

size_t LengthOfCharacter(int firstByte) {
  return firstByte >= 0xF0 ? 4 : firstByte >= 0xE0 ? 3 : firstByte >= 0xC0 ? 2 : 1;
}

} // namespace

struct Screen::Forms {
  std::vector<newtComponent> all; // one for each pane
  size_t windows = 0;             // those of them that have a frame
};

std::string Problem() {
  const char *const terminal = std::getenv("TERM");
  if (isatty(STDIN_FILENO) == 0 || isatty(STDOUT_FILENO) == 0)
    return "a wizard needs a terminal, or a script with --script";
  if (terminal == nullptr || *terminal == '\0' || std::strcmp(terminal, "dumb") == 0)
    return "TERM: this terminal has no full screen, which a wizard needs";
  if (std::setlocale(LC_CTYPE, "") == nullptr || std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
    return "LANG: the locale isn't one with UTF-8, which a wizard needs";
  if (SLtt_initialize(const_cast<char *>(terminal)) != 0)
    return std::string("TERM: this terminal isn't known or has too little for a full screen: ") + terminal;
  return {};
}

Screen::Screen() : forms(std::make_unique<Forms>()) {
  RememberModes();
  newtInit();
  newtCursorOn();
  newtSetSuspendCallback(Suspend, nullptr);
  SetColours();
  guard = std::make_unique<Guard>(RestoringSequences().c_str());
}

Screen::~Screen() {
  Clear();
  newtFinished();
}

Size Screen::Dimensions() const {
  Size size;
  newtGetScreenSize(&size.columns, &size.rows);
  return size;
}

// All is drawn anew, and what has changed goes to the terminal: what newt puts back beneath a window is broken where
// characters are two columns wide.
void Screen::Clear() {
  for (newtComponent form : forms->all)
    newtFormDestroy(form);
  for (; forms->windows > 0; --forms->windows)
    newtPopWindowNoRefresh();
  forms->all.clear();
  SLsmg_set_color(NEWT_COLORSET_ROOT);
  SLsmg_gotorc(0, 0);
  SLsmg_erase_eos();
}

void Screen::Show(const std::vector<Pane> &panes, const std::string &hints) {
  Clear();
  newtPopHelpLine();
  newtPushHelpLine(hints.c_str());
  for (const Pane &pane : panes) {
    if (pane.framed) {
      newtOpenWindow(pane.corner.column, pane.corner.row, static_cast<unsigned>(pane.size.columns),
                     static_cast<unsigned>(pane.size.rows), pane.title.empty() ? nullptr : pane.title.c_str());
      ++forms->windows;
    }
    forms->all.push_back(MakeForm(pane));
    newtDrawForm(forms->all.back());
  }
}

Key Screen::ReadKey() { return waiting != 0 ? Decode(std::exchange(waiting, 0)) : WaitForKey(); }

// Every key ends the form, which has only to show.
Key Screen::WaitForKey() {
  const newtComponent form = forms->all.back();
  for (int code = 1; code <= LastByte; ++code)
    newtFormAddHotKey(form, code);
  for (int code = NEWT_KEY_EXTRA_BASE; code <= LastSpecialKey; ++code)
    newtFormAddHotKey(form, code);
  newtFormWatchFd(form, guard->Waker(), NEWT_FD_READ);
  newtExitStruct end{};
  newtFormRun(form, &end);
  if (Guard::AskedToEnd() != 0)
    return {KeyCode::Quit, {}};
  switch (end.reason) {
  case newtExitStruct::NEWT_EXIT_HOTKEY:
    return Decode(end.u.key);
  case newtExitStruct::NEWT_EXIT_FDREADY:
    guard->Rest();
    SLtt_get_screen_size();
    SLsmg_reinit_smg();
    return {KeyCode::Redraw, {}};
  case newtExitStruct::NEWT_EXIT_ERROR:
    return {KeyCode::Quit, {}};
  default:
    return {};
  }
}

Key Screen::Decode(int code) {
  if (code == NEWT_KEY_ESCAPE)
    return DecodeEscape();
  if (const auto found = keyCodes.find(code); found != keyCodes.end())
    return {found->second, {}};
  return code >= FirstCharacter && code <= LastByte ? DecodeCharacter(code) : Key{};
}

Key Screen::DecodeCharacter(int firstByte) {
  constexpr int Patience = 5;
  std::string character(1, static_cast<char>(firstByte));
  const size_t length = LengthOfCharacter(firstByte);
  while (character.size() < length) {
    const int next = NextByte(Patience);
    if (next < 0)
      return {};
    character += static_cast<char>(next);
  }
  return {KeyCode::Character, character};
}

// Escape itself, Alt and a letter, or a key that newt doesn't know. newt has waited for what comes behind Escape.
Key Screen::DecodeEscape() {
  constexpr int Patience = 0;
  const int next = NextByte(Patience);
  if (next < FirstCharacter) { // no letter, but nothing or the next key
    waiting = std::max(next, 0);
    return {KeyCode::Escape, {}};
  }
  if (next != '[' && next != 'O')
    return {KeyCode::Mnemonic, std::string(1, static_cast<char>(next))};
  std::string sequence;
  for (int byte = NextByte(Patience); byte >= 0; byte = NextByte(Patience)) {
    sequence += static_cast<char>(byte);
    if (byte >= '@' && byte <= '~')
      break;
  }
  return sequence == "1;3B" || sequence == "1;3A" ? Key{KeyCode::ToggleList, {}} : Key{};
}

} // namespace terminal
