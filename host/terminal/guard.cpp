#include "terminal/guard.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <termios.h>
#include <unistd.h>

namespace terminal {

namespace {

constexpr int AskingSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr int DeadlySignals[] = {SIGSEGV, SIGBUS,  SIGFPE,    SIGILL,  SIGABRT, SIGSYS,  SIGTRAP, SIGQUIT,
                                 SIGPIPE, SIGALRM, SIGVTALRM, SIGPROF, SIGUSR1, SIGUSR2, SIGXCPU, SIGXFSZ};
constexpr size_t SignalCount = std::size(AskingSignals) + std::size(DeadlySignals) + 1; // and the change of size

// All that a signal handler may look at.
termios modes;
std::array<char, 256> restoring;
size_t restoringLength = 0;
int waker[2] = {-1, -1};
volatile std::sig_atomic_t asked = 0;

struct sigaction before[SignalCount];

void Write(int file, const char *bytes, size_t length) {
  // There is nobody to tell if it fails.
  [[maybe_unused]] const ssize_t written = write(file, bytes, length);
}

void Die(int signal) {
  Write(STDOUT_FILENO, restoring.data(), restoringLength);
  tcsetattr(STDIN_FILENO, TCSANOW, &modes);
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void Wake(int) {
  const int error = errno;
  Write(waker[1], "", 1);
  errno = error;
}

void AskToEnd(int signal) {
  if (asked != 0)
    Die(signal);
  asked = signal;
  Wake(signal);
}

template <typename Action> void ForAllSignals(const Action &action) {
  size_t index = 0;
  for (const int signal : AskingSignals)
    action(signal, AskToEnd, before[index++]);
  for (const int signal : DeadlySignals)
    action(signal, Die, before[index++]);
  action(SIGWINCH, Wake, before[index++]);
}

// What whoever started the program has told it to ignore, it goes on ignoring.
void Handle(int signal, void (*handler)(int), struct sigaction &old) {
  sigaction(signal, nullptr, &old);
  if (old.sa_handler == SIG_IGN)
    return;
  struct sigaction handling = {};
  handling.sa_handler = handler;
  handling.sa_flags = SA_NODEFER; // so that a handler can end the program by the same signal
  sigaction(signal, &handling, nullptr);
}

} // namespace

void RememberModes() { tcgetattr(STDIN_FILENO, &modes); }

Guard::Guard(const char *restore) {
  restoringLength = std::min(std::strlen(restore), restoring.size());
  std::copy_n(restore, restoringLength, restoring.begin());
  if (pipe2(waker, O_NONBLOCK | O_CLOEXEC) != 0)
    waker[0] = waker[1] = -1;
  ForAllSignals(Handle);
}

Guard::~Guard() {
  ForAllSignals([](int signal, auto, const struct sigaction &old) { sigaction(signal, &old, nullptr); });
  close(waker[0]);
  close(waker[1]);
}

int Guard::Waker() const { return waker[0]; }

void Guard::Rest() {
  std::array<char, 64> bytes;
  while (read(waker[0], bytes.data(), bytes.size()) > 0) {
  }
}

int Guard::AskedToEnd() { return asked; }

} // namespace terminal
