// Expressions. nread reads one operand, calc combines operands by precedence. An evaluation works
// in the levels of its depth (levels.h) and allocates nothing; the depth bounds the nesting.
#pragma once

#include "fraction/numf.h"

namespace tivelo {

// Evaluates a line's expression into the current result, or an answer to "I." into another target,
// with a fresh grant of work and a fresh mark. What stops it has been reported; when it is broken
// off, the current result is the one before.
void evaluate_line(const char* text, numf* target);

// The same for a single operand. Returns the characters read, or a negative code when it stops the
// evaluation, and then the value is 0.
[[nodiscard]] int evaluate_operand(const char* text, numf* target);

// Reads one operand at the start of the zero-terminated `text` into target, in lowest terms: a
// number, a variable, a cell, a bracket, a function or a constant, each after at most one minus.
// Returns the characters consumed, never past the terminating zero (0 when nothing starts an
// operand: the value is then 0), or a negative code when the evaluation stops, which has been
// reported. `depth` is operand_depth() or second_operand_depth() of the asking evaluation.
[[nodiscard]] int nread(const char* text, numf* target, int depth);

// Evaluates the expression at the start of `text` into target (none of its own levels). Returns the
// characters consumed, the one that ended it (')', '|' or the zero) included; -5 with nothing done
// when the depth is refused; or a negative code when the evaluation stopped, which has been
// reported, with the terms finished so far in target.
[[nodiscard]] int calc(const char* text, numf* target, int depth);

// A nested evaluation, of a bracket at `text` or of a fixed text: like calc, but a refused depth
// has been reported and the closing zero of the whole text is not counted.
[[nodiscard]] int calc_nested(const char* text, numf* target, int depth);

}  // namespace tivelo
