// The gcd of numbers of some hundred limbs: in binary, where a step of Lehmer's method takes 62
// bits of them at a time.
#pragma once

#include "base/limb.h"
#include "limbs/workspace.h"

namespace tivelo::limbs {

// Bytes of workspace that word_gcd() of operands of at most n limbs takes.
std::size_t word_gcd_workspace(std::size_t n);

// Writes gcd(a, b) at the end of r and returns its length in limbs; all of r before it becomes
// zero. Operands are not zero and have no leading zero limbs; r.size() >= the shorter one's size.
// Takes a time that grows with the square of the length. No overlap.
std::size_t word_gcd(Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws);

}  // namespace tivelo::limbs
