// Long division by rows, the base case under every longer division: quadratic, but one pass of
// vector multiplications per quotient limb, without carries and without correction steps.
#pragma once

#include "base/limb.h"
#include "limbs/workspace.h"

namespace tivelo::limbs {

// The shorter of quotient and divisor may have this many limbs at most: a column collects one
// product per row, each below 0.51 x 10^16, and 1600 of them stay within 2^63.
inline constexpr std::size_t kLongDivisionLimit = 1600;

// Bytes of workspace that long_divide() of na by nb limbs takes.
std::size_t long_divide_workspace(std::size_t na, std::size_t nb);

// a = q x b + r. As divide(), but nb >= 2, and q has at least a.size() - b.size() limbs: with
// exactly that many, the leading nb limbs of a must rank below b.
void long_divide(Limbs q, Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws);

}  // namespace tivelo::limbs
