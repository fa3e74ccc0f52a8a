// Quotient and remainder of two runs of limbs, exact for every operand. The choice of the method by
// lengths is made here; long_division.h has the shortest, reciprocal.h what the longest rests on.
#pragma once

#include "base/limb.h"
#include "limbs/workspace.h"

namespace tivelo::limbs {

// Bytes of workspace that divide() of na by nb limbs takes at most. Monotone in na for fixed nb;
// for any divisor of at most nb limbs, divide_workspace(na + nb, nb) is enough.
std::size_t divide_workspace(std::size_t na, std::size_t nb);

// Bytes of workspace that divide() of na limbs by any divisor of at most na limbs takes at most.
std::size_t divide_workspace(std::size_t na);

// a = q x b + r with r < b. b has at least one limb and no leading zero limb; a.size() >= b.size()
// and a may have leading zero limbs. q.size() == a.size() - b.size() + 1, r.size() == b.size();
// both are filled completely, leading zeros included. q and r overlap neither each other nor an
// operand.
void divide(Limbs q, Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws);

}  // namespace tivelo::limbs
