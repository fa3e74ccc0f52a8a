// Which integers are primes, and the next one. Below 2^64 the answer is exact; above it a number is
// a probable prime when it passes the test of Baillie and Wagstaff (1980), which no composite
// number is known to pass.
#pragma once

#include "bigint/num.h"

namespace tivelo {

enum class Primality { composite, prime, probable };

// Of an integer: what is no prime, 0, 1 and negative numbers too, is called composite.
[[nodiscard]] Primality primality(const num* n);

// x, an integer, becomes the least (probable) prime above it. May be broken off before x changes.
// Returns 1, or -6 with x unchanged where that needs more limbs than the record has, which has been
// reported.
[[nodiscard]] int next_prime(num* x);

}  // namespace tivelo
