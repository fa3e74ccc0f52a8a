// Work that somebody does not want to wait for, or wants to see the progress of. Everything that
// may take long polls: between pieces of bounded work it looks at one flag, which a signal handler
// sets.
#pragma once

#include <csignal>

#include "base/attend.h"

namespace tivelo {

// Somebody asks for attention, at the next poll.
inline volatile std::sig_atomic_t attention = 0;

// What a poll does then, set by whoever runs the calculator; it may call interrupt().
inline void (*attendant)() = nullptr;

// What leaves a computation on the way: nothing but interrupt() and refuse() throw it, and nothing
// but the console's loop catches it. Whatever polls, or multiplies, must have changed nothing yet
// that outlives it.
struct Interrupted {};
[[noreturn]] void interrupt();

// The same where no right result is to be had from this machine, which has been reported.
struct Refused {};
[[noreturn, gnu::cold]] void refuse();

// How far a long operation is, where it knows: of so many factors, products or divisions.
struct Progress {
  long long done = 0;
  long long all = 0;  // 0: not known
};
inline Progress progress;

inline void poll() {
  if (attention != 0) [[unlikely]]
    attend();
}

}  // namespace tivelo
