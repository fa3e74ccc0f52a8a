// Factorials, permutations and combinations. Each is the product n (n-1) ... (n-k+1) of k factors,
// every one with the sign of n, in one product tree. The value is the one that a chain of products
// gives, and zero where a step of that chain would not fit the record, which has been reported:
// before the work, where the size of the result shows it.
#pragma once

#include "bigint/num.h"

namespace tivelo {

// n = n! for |n| of at most two limbs. 0, 1 and -1 stay, and so does a longer number.
void factorial(num* n);

// n = n (n-1) ... (n-k+1); 1 for k = 0 and 0 for k > n. A number of two limbs or more counts as
// 999999 in that comparison.
void permutations(num* n, int k);

// n = n (n-1) ... (n-k+1) / k!. Of an n of fewer than four limbs a k above one half counts as n -
// k, where n is 999999 as above from two limbs on.
void combinations(num* n, int k);

// Bytes of workspace that these take at most on numbers of n limbs.
std::size_t combinatorics_workspace(std::size_t n);

}  // namespace tivelo
