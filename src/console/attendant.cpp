// Two signal handlers that set flags, and the poll that looks at them.
#include "console/attendant.h"

#include <poll.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <utility>

#include "base/interrupt.h"
#include "base/report.h"

namespace tivelo {

namespace {

volatile std::sig_atomic_t asked_to_stop = 0;
bool shows_progress = false;
bool shown = false;  // a progress line is on the terminal
const Run* watched = nullptr;
std::timespec began;

void ask_to_stop(int) {
  asked_to_stop = 1;
  attention = 1;
}
void tick(int) { attention = 1; }

double seconds_of_work() {
  std::timespec now;
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec - began.tv_sec) +
         static_cast<double>(now.tv_nsec - began.tv_nsec) * 1e-9;
}

void write_error(const char* text, std::size_t size) {
  // A progress line that cannot be written is none.
  if (::write(STDERR_FILENO, text, size) < 0) shown = false;
}

void erase_progress() {
  if (!shown) return;
  shown = false;
  constexpr char kErase[] = "\r\x1B[K";
  write_error(kErase, sizeof kErase - 1);
}

// What is being done, and how far: a pass of a repeat, a line of a script, or the line in hand.
int describe(char* text, std::size_t room, Progress& how_far) {
  const Run& run = *watched;
  if (run.block_index != -1) {
    how_far = {run.passes - run.repeat_count, run.passes};
    return std::snprintf(text, room, "pass %lld of %lld", how_far.done + 1, how_far.all);
  }
  how_far = progress;
  const char* line = line_in_hand() != nullptr ? line_in_hand() : "";
  if (run.script_position != nullptr)
    return std::snprintf(text, room, "script, line %lld: %.40s", run.script_line, line);
  if (how_far.all > 0)
    return std::snprintf(text, room, "%lld of %lld: %.40s", std::min(how_far.done, how_far.all),
                         how_far.all, line);
  return std::snprintf(text, room, "%.40s", line);
}

void show_progress() {
  // The console echoes the passes of its own repeats, and what is being printed shows by itself.
  if (watched == nullptr || watched->printing ||
      (watched->block_index != -1 && watched->script_position == nullptr))
    return;
  char text[160] = "\r";
  Progress how_far;
  const int size = describe(text + 1, 100, how_far);
  if (size < 0) return;
  std::size_t end = 1 + std::min<std::size_t>(static_cast<std::size_t>(size), 99);
  const double seconds = seconds_of_work();
  int more = std::snprintf(text + end, sizeof text - end, ", %.0f s", seconds);
  if (how_far.all > 0 && how_far.done > how_far.all / 50 && how_far.done < how_far.all) {
    const double left = seconds * static_cast<double>(how_far.all - how_far.done) /
                        static_cast<double>(how_far.done);
    more = std::snprintf(text + end, sizeof text - end, ", %.0f s, %.0f s left", seconds, left);
  }
  end += static_cast<std::size_t>(std::max(more, 0));
  write_error(text, end);
  constexpr char kRest[] = "\x1B[K";
  write_error(kRest, sizeof kRest - 1);
  shown = true;
}

void look() {
  attention = 0;
  if (asked_to_stop != 0) {
    asked_to_stop = 0;
    interrupt();
  }
  if (shows_progress && seconds_of_work() >= 1) show_progress();
}

// The clock ticks from one second of work on, four times a second.
void run_clock(bool on) {
  if (!shows_progress) return;
  itimerval timer = {};
  if (on) {
    timer = {{0, 250'000}, {1, 0}};
    ::clock_gettime(CLOCK_MONOTONIC, &began);
  }
  ::setitimer(ITIMER_REAL, &timer, nullptr);
}

// False when Ctrl-C ended the wait, and the line is to be dropped. The signal is let in by ppoll
// only, so that none is missed between the look at the flag and the wait.
bool wait_for_input(int descriptor) {
  (void)begin_waiting();  // the flag is looked at below
  sigset_t blocked;
  sigset_t before;
  ::sigemptyset(&blocked);
  ::sigaddset(&blocked, SIGINT);
  ::sigprocmask(SIG_BLOCK, &blocked, &before);
  pollfd wanted = {descriptor, POLLIN, 0};
  while (asked_to_stop == 0 && ::ppoll(&wanted, 1, nullptr, &before) < 0 && errno == EINTR) {
  }
  ::sigprocmask(SIG_SETMASK, &before, nullptr);
  const bool ready = asked_to_stop == 0;
  end_waiting();
  return ready;
}

long fill_at_terminal(void* context, char* data, std::size_t size) {
  if (!wait_for_input(*static_cast<int*>(context))) return kInterruptedRead;
  return fill_descriptor(context, data, size);
}

bool drain_at_terminal(void* context, const char* data, std::size_t size) {
  erase_progress();
  return drain_descriptor(context, data, size);
}

void handle(int signal, void (*handler)(int), int flags) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = flags;
  ::sigaction(signal, &action, nullptr);
}

}  // namespace

void watch_terminal(In& in, Out& to, Out& errors, bool with_progress) {
  struct sigaction before;
  if (::sigaction(SIGINT, nullptr, &before) != 0 || before.sa_handler == SIG_IGN) return;
  handle(SIGINT, ask_to_stop, 0);
  attendant = look;
  if (in.fill == fill_descriptor) in.fill = fill_at_terminal;
  shows_progress = with_progress;
  if (!with_progress) return;
  handle(SIGALRM, tick, SA_RESTART);
  to.drain = drain_at_terminal;
  errors.drain = drain_at_terminal;
}

const Run* watch_run(const Run* run) { return std::exchange(watched, run); }

bool begin_waiting() {
  erase_progress();
  run_clock(false);
  return asked_to_stop == 0;
}

void end_waiting() {
  asked_to_stop = 0;
  attention = 0;
  run_clock(true);
}

}  // namespace tivelo
