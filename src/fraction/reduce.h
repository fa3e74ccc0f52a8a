// Bringing a numerator and a denominator to lower terms. Exact when the smaller one fits a machine
// integer; beyond that a bounded search for small common factors, so that a chain of operations on
// long fractions stays affordable. Larger common factors stay in the fraction.
#pragma once

#include "bigint/num.h"

namespace tivelo {

// Reduces a/b in place; signs stay. A decimal a over an integer b becomes a decimal over 1.
// Returns 1 for that, the gcd for one-limb members (0 for a zero one-limb b), 0 where nothing is
// to be done or the members are equal, else the product of the common factors removed by the
// search (saturated). With ROF[0] set, pairs with a member above two limbs are left alone.
inline int nreduct(num* a, num* b);

// The same, for whatever needs more than a look.
int reduce_pair(num* a, num* b);

inline int nreduct(num* a, num* b) {
  if (is_one(b) && a->dec == 0) return a->len == 1 ? 1 : 0;
  return reduce_pair(a, b);
}

// Divides a and *x (>= 1) by their greatest common divisor; returns it, or 1 when *x divides a.
int nreducti(num* a, int* x);

}  // namespace tivelo
