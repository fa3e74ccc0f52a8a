// Common divisors and small prime factors of numbers of any length. Divisions are in muldiv.h.
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

// times[i] = how often primes[i] divides a, which is not zero; different primes below 65536.
void exponents(std::span<std::uint32_t> times, const num* a, std::span<const std::uint32_t> primes);

// Is |a| the product of all primes[i]^times[i], which divides it? a is not zero.
[[nodiscard]] bool is_product_of(const num* a, std::span<const std::uint32_t> primes,
                                 std::span<const std::uint32_t> times);

// r = the product of all primes[i]^times[i], which fits a record, with all of r's fields fresh.
void product_of_powers(num* r, std::span<const std::uint32_t> primes,
                       std::span<const std::uint32_t> times);

// Bytes of workspace that these take at most on numbers of n limbs.
std::size_t divisors_workspace(std::size_t n);

}  // namespace tivelo
