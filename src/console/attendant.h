// What is done for a person who waits at a terminal: Ctrl-C breaks a computation off, and after a
// second of work a line on standard error shows what is being done, how far, and how long still.
#pragma once

#include "base/stream.h"
#include "console/run.h"

namespace tivelo {

// Watches over a session whose lines are typed at a terminal, unless whoever started it has Ctrl-C
// ignored. `in` and the two channels then go through here, so that a wait for a line ends by Ctrl-C
// and the progress line is gone before anything is printed. Progress is shown only where messages
// are read.
void watch_terminal(In& in, Out& answers, Out& errors, bool progress);

// The run whose passes or lines tell how far it is, the innermost one; null at the end. Returns the
// one before.
const Run* watch_run(const Run* run);

// For whoever waits for a line in another way: around the wait, so that the progress line is gone
// and its clock does not run. begin_waiting() is false when Ctrl-C has come before it.
[[nodiscard]] bool begin_waiting();
void end_waiting();

}  // namespace tivelo
