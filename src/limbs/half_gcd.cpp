// Recursion on leading limbs (Moeller, On Schoenhage's algorithm and subquadratic integer gcd
// computation, 2008, in a form that does without exact quotients). A Reduction is the product of
// steps (x, y) -> (y, x - q y) and of swaps, so its signs alternate like a chessboard's, and the
// entries of its inverse are its own without signs: x = d x' + b y'. With x below B^n and both
// results at least B^h, all entries are therefore below B^(n-h). A reduction by k limbs is found on
// the leading 2 k + 2: entries are below B^k there, results at least B^(k+2), and the p limbs left
// out take less than B^(k+p) from the true results, which stay above B^(k+p+1). No quotient has to
// be the right one for that.
#include "limbs/half_gcd.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "base/interrupt.h"
#include "limbs/divide.h"
#include "limbs/multiply.h"
#include "limbs/thresholds.h"

namespace tivelo::limbs {
namespace {

// x' = a x - b y, y' = d y - c x, or both negated if `odd`.
struct Reduction {
  Resizable a, b, c, d;
  bool odd = false;

  void swap_rows() {
    std::swap(a, c);
    std::swap(b, d);
    odd = !odd;
  }
};

struct Numbers {
  Resizable x, y;
};

// Zero, with room for `room` limbs.
Resizable take_zero(std::size_t room, Workspace& ws) { return {ws.take<Limb>(room), 0}; }

// The identity, with room for entries of `limbs` limbs.
Reduction take_identity(std::size_t limbs, Workspace& ws) {
  Reduction m{take_zero(limbs, ws), take_zero(limbs, ws), take_zero(limbs, ws),
              take_zero(limbs, ws)};
  for (Resizable* one : {&m.a, &m.d}) {
    one->room.back() = 1;
    one->size = 1;
  }
  return m;
}

std::size_t identity_workspace(std::size_t limbs) { return 4 * Workspace::bytes<Limb>(limbs); }

void order(Numbers& v, Reduction& m) {
  if (compare(v.x.run(), v.y.run()) >= 0) return;
  std::swap(v.x, v.y);
  m.swap_rows();
}

// r += s x t, with the room to hold it.
void add_product(Resizable& r, ConstLimbs s, ConstLimbs t, Workspace ws) {
  if (s.empty() || t.empty()) return;
  const Limbs product = ws.take<Limb>(s.size() + t.size());
  multiply(product, s, t, ws);
  const ConstLimbs p = strip(product);
  const std::size_t size = std::max(r.size, p.size());
  std::fill_n(r.room.last(size).begin(), size - r.size, 0);
  r.size = size;
  const Limb carry = add(r.run(), r.run(), p);
  if (carry != 0) r.room[r.room.size() - ++r.size] = carry;
}

// r -= s x t, which leaves it positive.
void subtract_product(Resizable& r, ConstLimbs s, ConstLimbs t, Workspace ws) {
  if (s.empty() || t.empty()) return;
  const Limbs product = ws.take<Limb>(s.size() + t.size());
  multiply(product, s, t, ws);
  const ConstLimbs p = strip(product);
  assert(p.size() <= r.size);
  [[maybe_unused]] const Limb borrow = subtract(r.run(), r.run(), p);
  assert(borrow == 0);
  r.trim();
}

// Both columns of m by a step: entries stay below the room they were given.
void apply_to_reduction(const LehmerStep& step, Reduction& m) {
  const auto magnitude = [](std::int64_t x) { return static_cast<std::uint64_t>(x < 0 ? -x : x); };
  const std::uint64_t a = magnitude(step.a), b = magnitude(step.b), c = magnitude(step.c),
                      d = magnitude(step.d);
  for (auto [top, low] : {std::pair(&m.a, &m.c), std::pair(&m.b, &m.d)}) {
    const std::size_t size = std::min(std::max(top->size, low->size) + 2, top->room.size());
    for (Resizable* x : {top, low}) {
      std::fill_n(x->room.last(size).begin(), size - x->size, 0);
      x->size = size;
    }
    const Limbs x = top->run();
    const Limbs y = low->run();
    std::uint64_t carry_x = 0;
    std::uint64_t carry_y = 0;
    for (std::size_t i = size; i-- > 0;) {
      const std::uint64_t s = a * x[i] + b * y[i] + carry_x;
      const std::uint64_t t = c * x[i] + d * y[i] + carry_y;
      carry_x = s / kBase;
      carry_y = t / kBase;
      x[i] = static_cast<Limb>(s % kBase);
      y[i] = static_cast<Limb>(t % kBase);
    }
    assert(carry_x == 0 && carry_y == 0);
    top->trim();
    low->trim();
  }
  m.odd ^= step.b > 0;
}

// One whole quotient, unless the rest would be below B^h.
bool quotient_step(Numbers& v, Reduction& m, std::size_t h, Workspace ws) {
  order(v, m);
  if (v.y.size <= h) return false;
  const Limbs quotient = ws.take<Limb>(v.x.size - v.y.size + 1);
  const Limbs rest = ws.take<Limb>(v.y.size);
  divide(quotient, rest, v.x.run(), v.y.run(), ws);
  if (strip(rest).size() <= h) return false;
  v.x.set(strip(rest));
  std::swap(v.x, v.y);
  const ConstLimbs q = strip(quotient);
  add_product(m.a, q, m.c.run(), ws);
  add_product(m.b, q, m.d.run(), ws);
  m.swap_rows();
  return true;
}

// Step by step until y is next to B^h. A step leaves at least x / 2^33 > x / B^2 of y.
void reduce_by_steps(Numbers& v, Reduction& m, std::size_t h, Workspace ws) {
  for (;;) {
    order(v, m);
    if (v.y.size < h + 3) return;
    const LehmerStep step = lehmer_step(v.x.run(), v.y.run());
    if (!step.trivial()) {
      apply(step, v.x, v.y);
      apply_to_reduction(step, m);
    } else if (!quotient_step(v, m, h, ws)) {
      return;
    }
  }
}

// What `part` did to the leading limbs `top` of v, done to all of v; p limbs were left out.
void extend(Numbers& v, const Numbers& top, const Reduction& part, std::size_t p, Workspace ws) {
  Resizable x = take_zero(v.x.size + 1, ws);
  Resizable y = take_zero(v.x.size + 1, ws);
  const auto lift = [p](Resizable& to, const Resizable& from) {
    to.size = from.size + p;
    std::copy(from.run().begin(), from.run().end(), to.run().begin());
    std::fill_n(to.room.last(p).begin(), p, 0);
  };
  lift(x, top.x);
  lift(y, top.y);
  const ConstLimbs low_x = v.x.room.last(p);
  const ConstLimbs low_y = v.y.room.last(p);
  // Sums first, so that nothing becomes negative on the way.
  add_product(x, part.odd ? low_y : low_x, part.odd ? part.b.run() : part.a.run(), ws);
  subtract_product(x, part.odd ? low_x : low_y, part.odd ? part.a.run() : part.b.run(), ws);
  add_product(y, part.odd ? low_x : low_y, part.odd ? part.c.run() : part.d.run(), ws);
  subtract_product(y, part.odd ? low_y : low_x, part.odd ? part.d.run() : part.c.run(), ws);
  v.x.set(x.run());
  v.y.set(y.run());
}

// m = part x m.
void compose(Reduction& m, const Reduction& part, Workspace ws) {
  for (auto [top, low] : {std::pair(&m.a, &m.c), std::pair(&m.b, &m.d)}) {
    Resizable x = take_zero(top->room.size() + 1, ws);
    Resizable y = take_zero(top->room.size() + 1, ws);
    add_product(x, part.a.run(), top->run(), ws);
    add_product(x, part.b.run(), low->run(), ws);
    add_product(y, part.c.run(), top->run(), ws);
    add_product(y, part.d.run(), low->run(), ws);
    top->set(x.run());
    low->set(y.run());
  }
  m.odd ^= part.odd;
}

void reduce_to(Numbers& v, Reduction& m, std::size_t h, Workspace ws);

// Reduces by about k limbs with the help of the leading 2 k + 2, which is where the work is done,
// to numbers of at least B^(n-k-1). False if nothing was done, because y is that short already or
// the first quotient would make it so. Adds what was done to `all` where there is one.
bool reduce_leading(Numbers& v, Reduction* all, std::size_t k, Workspace ws) {
  const std::size_t n = v.x.size;
  if (v.y.size + k <= n) return false;
  const std::size_t length = std::min(n, 2 * k + 2);
  const std::size_t p = n - length;
  Numbers top{take_zero(length, ws), take_zero(length, ws)};
  top.x.set(v.x.run().first(length));
  top.y.set(v.y.run().first(v.y.size - p));
  Reduction part = take_identity(k + 2, ws);
  reduce_to(top, part, length - k, ws);
  if (part.b.size == 0) return false;
  std::fill_n(v.y.room.last(n).begin(), n - v.y.size, 0);
  extend(v, top, part, p, ws);
  if (all != nullptr) compose(*all, part, ws);
  return true;
}

// Reduces x >= y by k limbs to numbers of at least B^h, h = n - k, the smaller one close to that
// unless a quotient leaps over it.
void reduce_to(Numbers& v, Reduction& m, std::size_t h, Workspace ws) {
  poll();
  const std::size_t k = v.x.size - h;
  if (k >= kHalfGcdSteps) {
    const std::size_t middle = v.x.size - k / 2;
    reduce_leading(v, &m, k / 2, ws);
    // Two quotients bring x down to where y is.
    order(v, m);
    for (int i = 0; i < 2 && v.x.size > middle + 1 && quotient_step(v, m, h, ws); ++i) {
    }
    order(v, m);
    const std::size_t left = v.x.size - h;
    if (left > 4 && left <= k / 2 + k / 8) reduce_leading(v, &m, left - 2, ws);
  }
  reduce_by_steps(v, m, h, ws);
}

}  // namespace

// Each level keeps its leading limbs and its reduction; on top of them all at most one step of the
// longest numbers is at work.
std::size_t half_gcd_workspace(std::size_t n) {
  const std::size_t top = n / 2 + 4;
  const std::size_t dividing = 2 * Workspace::bytes<Limb>(top) + divide_workspace(top);
  const std::size_t extending = 2 * Workspace::bytes<Limb>(n + 1) + Workspace::bytes<Limb>(n + 8) +
                                multiply_workspace(top, n / 4 + 4);
  std::size_t size = std::max(dividing, extending);
  for (std::size_t m = top;; m = m * 5 / 8 + 4) {
    size += 2 * Workspace::bytes<Limb>(m) + identity_workspace(m / 2 + 4);
    if (m < 2 * kHalfGcdSteps) break;
  }
  return size;
}

bool half_gcd(Resizable& x, Resizable& y, Workspace ws) {
  Numbers v{x, y};
  if (!reduce_leading(v, nullptr, x.size / 4, ws)) return false;
  x = v.x;
  y = v.y;
  return true;
}

}  // namespace tivelo::limbs
