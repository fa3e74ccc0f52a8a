// A run of the calculator from its start to its end: precision, storage, script, banner, loop. All
// that it knows of the outside comes in through Streams.
#pragma once

#include "base/stream.h"

namespace tivelo {

// What the outside world supplies. All are owned by the caller and outlive the run.
struct Streams {
  In* in;
  Out* answers;
  Out* messages;  // a terminal at which somebody reads messages, or null
  Out* errors;    // for what is told in any case: all messages of batch use, what ends the process
};

// The program: takes the command line (without the program's name) and runs until "Q.", "Q:" or the
// end of the lines. Returns the exit status: in batch use what the first refusal leads to.
int run_calculator(int count, const char* const* arguments, const Streams& streams);

}  // namespace tivelo
