// Sum, product and quotient of fractions. Values stay exact while denominators are small and go to
// decimal mode (16 places, cut) beyond: a sum with a common denominator above 10^8, a product with
// a denominator of 10^8 or more, and whatever meets a value in decimal mode.
//
// A refused operation leaves r as it was; the operands other than r are scratch. Whether a status
// of nsum or nprod matters is known to few callers: a refusal has been reported, and the evaluation
// goes on with the value that was left.
#pragma once

#include "fraction/numf.h"

namespace tivelo {

// r = x + y; r may be x. Returns 0 after the exact path (reduced), 2 after the decimal path (not
// reduced), -6 when the sum does not fit, which has been reported.
int nsum(numf* r, numf* x, numf* y);

// r = x * y, not reduced; r may be x. A zero product is 0/1, and so is one with a zero denominator.
// Returns 1, also when the product does not fit, which has been reported, and r is unchanged.
int nprod(numf* r, numf* x, numf* y);

// r = x / y; r may be x. Returns 1 (also when the quotient does not fit, which has been reported,
// and r is unchanged), or -7 with r = 0/1 for a zero divisor, which the caller reports. The
// numerator's sign is the caller's to set. With an operand in decimal mode the quotient is the true
// one, cut once to 16 places.
[[nodiscard]] int ndiv(numf* r, numf* x, numf* y);

// Reads the number literal at `text` into f, in lowest terms; returns the
// characters consumed, as cton counts them.
int ncton(const char* text, numf* f);

}  // namespace tivelo
