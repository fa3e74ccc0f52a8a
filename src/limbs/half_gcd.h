// The half gcd: the first half of Euclid's algorithm on two long numbers, done by multiplications,
// which is faster than steps once these are long enough for the transform.
#pragma once

#include <algorithm>

#include "base/limb.h"
#include "limbs/linear.h"
#include "limbs/workspace.h"

namespace tivelo::limbs {

// A number that changes its length: the last `size` limbs of its room.
struct Resizable {
  Limbs room;
  std::size_t size = 0;

  Limbs run() const { return room.last(size); }
  void set(ConstLimbs a) {
    size = a.size();
    std::copy(a.begin(), a.end(), run().begin());
  }
  void trim() { size = strip(run()).size(); }
};

// Bytes of workspace that half_gcd() of n limbs takes at most.
std::size_t half_gcd_workspace(std::size_t n);

// Replaces x >= y by two shorter numbers with the same gcd, both of about 5/6 of their length if
// the quotients on the way are short. False, with both unchanged, where y is shorter than that or
// the first quotient would make it so. y has room for x.size limbs.
bool half_gcd(Resizable& x, Resizable& y, Workspace ws);

}  // namespace tivelo::limbs
