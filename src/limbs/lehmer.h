// One step of Lehmer's method: the quotients of Euclid's algorithm found on the leading 63 bits of
// two long numbers, collected in a matrix with small entries and applied to both in one pass. And
// the kind of number that all of gcd works on, which shrinks in the room it was given.
#pragma once

#include <algorithm>
#include <cstdint>

#include "base/limb.h"
#include "limbs/linear.h"

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

// x' = a x + b y, y' = c x + d y with determinant 1 or -1, which keeps the gcd; entries are below
// 2^31 in size. Either a, d >= 0 >= b, c or a, d <= 0 <= b, c.
struct LehmerStep {
  std::int64_t a = 1, b = 0, c = 0, d = 1;

  bool trivial() const { return b == 0; }
};

// A step that shortens x >= y by about 31 bits and leaves both results positive, the smaller at
// least x / 2^33; trivial where the first quotient is too large. x has three limbs at least.
LehmerStep lehmer_step(ConstLimbs x, ConstLimbs y);

// The same for leading bits x >= y of two long numbers, of at most 63 bits each. They are at most 1
// below the true ones in their unit if `slack` is 1, less than 3/2 off if it is 2.
LehmerStep lehmer_step(std::int64_t x, std::int64_t y, int slack = 1);

// Both numbers replaced by those of a step found for them; x.size >= y.size, room for x.size limbs
// in y.
void apply(const LehmerStep& step, Resizable& x, Resizable& y);

}  // namespace tivelo::limbs
