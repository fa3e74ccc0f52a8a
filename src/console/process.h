// A run of the calculator from its start to its end: precision, storage, script, banner, loop. All
// that it knows of the outside comes in through Streams.
#pragma once

#include "base/stream.h"

namespace tivelo {

// What the outside world supplies. All are owned by the caller and outlive the run.
struct Streams {
  In* in;
  Out* answers;
  Out* messages;  // null: nobody reads messages
  Out* errors;    // for what ends the process: storage, an output that cannot be written
};

// The program: takes the command line (without the program's name) and runs until "Q.", "Q:" or the
// end of the input. Returns the exit status.
int run_calculator(int count, const char* const* arguments, const Streams& streams);

}  // namespace tivelo
