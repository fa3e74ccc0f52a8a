// Products of two runs of limbs. multiply() and square() choose the method by length; nobody
// above needs to know which one ran.
#pragma once

#include "base/limb.h"
#include "limbs/workspace.h"

namespace tivelo::limbs {

// Bytes of workspace that multiply() of na by nb limbs takes at most (square(): na by na).
// Monotone in both arguments, and the same wherever their sum is the same.
std::size_t multiply_workspace(std::size_t na, std::size_t nb);

// r = a x b. r.size() == a.size() + b.size(), both at least 1; leading zero limbs are allowed in
// the operands and appear in r. r overlaps neither operand; a and b may be the same run.
void multiply(Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws);

// r = a x a. r.size() == 2 a.size(). No overlap.
void square(Limbs r, ConstLimbs a, Workspace ws);

}  // namespace tivelo::limbs
