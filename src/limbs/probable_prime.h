// The two halves of the test of Baillie and Wagstaff (Lucas Pseudoprimes, 1980), for long numbers:
// every prime passes both, and no composite number that passes both is known.
#pragma once

#include "base/limb.h"
#include "limbs/workspace.h"

namespace tivelo::limbs {

// Bytes of workspace that each of the tests takes on a number of at most n limbs.
std::size_t probable_prime_workspace(std::size_t n);

// Does n, odd and of at least two limbs without leading zeros, pass the strong test to base 2?
bool passes_strong_test(ConstLimbs n, Workspace ws);

// Does such an n pass the strong Lucas test with Selfridge's parameters?
bool passes_strong_lucas_test(ConstLimbs n, Workspace ws);

}  // namespace tivelo::limbs
