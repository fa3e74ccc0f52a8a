#include "console/terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <iterator>

namespace tivelo {

namespace {

constexpr int kSignals[] = {SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGTSTP, SIGCONT, SIGWINCH};
constexpr int kCount = std::size(kSignals);
constexpr int kEndOfInput = 4;  // Ctrl-D

int terminal = -1;
termios usual{};    // the settings to put back
termios editing{};  // those while a line is edited
bool first_byte = false;
int early = 0;  // bytes that were typed before the line was asked for
// Between two lines of a paste: the terminal passes single bytes although no line is edited.
volatile std::sig_atomic_t held = 0;
volatile std::sig_atomic_t arrived[kCount];
struct sigaction former[kCount];
sigset_t former_mask;

void note(int signal) {
  for (int i = 0; i < kCount; ++i)
    if (kSignals[i] == signal) arrived[i] = 1;
}

void put_back_signals() {
  for (int i = 0; i < kCount; ++i) ::sigaction(kSignals[i], &former[i], nullptr);
}

// A signal between two lines of a paste: puts back what was, then lets it do its work.
void let_go(int signal) {
  const int error = errno;
  ::tcsetattr(terminal, TCSANOW, &usual);
  held = 0;
  put_back_signals();
  ::raise(signal);
  errno = error;
}

bool is_default(int i) { return former[i].sa_handler == SIG_DFL; }
bool is_ignored(int i) { return former[i].sa_handler == SIG_IGN; }

void take(int i, void (*handler)(int)) {
  if (is_ignored(i)) return;
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  ::sigemptyset(&action.sa_mask);
  ::sigaction(kSignals[i], &action, nullptr);
}

void block_signals(sigset_t* before) {
  sigset_t all;
  ::sigemptyset(&all);
  for (const int signal : kSignals) ::sigaddset(&all, signal);
  ::sigprocmask(SIG_BLOCK, &all, before);
}

// Lets signal i do what it does without the editor: end the program, or stop it for a while.
void pass_on(int i) {
  ::tcsetattr(terminal, TCSADRAIN, &usual);
  ::sigaction(kSignals[i], &former[i], nullptr);
  ::sigprocmask(SIG_SETMASK, &former_mask, nullptr);
  ::raise(kSignals[i]);
  block_signals(nullptr);
  take(i, note);
  ::tcgetattr(terminal, &usual);
  ::tcsetattr(terminal, TCSADRAIN, &editing);
}

// Treats what has arrived; 0 when there is nothing that the editor must know.
int treat_signals() {
  int told = 0;
  for (int i = 0; i < kCount; ++i) {
    if (arrived[i] == 0) continue;
    arrived[i] = 0;
    if (kSignals[i] == SIGINT && !is_default(i)) return kCancel;
    if (kSignals[i] == SIGCONT) {
      ::tcsetattr(terminal, TCSADRAIN, &editing);
    } else if (kSignals[i] != SIGWINCH) {
      pass_on(i);
    }
    told = kRedraw;
  }
  return told;
}

// A Ctrl-D that the terminal took for the end of the input before it was told to pass bytes is a
// zero now.
void look_at_early_bytes() {
  first_byte = false;
  ::tcgetattr(terminal, &editing);
  if (::ioctl(terminal, FIONREAD, &early) != 0) early = 0;
}

}  // namespace

void begin_editing(int descriptor) {
  terminal = descriptor;
  block_signals(&former_mask);
  if (held == 0) ::tcgetattr(terminal, &usual);
  for (int i = 0; i < kCount; ++i) {
    struct sigaction now {};
    ::sigaction(kSignals[i], nullptr, &now);
    if (now.sa_handler != let_go) former[i] = now;
    arrived[i] = 0;
    take(i, note);
  }
  first_byte = held == 0;
  held = 0;
}

int next_byte() {
  if (first_byte) look_at_early_bytes();
  for (;;) {
    pollfd wanted{terminal, POLLIN, 0};
    const int ready = ::ppoll(&wanted, 1, nullptr, &former_mask);
    if (ready < 0 && errno != EINTR) return kNoMore;
    if (const int told = treat_signals(); told != 0) return told;
    if (ready <= 0) continue;
    unsigned char byte = 0;
    const ssize_t got = ::read(terminal, &byte, 1);
    if (got == 1) {
      const bool was_early = early > 0;
      if (was_early) --early;
      return was_early && byte == 0 ? kEndOfInput : byte;
    }
    if (got == 0 || (errno != EINTR && errno != EAGAIN)) return kNoMore;
  }
}

bool byte_waits() {
  pollfd wanted{terminal, POLLIN, 0};
  return ::poll(&wanted, 1, 0) > 0 && (wanted.revents & POLLIN) != 0;
}

void end_editing(bool pasted) {
  constexpr int kMoment = 20;  // milliseconds
  pollfd wanted{terminal, POLLIN, 0};
  const bool more = ::poll(&wanted, 1, pasted ? kMoment : 0) > 0 && wanted.revents == POLLIN;
  termios settings = usual;
  if (more) {
    settings.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
  }
  ::tcsetattr(terminal, TCSADRAIN, &settings);
  held = more ? 1 : 0;
  put_back_signals();
  for (int i = 0; more && i < kCount; ++i) {
    const bool harmless = kSignals[i] == SIGCONT || kSignals[i] == SIGWINCH;
    if (!harmless && is_default(i)) take(i, let_go);
  }
  ::sigprocmask(SIG_SETMASK, &former_mask, nullptr);
}

void release_terminal() {
  if (held == 0) return;
  ::tcsetattr(terminal, TCSADRAIN, &usual);
  held = 0;
  put_back_signals();
}

}  // namespace tivelo
