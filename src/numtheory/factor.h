// Factorisation of integers into primes, as text: primes in increasing order joined by "*", each
// with "^" and its exponent when that is above 1; a "?" behind a last cofactor that has no factor
// below 65536 and is too large to be known as prime.
#pragma once

#include "bigint/num.h"

namespace tivelo {

// Bytes that fprime's text of a number of `limbs` limbs takes at most, terminator included: each of
// the 6542 primes below 65536 with "^", an exponent of ten digits and "*", and the cofactor.
constexpr std::size_t factor_text_bytes(int limbs) {
  return 6542 * std::size_t{17} + static_cast<std::size_t>(limbs) * 8 + 32;
}

// Writes the factorisation of |n| at `out`, 0 and 1 as themselves. Returns -7 with an empty text
// when n has more than IS - 5 limbs, which has been reported, else 0.
int fprime(const num* n, char* out);

// Writes the complete factorisation of n. Returns the length of the text (at most 64 characters).
int iprime(unsigned long long n, char* out);

}  // namespace tivelo
