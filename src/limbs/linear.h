// What takes one pass over runs of limbs (most significant first): sums, differences and order, and
// products, quotients and remainders by one small number. Pure functions, no state. Limbs are below
// kBase unless a function says otherwise.
#pragma once

#include <cstdint>

#include "base/limb.h"

namespace tivelo::limbs {

// `a` without its leading zero limbs; empty for zero.
ConstLimbs strip(ConstLimbs a);

// Ranks two numbers by value: 1, 0 or -1. Neither may have leading zero limbs.
int compare(ConstLimbs a, ConstLimbs b);

// r = a + b, returns the carry out (0 or 1). r.size() == a.size() >= b.size(). r may be exactly a
// or (for equal sizes) exactly b; where r is a, limbs above the carry run are not rewritten.
Limb add(Limbs r, ConstLimbs a, ConstLimbs b);

// r = a - b for a >= b, returns the borrow out (0 when a >= b). r.size() == a.size() >= b.size().
// r may be exactly a or (for equal sizes) exactly b.
Limb subtract(Limbs r, ConstLimbs a, ConstLimbs b);

// r = a x k, returns the carry out (at most k). r.size() == a.size(), k <= kBase. r may be a.
Limb multiply_limb(Limbs r, ConstLimbs a, Limb k);

// q = a / k, returns a mod k. q.size() == a.size(), 1 <= k < 2^31. q may be a. Without a hardware
// division per limb.
std::uint32_t divide_limb(Limbs q, ConstLimbs a, std::uint32_t k);

// a mod k for 1 <= k < 2^32. About a third of a cycle per limb for long a, so that one pass for a
// product of several divisors serves them all.
std::uint32_t remainder_limb(ConstLimbs a, std::uint32_t k);

}  // namespace tivelo::limbs
