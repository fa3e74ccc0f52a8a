// One step takes the reciprocal x of the leading h limbs of v, h a little over p / 2, and adds
//   x e / B^(2h),  e = B^(p+h) - x v,
// to x B^(p-h) (Brent and Zimmermann, Modern Computer Arithmetic, section 3.4.1). An error of at
// most 4 in x and the limbs of v left out make e at most B^(p+1) (1 + 4 / B), so that the
// neglected square is below B^(p+3-2h) <= 1 in the result. Cutting e to what can matter, taking
// its complement limb by limb and cutting the product add at most 1 each: 4 again.
#include "limbs/reciprocal.h"

#include <algorithm>
#include <cassert>

#include "limbs/checked.h"
#include "limbs/linear.h"
#include "limbs/long_division.h"
#include "limbs/thresholds.h"

namespace tivelo::limbs {
namespace {

constexpr std::size_t half_length(std::size_t p) { return p / 2 + 2; }

void divide_power(Limbs r, ConstLimbs v, Workspace ws) {
  const std::size_t p = v.size();
  const Limbs power = ws.take<Limb>(2 * p + 1);
  const Limbs quotient = ws.take<Limb>(p + 2);
  const Limbs rest = ws.take<Limb>(p);
  std::fill(power.begin(), power.end(), 0);
  power[0] = 1;
  long_divide(quotient, rest, power, v, ws);
  if (quotient[0] != 0) {
    std::fill(r.begin(), r.end(), kBase - 1);
  } else {
    std::copy(quotient.begin() + 1, quotient.end(), r.begin());
  }
}

// Of the two products of a step: x v differs from B^(p+h) by less than B^(p+2), p + 3 limbs tell
// it, and p + 4 are those of x times the error.
kernels::Shape step_shape(std::size_t p) {
  return kernels::cyclic_shape_for(
      kernels::product_coefficients(half_length(p) + 1, p - half_length(p) + 3) + 1);
}

}  // namespace

std::size_t reciprocal_workspace(std::size_t p) {
  const std::size_t direct = std::min(p, kReciprocalDirect);
  const std::size_t h = half_length(p);
  const std::size_t step =
      Kept::bytes(step_shape(p)) + Kept::workspace(step_shape(p), h + 1, p + 3);
  return Workspace::bytes<Limb>(2 * direct + 1) + Workspace::bytes<Limb>(direct + 2) +
         Workspace::bytes<Limb>(direct) + long_divide_workspace(2 * direct + 1, direct) +
         Workspace::bytes<Limb>(p + h + 1) + Workspace::bytes<Limb>(p + 4) + step;
}

void reciprocal(Limbs r, ConstLimbs v, Workspace ws) {
  const std::size_t p = v.size();
  assert(p >= 2 && v[0] != 0 && r.size() == p + 1);
  if (p <= kReciprocalDirect) return divide_power(r, v, ws);
  const std::size_t h = half_length(p);
  const Limbs x = r.first(h + 1);
  reciprocal(x, v.first(h), ws);
  Kept kept(x, step_shape(p), ws);
  const Limbs product = ws.take<Limb>(p + h + 1);
  std::fill(product.begin(), product.end(), 0);
  product[0] = 1;
  kept.multiply_near(product, v, ws);
  // The first limb tells on which side of B^(p+h) the product is; the next h - 2 are 0, or
  // B - 1 before the complement.
  const bool above = product[0] != 0;
  const Limbs error = product.subspan(h - 1, p - h + 3);
  if (!above) {
    for (Limb& limb : error) limb = kBase - 1 - limb;
  }
  const Limbs change = ws.take<Limb>(p + 4);
  kept.multiply(change, error, ws);
  const ConstLimbs leading_change = change.first(p - h + 3);
  std::fill(r.begin() + static_cast<std::ptrdiff_t>(h + 1), r.end(), 0);
  const Limb over = above ? subtract(r, r, leading_change) : add(r, r, leading_change);
  if (over != 0) std::fill(r.begin(), r.end(), kBase - 1);
}

}  // namespace tivelo::limbs
