// Common divisors and small prime factors. Numbers of any length; what divides them by machine
// integers is here, what divides them by one another is in muldiv.h.
#pragma once

#include <span>

#include "bigint/num.h"

namespace tivelo {

// r = the greatest common divisor of |a| and |b|, positive; gcd(x, 0) = |x|. r may be a. Returns 1.
int ngcm(num* r, const num* a, const num* b);

// The primes up to `bound` (below 65536) that divide a, in increasing order at the start of
// `found`, which has room for all primes up to the bound. Returns how many there are. Far cheaper
// than a division by each.
std::size_t prime_divisors(std::span<std::uint32_t> found, const num* a, std::uint32_t bound);

// Divides a by p (2 or more) while that leaves no remainder, at most `most` times; returns how
// often it did.
int divide_out(num* a, int p, int most);

// Bytes of workspace that these take at most on numbers of n limbs.
std::size_t divisors_workspace(std::size_t n);

}  // namespace tivelo
