// The commands that begin with '#' and a whole word, at the very start of a line. They print on
// standard output, also in scripts and blocks, and leave T and the current result alone.
#pragma once

#include <cstddef>
#include <string_view>

#include "console/run.h"

namespace tivelo {

// How many letters stand behind the '#' that the line, as it was typed, begins with: its cleaned
// form no longer shows where the word ended. 0 for any other line.
int own_word_length(const char* typed);

// Tries the line in hand, which begins with '#'. fall_on: it is none of these commands, and nothing
// was done.
[[gnu::cold]] Flow run_own_command(Run& run, const char** at);

// The i-th of the words, with its '#'; empty behind the last one.
std::string_view own_command_word(std::size_t i);

// The processor time that the program has taken, in seconds.
double processor_time();

}  // namespace tivelo
