// Expressions. nread reads one operand, calc combines operands by precedence. An evaluation works
// in the register pairs Zc/Zm of its depth and allocates nothing; the depth bounds the nesting.
#pragma once

#include "fraction/numf.h"

namespace tivelo {

// Reads one operand at the start of the zero-terminated `text` into target, in lowest terms: a
// number, a variable, a cell, a bracket, a function or a constant, each after at most one minus.
// Returns the characters consumed, never past the terminating zero (0 when nothing starts an
// operand: the value is then 0), or a negative code when the evaluation stops; "err " has then been
// printed. `depth` is the register depth of the asking evaluation plus 2.
[[nodiscard]] int nread(const char* text, numf* target, int depth);

// Evaluates the expression at the start of `text` into target (no register of depth to depth + 2).
// Returns the characters consumed, the one that ended it (')', '|' or the zero) included; -5 with
// nothing done when the depth is refused; or a negative code when the evaluation stopped, with
// "err " printed and the terms finished so far in target.
int calc(const char* text, numf* target, int depth);

// Are there register pairs for an evaluation at this depth?
bool depth_fits(int depth);

// A nested evaluation, of a bracket at `text` or of a fixed text: like calc, but a refused depth
// has been reported and the closing zero of the whole text is not counted.
[[nodiscard]] int calc_nested(const char* text, numf* target, int depth);

}  // namespace tivelo
