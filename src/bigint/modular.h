// Integers modulo one another: powers, quotients with a remainder that is never negative, and the
// tests for primes that rest on such powers. Numbers here are integers without a shift and without
// decimal mode; results have no leading zero limbs and fresh fields, and a zero is canonical.
#pragma once

#include <cstdint>
#include <span>

#include "bigint/num.h"

namespace tivelo {

// r = x^y mod z for y >= 0 and z > 0, with 0 <= r < z and 0^0 = 1. r may be any of them. May be
// broken off before r changes.
void powm(num* r, const num* x, const num* y, const num* z);

// x = q y + r with 0 <= r < |y| for y != 0. q and r may be operands, but not the same record. May
// be broken off before they change.
void quotient_and_remainder(num* q, num* r, const num* x, const num* y);

// The tests of limbs/probable_prime.h, for an odd n > 10^8.
bool strong_probable_prime(const num* n);
bool strong_lucas_probable_prime(const num* n);

// out[i] = |a| mod moduli[i], each from 1 to 65535.
void small_remainders(std::span<std::uint32_t> out, const num* a,
                      std::span<const std::uint32_t> moduli);

// Bytes of workspace that these take at most on numbers of n limbs.
std::size_t modular_workspace(std::size_t n);

}  // namespace tivelo
