// Reciprocals of long numbers by Newton's iteration, for divisions long enough to be done by
// multiplying.
#pragma once

#include "base/limb.h"
#include "limbs/workspace.h"

namespace tivelo::limbs {

// Bytes of workspace that reciprocal() of p limbs takes at most.
std::size_t reciprocal_workspace(std::size_t p);

// r = B^(2p) / v for v of p >= 2 limbs, v[0] != 0, B the base: at most 4 off in either direction,
// and at most B^(p+1) - 1. r.size() == p + 1. No overlap.
void reciprocal(Limbs r, ConstLimbs v, Workspace ws);

}  // namespace tivelo::limbs
