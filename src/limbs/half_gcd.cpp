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
#include <bit>
#include <cassert>
#include <utility>

#include "base/interrupt.h"
#include "limbs/divide.h"
#include "limbs/lehmer.h"
#include "limbs/matrix.h"
#include "limbs/multiply.h"
#include "limbs/thresholds.h"

namespace tivelo::limbs {
namespace {

// The limbs by which half_gcd() reduces, as a share of all: the fewer, the shorter the matrix and
// the numbers on which it is found, and the more often all of the numbers are multiplied.
constexpr std::size_t kShare = 6;

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

// Numbers in pairs of limbs, for steps. Those of a reduction grow, by two digits at a time at most.
Words to_pairs(const Resizable& a, Workspace& ws) {
  Words x{ws.take<Word>(a.room.size() / 2 + 4).data(), 0};
  const ConstLimbs run = a.run();
  for (std::size_t i = run.size(); i > 0;) {
    const Limb low = run[--i];
    x.w[x.size++] = (i > 0 ? run[--i] : 0) * Word{kBase} + low;
  }
  return x;
}

std::size_t pairs_workspace(std::size_t limbs) { return Workspace::bytes<Word>(limbs / 2 + 4); }

std::size_t limbs_of(const Words& x) {
  return x.size == 0 ? 0 : 2 * x.size - (x.w[x.size - 1] < kBase ? 1 : 0);
}

void from_pairs(Resizable& a, const Words& x) {
  a.size = limbs_of(x);
  const Limbs run = a.run();
  for (std::size_t i = a.size, j = 0; i > 0; ++j) {
    run[--i] = static_cast<Limb>(x.w[j] % kBase);
    if (i > 0) run[--i] = static_cast<Limb>(x.w[j] / kBase);
  }
}

// The step for x >= y by the leading four pairs of x and what stands there in y, in binary. Four
// pairs have more than 159 bits.
LehmerStep step_of(const Words& x, const Words& y, bool once) {
  Word room[2][4] = {};
  for (std::size_t i = 0; i < 4; ++i) {
    const std::size_t at = x.size - 1 - i;  // beyond all where there are fewer
    for (const auto& [number, r] : {std::pair(&x, room[0]), std::pair(&y, room[1])}) {
      Word carry = at < number->size ? number->w[at] : 0;
      for (std::size_t j = 0; j <= i; ++j) {
        const Wide t = Wide{r[j]} * kPair + carry;
        r[j] = static_cast<Word>(t);
        carry = static_cast<Word>(t >> kWordBits);
      }
    }
  }
  const std::size_t n = room[0][3] != 0 ? 4 : 3;
  const int shift = std::countl_zero(room[0][n - 1]);
  return lehmer_step(leading({room[0], n}, n, shift), leading({room[1], n}, n, shift), once);
}

// One column of a reduction by a step.
void apply_to_column(const LehmerStep& m, Words& x, Words& y) {
  const std::size_t n = std::max(x.size, y.size);
  x.widen(n);
  y.widen(n);
  Word* const u = x.w;
  Word* const v = y.w;
  Word carry_x = 0, carry_y = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const Word s = u[i];
    const Word t = v[i];
    const Wide sum_x = Wide{m.a} * s + Wide{m.b} * t;
    const Wide sum_y = Wide{m.c} * s + Wide{m.d} * t;
    u[i] = Decimal::settle(sum_x, carry_x);
    v[i] = Decimal::settle(sum_y, carry_y);
  }
  for (; carry_x != 0; carry_x /= kPair) x.w[x.size++] = carry_x % kPair;
  for (; carry_y != 0; carry_y /= kPair) y.w[y.size++] = carry_y % kPair;
  x.trim();
  y.trim();
}

// Step by step until y is next to B^h: a step leaves at least x / 2^66 > x / B^3 of it, the first
// half of one x / 2^33 > x / B^2. False where a quotient was too large for a step.
bool take_steps(Numbers& v, Reduction& m, std::size_t h, Workspace ws) {
  Words x = to_pairs(v.x, ws), y = to_pairs(v.y, ws);
  Words a = to_pairs(m.a, ws), b = to_pairs(m.b, ws);
  Words c = to_pairs(m.c, ws), d = to_pairs(m.d, ws);
  bool right = true;
  while (limbs_of(y) >= h + 3) {
    const LehmerStep step = step_of(x, y, limbs_of(y) == h + 3);
    right = !step.trivial();
    if (!right) break;
    apply<Decimal>(step, x, y);
    apply_to_column(step, a, c);
    apply_to_column(step, b, d);
    m.odd ^= step.odd;
    if (less(x, y)) {
      std::swap(x, y);
      std::swap(a, c);
      std::swap(b, d);
      m.odd = !m.odd;
    }
  }
  from_pairs(v.x, x);
  from_pairs(v.y, y);
  from_pairs(m.a, a);
  from_pairs(m.b, b);
  from_pairs(m.c, c);
  from_pairs(m.d, d);
  return right;
}

// Steps until y is next to B^h, and whole quotients where one is too large.
void reduce_by_steps(Numbers& v, Reduction& m, std::size_t h, Workspace ws) {
  order(v, m);
  while (v.y.size >= h + 3) {
    if (!take_steps(v, m, h, ws) && !quotient_step(v, m, h, ws)) return;
    order(v, m);
  }
}

// The last `size` limbs of x, zero before its own.
Limbs widened(const Resizable& x, std::size_t size) {
  const Limbs run = x.room.last(size);
  std::fill_n(run.begin(), size - std::min(size, x.size), 0);
  return run;
}

// The entries of m in one length, with a zero limb before the longest.
Matrix entries_of(const Reduction& m) {
  const std::size_t size = 1 + std::max({m.a.size, m.b.size, m.c.size, m.d.size});
  return {widened(m.a, size), widened(m.b, size), widened(m.c, size), widened(m.d, size)};
}

// to = from B^p + lower, or - lower if `minus`, which is above zero; lower is the complement of
// what is below zero if its first limb tells so, and shorter than the result.
void join(Resizable& to, const Resizable& from, ConstLimbs lower, std::size_t p, bool minus) {
  to.size = from.size + p;
  const Limbs r = to.run();
  assert(r.size() > lower.size());
  std::ranges::copy(from.run(), r.begin());
  std::fill_n(r.last(p).begin(), p, 0);
  const Limb unit = 1;
  const ConstLimbs one(&unit, 1);
  const Limbs head = r.first(r.size() - lower.size());
  const bool below = lower[0] >= kBase / 2;
  const Limb first = (minus ? subtract : add)(r, r, lower);
  const Limb second = below ? (minus ? add : subtract)(head, head, one) : 0;
  const Limb over = minus ? second - first : first - second;
  if (over != 0) to.room[to.room.size() - ++to.size] = over;
  to.trim();
}

// What `part` did to the leading limbs `top` of v, done to all of v; p limbs were left out. Their
// share is below B^(p+k) in size; p + k + 1 limbs are one more than it has.
void extend(Numbers& v, const Numbers& top, const Reduction& part, std::size_t p, Workspace ws) {
  if (p == 0) {
    v.x.set(top.x.run());
    v.y.set(top.y.run());
    return;
  }
  const Matrix m = entries_of(part);
  const std::size_t size = m.a.size() + p;
  const MatrixVector low{widened(v.x, v.x.size).last(p), widened(v.y, v.x.size).last(p),
                         ws.take<Limb>(size), ws.take<Limb>(size)};
  multiply_matrix(m, {&low, 1}, true, ws);
  join(v.x, top.x, low.u, p, part.odd);
  join(v.y, top.y, low.v, p, part.odd);
}

// m = part x m.
void compose(Reduction& m, const Reduction& part, Workspace ws) {
  const Matrix by = entries_of(part);
  const Matrix old = entries_of(m);
  const std::size_t size = by.a.size() + old.a.size();
  const MatrixVector columns[] = {{old.a, old.c, ws.take<Limb>(size), ws.take<Limb>(size)},
                                  {old.b, old.d, ws.take<Limb>(size), ws.take<Limb>(size)}};
  multiply_matrix(by, columns, false, ws);
  m.a.set(strip(columns[0].u));
  m.b.set(strip(columns[1].u));
  m.c.set(strip(columns[0].v));
  m.d.set(strip(columns[1].v));
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
  const std::size_t k = n / kShare;
  const std::size_t top = 2 * k + 2;
  const std::size_t dividing = 2 * Workspace::bytes<Limb>(top) + divide_workspace(top);
  const std::size_t extending =
      2 * Workspace::bytes<Limb>(n) + multiply_matrix_workspace(k + 1, n - 2 * k, 1);
  const std::size_t composing =
      4 * Workspace::bytes<Limb>(k + 8) + multiply_matrix_workspace(k / 2 + 4, k / 2 + 4, 2);
  const std::size_t stepping = 2 * pairs_workspace(top) + 4 * pairs_workspace(k + 2);
  std::size_t size = std::max({dividing, extending, composing, stepping});
  for (std::size_t m = top;; m = m * 5 / 8 + 4) {
    size += 2 * Workspace::bytes<Limb>(m) + identity_workspace(m / 2 + 4);
    if (m < 2 * kHalfGcdSteps) break;
  }
  return size;
}

bool half_gcd(Resizable& x, Resizable& y, Workspace ws) {
  Numbers v{x, y};
  if (!reduce_leading(v, nullptr, x.size / kShare, ws)) return false;
  x = v.x;
  y = v.y;
  return true;
}

}  // namespace tivelo::limbs
