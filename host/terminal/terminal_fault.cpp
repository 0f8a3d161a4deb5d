// Whether this terminal can show a screen. Apart from the screen, since <term.h> has macros for everyday words.
#include "terminal/screen.h"

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <curses.h>
#include <langinfo.h>
#include <term.h>
#include <unistd.h>

namespace terminal {

std::string Fault() {
  const char *const terminal = std::getenv("TERM");
  if (isatty(STDIN_FILENO) == 0 || isatty(STDOUT_FILENO) == 0)
    return "a wizard needs a terminal, or a script with --script";
  if (terminal == nullptr || *terminal == '\0' || std::strcmp(terminal, "dumb") == 0)
    return "TERM: this terminal has no full screen, which a wizard needs";
  if (std::setlocale(LC_CTYPE, "") == nullptr || std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
    return "LANG: the locale isn't one with UTF-8, which a wizard needs";
  int ignored = 0;
  if (setupterm(nullptr, STDOUT_FILENO, &ignored) != OK || cursor_address == nullptr || clear_screen == nullptr)
    return std::string("TERM: this terminal isn't known or has too little for a full screen: ") + terminal;
  return {};
}

} // namespace terminal
