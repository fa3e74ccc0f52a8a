// A product that is longer than its transform is found modulo B^s - 1, B the base, s the limbs of
// the transform: what follows the first s limbs is added to them from the front on, as the
// transform does with its coefficients. A known number near the product is turned round in the same
// way. The two then differ by the difference of the numbers, turned round: as it has less than s
// limbs, it begins where the s'th limb from the end has come to lie, goes on to the end, and then
// from the front.
#include "limbs/checked.h"

#include <algorithm>
#include <cassert>

#include "base/interrupt.h"
#include "base/report.h"
#include "limbs/linear.h"

namespace tivelo::limbs {
namespace {

using kernels::Target;

bool same_run(ConstLimbs a, ConstLimbs b) { return a.data() == b.data() && a.size() == b.size(); }

Residue residue_of_product(ConstLimbs a, ConstLimbs b, const Target& t) {
  const Residue x = residue_of(a, t);
  return product_of(x, same_run(a, b) ? x : residue_of(b, t));
}

constexpr Limb kOneLimb[] = {1};
constexpr ConstLimbs kOne(kOneLimb);

// x + y and x - y modulo B^x.size() - 1, y aligned to the front of x.
void add_around(Limbs x, ConstLimbs y) {
  const Limbs head = x.first(y.size());
  for (Limb carry = add(head, head, y); carry != 0;) carry = add(x, x, kOne);
}
void subtract_around(Limbs x, ConstLimbs y) {
  const Limbs head = x.first(y.size());
  for (Limb borrow = subtract(head, head, y); borrow != 0;) borrow = subtract(x, x, kOne);
}

// What a transform has wrapped around, s + 2 limbs and what is above them, modulo B^s - 1; in
// place.
Limbs unwrapped(Limbs y, std::uint64_t above) {
  const Limbs x = y.first(y.size() - 2);
  add_around(x, y.last(2));
  const Limb limbs[] = {static_cast<Limb>(above / kBase), static_cast<Limb>(above % kBase)};
  for (Limb carry = add(x, x, limbs); carry != 0;) carry = add(x, x, kOne);
  return x;
}

// r = a x b by one transform, unchecked. Where the product wraps around, its last limbs are found
// apart, by a transform of as many limbs of the factors, and taken off where they have been added.
void transform(Limbs r, ConstLimbs a, ConstLimbs b, const Target& t, Workspace ws) {
  const kernels::Shape s = kernels::product_shape(a.size(), b.size());
  const std::size_t length = kernels::transform_length(s);
  const bool wraps = kernels::product_coefficients(a.size(), b.size()) > length;
  const Limbs product = wraps ? ws.take<Limb>(2 * length + 2) : r;
  std::uint64_t above = 0;
  Workspace working = ws;
  if (same_run(a, b)) {
    double* work = working.take<double>(3 * length).data();
    above = t.square_transform(product.data(), a.data(), a.size(), s, work);
  } else {
    double* work = working.take<double>(4 * length).data();
    above = t.multiply_transform(product.data(), a.data(), a.size(), b.data(), b.size(), s, work);
  }
  if (!wraps) return;
  const std::size_t beyond = r.size() - 2 * length;
  const Limbs part = ws.take<Limb>(2 * beyond);
  transform(part, a.last(beyond), b.last(beyond), t, ws);
  const Limbs head = unwrapped(product, above);
  subtract_around(head, part.last(beyond));
  std::copy(head.begin(), head.end(), r.begin());
  std::copy_n(part.last(beyond).begin(), beyond, r.last(beyond).begin());
}

// Nobody is told where the engine runs alone. No place in the line is to blame.
void tell(Event event) {
  if (answers != nullptr) report(event, {.place = ""});
}

}  // namespace

// Four arrays of at most 5/4 of (na + nb + 2) / 2 doubles, 20 bytes for each limb; or shorter ones
// than (na + nb) / 2 doubles and as many limbs again, if the product wraps around.
std::size_t transform_workspace(std::size_t na, std::size_t nb) { return 20 * (na + nb) + 8192; }

void multiply_long(Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws) {
  const Target& t = kernels::target();
  const Residue expected = residue_of_product(a, b, t);
  transform(r, a, b, t, ws);
  if (!casts_out(r, expected, t)) multiply_again(r, a, b, ws);
}

// Takes 24 bytes for each limb of the shorter factor and half of the longer.
[[gnu::cold, gnu::noinline]] void multiply_again(Limbs r, ConstLimbs a, ConstLimbs b,
                                                 Workspace ws) {
  if (a.size() < b.size()) std::swap(a, b);
  const Target& t = kernels::second_target();
  const std::size_t upper = a.size() / 2;
  const ConstLimbs lower = a.subspan(upper);
  transform(r.subspan(upper), lower, b, t, ws);
  if (upper > 0) {
    const Limbs part = ws.take<Limb>(upper + b.size());
    transform(part, a.first(upper), b, t, ws);
    std::fill_n(r.begin(), upper, 0);
    add(r.first(part.size()), r.first(part.size()), part);
  }
  if (!casts_out(r, residue_of_product(a, b, t), t)) {
    tell(Event::product_wrong);
    refuse();
  }
  tell(Event::product_redone);
}

std::size_t Kept::bytes(kernels::Shape s) {
  return Workspace::bytes<double>(3 * kernels::transform_length(s));
}

std::size_t Kept::workspace(kernels::Shape s, std::size_t na, std::size_t nb) {
  const std::size_t wrapping = 2 * Workspace::bytes<Limb>(2 * kernels::transform_length(s) + 2);
  return std::max(bytes(s) + wrapping, transform_workspace(na, nb));
}

Kept::Kept(ConstLimbs b, kernels::Shape s, Workspace& ws) : b_(b), shape_(s) {
  const Target& t = kernels::target();
  prepared_ = ws.take<double>(3 * kernels::transform_length(s));
  assert((b.size() + 1) / 2 <= kernels::transform_length(s));
  residue_ = residue_of(b, t);
  t.prepare(prepared_.data(), b.data(), b.size(), s);
}

bool Kept::fits(ConstLimbs a) const {
  return kernels::product_coefficients(a.size(), b_.size()) <= kernels::transform_length(shape_);
}

// Makes r = a x b again if that is not what it is. What is kept of b may be why.
void Kept::settle(Limbs r, ConstLimbs a, Workspace ws) {
  const Target& t = kernels::target();
  if (casts_out(r, product_of(residue_of(a, t), residue_), t)) return;
  multiply_again(r, a, b_, ws);
  t.prepare(prepared_.data(), b_.data(), b_.size(), shape_);
  residue_ = residue_of(b_, t);
}

void Kept::multiply(Limbs r, ConstLimbs a, Workspace ws) {
  assert(fits(a));
  Workspace working = ws;
  double* work = working.take<double>(3 * kernels::transform_length(shape_)).data();
  kernels::target().multiply_prepared(r.data(), a.data(), a.size(), prepared_.data(), b_.size(),
                                      shape_, work);
  settle(r, a, ws);
}

void Kept::multiply_near(Limbs r, ConstLimbs a, Workspace ws) {
  if (fits(a)) return multiply(r, a, ws);
  const std::size_t length = kernels::transform_length(shape_);
  const std::size_t size = 2 * length;
  assert(shape_.u != 7 && r.size() == a.size() + b_.size() && (a.size() + 1) / 2 <= length);
  const std::size_t beyond = r.size() - size;
  Workspace working = ws;
  const Limbs wrapped = working.take<Limb>(size + 2);
  const Limbs apart = working.take<Limb>(size);
  const std::uint64_t over = kernels::target().multiply_prepared(
      wrapped.data(), a.data(), a.size(), prepared_.data(), b_.size(), shape_,
      working.take<double>(3 * length).data());
  std::copy_n(r.begin(), size, apart.begin());
  add_around(apart, r.last(beyond));
  subtract_around(apart, unwrapped(wrapped, over));
  // The limb above the difference is 0, or kBase - 1 where the known number is below the product;
  // what `apart` lacks of B^s - 1 is then how far.
  const bool below = apart[beyond % size] >= kBase / 2;
  if (below) {
    for (Limb& limb : apart) limb = kBase - 1 - limb;
  }
  const Limbs head = r.first(size);
  const Limbs tail = r.last(beyond);
  const auto apply = below ? add : subtract;
  const Limb carry = apply(tail, tail, apart.first(beyond));
  apply(head, head, apart.last(size - beyond));
  if (carry != 0) apply(head, head, kOne);
  settle(r, a, ws);
}

}  // namespace tivelo::limbs
