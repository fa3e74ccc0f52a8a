// The commands of a line: short forms of letters and punctuation, tried in the order of one table.
#pragma once

#include "console/run.h"

namespace tivelo {

// Tries the commands at *at. A command that takes the rest of the line returns Flow::next (or
// quit); fall_on means that the line goes on at *at as an expression.
Flow run_command(Run& run, const char** at);

// Closes what "#FW" and "#FR" opened.
void close_files(Run& run);

}  // namespace tivelo
