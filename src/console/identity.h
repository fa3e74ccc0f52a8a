// What two people need to compare a long number: its length, its ends, residues that they can find
// by other means, and the digest of its digits.
#pragma once

#include "fraction/numf.h"

namespace tivelo {

// Prints it, one thing a line; of a fraction for the numerator and the denominator, of a decimal
// for its digits without the point.
void print_identity(const numf& value);

}  // namespace tivelo
