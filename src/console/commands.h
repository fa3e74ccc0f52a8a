// The commands of a line: short forms of letters and punctuation, tried in the order of one table.
// What a command does to values is done by the rooms below.
#pragma once

#include "console/run.h"

namespace tivelo {

// Tries the commands at *at. fall_on means that the line goes on at *at as an expression; any other
// answer, that a command has taken the rest of the line.
Flow run_command(Run& run, const char** at);

}  // namespace tivelo
