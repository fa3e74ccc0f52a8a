// Lines of a few short numbers, which is what loops are made of, in machine integers.
#pragma once

#include "fraction/numf.h"

namespace tivelo {

// Evaluates a whole expression of variables and literals of up to eight digits under + - * / into
// target, as calc() would, to the last field. False, with nothing done, where there is anything
// else in it, or where a value on the way is 0, a decimal or not short: an integer of two limbs or
// a fraction of one over one.
[[nodiscard]] bool evaluate_short(const char* text, numf* target);

}  // namespace tivelo
