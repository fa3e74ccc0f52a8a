// The levels that evaluations work in. One at depth d has three of them: its factor, its term and
// its auxiliary. How deep expressions may nest follows from the depths below, all of which are
// here.
#pragma once

#include "fraction/numf.h"

namespace tivelo {

inline numf factor_level(int depth) { return {Zc[depth], Zm[depth]}; }
inline numf term_level(int depth) { return {Zc[depth + 1], Zm[depth + 1]}; }
inline numf auxiliary_level(int depth) { return {Zc[depth + 2], Zm[depth + 2]}; }

// Are there levels for an evaluation at this depth?
inline bool depth_fits(int depth) { return depth + 2 < kLevels; }

// The depth of a typed line, whose target is the current result, and of an answer to "I.", whose
// levels are the current result's.
inline constexpr int kLineDepth = 1;
inline constexpr int kAnswerDepth = 0;

// The depth of what is read within an evaluation: of an operand, and so of a bracket (the auxiliary
// is free then); of a second operand, which goes into the auxiliary. And the depth of a function's
// argument, given that of the operand that the function is.
inline int operand_depth(int depth) { return depth + 2; }
inline int second_operand_depth(int depth) { return depth + 3; }
inline int argument_depth(int operand_depth) { return operand_depth + 1; }

}  // namespace tivelo
