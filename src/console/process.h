// A run of the calculator from its start to its end: precision, storage, script, banner, loop.
#pragma once

#include "console/run.h"

namespace tivelo {

// What the outside world supplies. All are owned by the caller and outlive the run.
struct Console {
  In* in;
  Out* out;
  Out* explanations;  // null: nobody reads explanations of refusals
  Out* errors;        // for what ends the process: storage, an output that cannot be written
};

// The program: takes the command line (without the program's name) and runs until "Q.", "Q:" or the
// end of the input. Returns the exit status.
int run_calculator(int count, const char* const* arguments, const Console& outside);

// Runs the script file `name` as a nested run on the same variables. Flow::next when its script is
// used up, could not be opened or was refused (each reported), quit when it ended the process.
Flow run_nested(const char* name);

}  // namespace tivelo
