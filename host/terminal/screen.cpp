#include "terminal/screen.h"

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <langinfo.h>
#include <newt.h>
#include <slang.h>
#include <unistd.h>
#include <utility>

namespace terminal {

namespace {

struct Colours {
  Look look;
  const char *foreground;
  const char *background;
  SLtt_Char_Type withoutColours;
};
constexpr Colours colours[] = {
    {Look::Plain, "black", "lightgray", 0},
    {Look::Disabled, "gray", "lightgray", 0},
    {Look::Field, "black", "cyan", SLTT_ULINE_MASK},
    {Look::FocusedField, "white", "blue", SLTT_ULINE_MASK},
    {Look::Selected, "black", "yellow", SLTT_REV_MASK},
    {Look::Button, "black", "lightgray", 0},
    {Look::DefaultButton, "blue", "lightgray", SLTT_BOLD_MASK},
    {Look::Focused, "white", "red", SLTT_REV_MASK},
};

int ColourSet(Look look) { return NEWT_COLORSET_CUSTOM(static_cast<int>(look)); }

void SetColours() {
  for (const auto &[look, foreground, background, withoutColours] : colours) {
    newtSetColor(ColourSet(look), const_cast<char *>(foreground), const_cast<char *>(background));
    SLtt_set_mono(ColourSet(look), nullptr, withoutColours);
  }
}

// What undoes the setting up of the screen: attributes, keypad, cursor, the other screen.
std::string RestoringSequences() {
  std::string sequences;
  for (const char *const capability : {"me", "ke", "ve", "te"})
    if (const char *const sequence = SLtt_tgetstr(const_cast<char *>(capability)))
      sequences += sequence;
  return sequences + "\r\n";
}

// newt throws away what was typed ahead whenever it opens a window, and slang takes of it to know whether drawing is
// worth while. So they are given an input that nothing comes from, but when they set the terminal's modes.
class EmptyInput {
public:
  EmptyInput() {
    if (pipe2(files, O_CLOEXEC) == 0)
      Swap();
  }
  EmptyInput(const EmptyInput &) = delete;
  EmptyInput &operator=(const EmptyInput &) = delete;
  ~EmptyInput() {
    if (files[1] == -1)
      return;
    Swap();
    close(files[0]);
    close(files[1]);
  }

  void Swap() { std::swap(SLang_TT_Read_FD, files[0]); }

private:
  int files[2] = {-1, -1};
};

// What the terminal itself says that its keys send.
void LearnKeys(KeyReader &reader) {
  constexpr std::pair<const char *, KeyCode> keys[] = {
      {"ku", KeyCode::Up},     {"kd", KeyCode::Down},    {"kl", KeyCode::Left},   {"kr", KeyCode::Right},
      {"kh", KeyCode::Home},   {"@7", KeyCode::End},     {"kP", KeyCode::PageUp}, {"kN", KeyCode::PageDown},
      {"kD", KeyCode::Delete}, {"kB", KeyCode::BackTab}, {"k1", KeyCode::Help},   {"k4", KeyCode::ToggleList},
  };
  for (const auto &[capability, code] : keys)
    reader.Learn(SLtt_tgetstr(const_cast<char *>(capability)), code);
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

} // namespace

struct Screen::Forms {
  EmptyInput input;
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

Screen::Screen() {
  RememberModes();
  newtInit();
  newtCursorOn();
  forms = std::make_unique<Forms>();
  SetColours();
  guard = std::make_unique<Guard>(RestoringSequences().c_str());
  reader = std::make_unique<KeyReader>(guard->Waker());
  LearnKeys(*reader);
}

Screen::~Screen() {
  Clear();
  forms.reset();
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
  newtRefresh();
}

Key Screen::ReadKey() {
  Key key = reader->Read();
  if (Guard::AskedToEnd() != 0)
    return {KeyCode::Quit, {}};
  if (key.code == KeyCode::Suspend) {
    forms->input.Swap();
    newtSuspend();
    kill(0, SIGTSTP); // with the script that started it, which otherwise would go on waiting
    newtResume();
    forms->input.Swap();
  } else if (key.code == KeyCode::Redraw) {
    guard->Rest();
    SLtt_get_screen_size();
    SLsmg_reinit_smg();
  }
  return key;
}

} // namespace terminal
