// A variable or one of its cells as the text that the user sees. Nothing is changed by being shown.
#pragma once

#include "base/stream.h"

namespace tivelo {

// Bytes of scratch that nprint needs for numbers of `limbs` limbs: one number's digits, its point,
// and a terminator.
constexpr std::size_t print_scratch(int limbs) { return static_cast<std::size_t>(limbs) * 8 + 16; }

// Prints the variable whose capital letter is name[0], or the cell name[1] of it when that is a
// digit. `digits` says how a fraction is shown: -1 as a mixed number, 1 to 4 IS - 1 with that many
// places rounded up to groups of 8 and cut, otherwise its integer part only; 0 prints nothing. A
// whole variable goes to `file`, or to the console when that is null; a cell always to the console.
// `out` is scratch. Returns 1 after a cell, else 0.
int nprint(const char* name, char* out, int digits, Out* file);

}  // namespace tivelo
