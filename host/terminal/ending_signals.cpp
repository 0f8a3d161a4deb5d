#include "terminal/ending_signals.h"

#include <csignal>
#include <curses.h>

namespace terminal {

namespace {

constexpr int AskingSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr int OtherSignals[] = {SIGSEGV, SIGBUS,  SIGFPE,    SIGILL,  SIGABRT, SIGSYS,  SIGTRAP, SIGQUIT,
                                SIGPIPE, SIGALRM, SIGVTALRM, SIGPROF, SIGUSR1, SIGUSR2, SIGXCPU, SIGXFSZ};

volatile std::sig_atomic_t asked = 0;

// As curses itself does it when it handles a signal: endwin isn't promised to work here, but to leave the terminal as
// it is would be worse in any case.
void End(int signal) {
  endwin();
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void Ask(int signal) {
  if (asked != 0)
    End(signal);
  asked = signal;
}

void Handle(int signal, void (*handler)(int)) {
  if (std::signal(signal, handler) == SIG_IGN)
    std::signal(signal, SIG_IGN);
}

} // namespace

EndingSignals::EndingSignals() {
  for (const int signal : AskingSignals)
    Handle(signal, Ask);
  for (const int signal : OtherSignals)
    Handle(signal, End);
}

EndingSignals::~EndingSignals() {
  for (const int signal : AskingSignals)
    Handle(signal, SIG_DFL);
  for (const int signal : OtherSignals)
    Handle(signal, SIG_DFL);
}

int EndingSignals::Asked() { return asked; }

} // namespace terminal
