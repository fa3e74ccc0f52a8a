// The commands of a line: short forms of letters and punctuation, tried in the order of one table.
// What a command does to values is done by the rooms below.
#pragma once

#include <cstddef>
#include <string_view>

#include "console/run.h"

namespace tivelo {

// Tries the commands at *at. fall_on means that the line goes on at *at as an expression; any other
// answer, that a command has taken the rest of the line.
Flow run_command(Run& run, const char** at);

// Shows the variable, or the cell of it, that is named at the start of `name`.
void show(const Run& run, const char* name);

// What the i-th command begins with; empty behind the last one.
std::string_view command_mark(std::size_t i);

}  // namespace tivelo
