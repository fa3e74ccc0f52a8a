// n (n-1) ... (n-k+1), the product behind factorials, permutations and combinations.
#pragma once

#include "bigint/num.h"

namespace tivelo {

// Replaces n by the product of k >= 2 factors n, n-1, ...; each carries the sign of n. When a step
// of that chain of products would not fit the record, n is cleared to zero, before the work where
// the size of the result shows it. Owns Ze.
void falling_factorial(num* n, int k);

}  // namespace tivelo
