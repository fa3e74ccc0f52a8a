// Products by the exact transform. Each is checked by its residue before anybody sees it, and made
// again in another way where that is wrong: docs/trust.md.
#pragma once

#include <span>

#include "base/limb.h"
#include "kernels/target.h"
#include "limbs/casting.h"
#include "limbs/workspace.h"

namespace tivelo::limbs {

// Bytes of workspace that a product of na by nb limbs by one transform takes at most.
std::size_t transform_workspace(std::size_t na, std::size_t nb);

// r = a x b by one transform of at most 2^kMaxTransform coefficients. r.size() == a.size() +
// b.size(), no overlap; a and b may be the same run.
void multiply_long(Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws);

// r = a x b after a transform with these has come out wrong: by the second target, in halves of the
// longer factor, so that the transforms have other lengths than before, and so does all that lies
// in memory. Takes transform_workspace() at most; ends the computation if it is wrong again.
void multiply_again(Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws);

// A factor with its transform, which serves all products with it.
class Kept {
 public:
  // Bytes that it keeps, and that a product with a factor of na limbs takes.
  static std::size_t bytes(kernels::Shape s);
  static std::size_t workspace(kernels::Shape s, std::size_t na, std::size_t nb);

  Kept() = default;
  // b is kept by reference and has at most as many coefficients as s; memory is taken from ws.
  Kept(ConstLimbs b, kernels::Shape s, Workspace& ws);

  std::size_t size() const { return b_.size(); }

  // r = a x b, which fits the shape. r.size() == a.size() + b.size(), no overlap.
  void multiply(Limbs r, ConstLimbs a, Workspace ws);

  // The same where r holds a number near the product already: less than B^(s - 1) away, B the base,
  // s the limbs of the shape, which is cyclic. The product may then have 2 s limbs, and a has s at
  // most. That takes a transform half as long.
  void multiply_near(Limbs r, ConstLimbs a, Workspace ws);

 private:
  bool fits(ConstLimbs a) const;
  void settle(Limbs r, ConstLimbs a, Workspace ws);

  ConstLimbs b_;
  kernels::Shape shape_ = {};
  std::span<double> prepared_;
  Residue residue_;
};

}  // namespace tivelo::limbs
