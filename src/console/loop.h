// The command loop's body: one line, looked at and answered. Where lines come from, and what runs
// them one after the other, is not known here.
#pragma once

#include "console/run.h"

namespace tivelo {

// Takes one line and does what it says: help, a block or a repeat, a command, or an assignment.
// Flow::next when the run goes on, script when run.script_name is to be run first, interrupted when
// a wait for a line was broken off, used_up or quit when the run has ended.
Flow run_pass(Run& run);

}  // namespace tivelo
