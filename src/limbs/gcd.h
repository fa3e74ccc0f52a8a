// The greatest common divisor of two runs of limbs, whatever their lengths: the choice between half
// gcds (half_gcd.h), words (word_gcd.h) and plain divisions is made here.
#pragma once

#include "base/limb.h"
#include "limbs/workspace.h"

namespace tivelo::limbs {

// Bytes of workspace that gcd() of operands of at most n limbs takes at most.
std::size_t gcd_workspace(std::size_t n);

// Writes gcd(a, b) at the end of r (r.size() >= the shorter operand's size, or the longer's where
// one operand is zero) and returns its length in limbs without leading zeros; gcd(x, 0) = x,
// gcd(0, 0) has length 0. Limbs of r before the result are unspecified. Operands have no leading
// zero limbs; r overlaps neither.
std::size_t gcd(Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws);

}  // namespace tivelo::limbs
