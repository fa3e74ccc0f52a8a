// Division, by length: rows (long_division.cpp), recursion that turns them into multiplications
// (Burnikel and Ziegler, Fast Recursive Division, 1998), and for the longest a reciprocal. Every
// level estimates with leading limbs and corrects: cut to one limb more than the quotient has, a
// divisor of any leading limb makes the estimate at most 2 too large, so nothing is scaled.
#include "limbs/divide.h"

#include <algorithm>
#include <cassert>

#include "base/interrupt.h"
#include "limbs/linear.h"
#include "limbs/long_division.h"
#include "limbs/multiply.h"
#include "limbs/reciprocal.h"
#include "limbs/thresholds.h"

namespace tivelo::limbs {
namespace {

// The longest quotient that rows produce in one go.
constexpr std::size_t kRowChunk = 1024;
static_assert(kDivideRecursion < kLongDivisionLimit && kDivideReciprocal > kDivideRecursion);

// Quotient limbs found with one multiplication by the reciprocal: enough pieces that computing
// the reciprocal does not cost more than using it; at most n - 2, so that the divisor has
// the two guard limbs.
std::size_t piece_length(std::size_t m, std::size_t n) {
  const std::size_t pieces = (m + n - 1) / n + 1;
  return std::min((m + pieces - 1) / pieces, n - 2);
}

void decrement(Limbs q) {
  std::size_t i = q.size();
  while (i > 0 && q[i - 1] == 0) q[--i] = kBase - 1;
  if (i > 0) --q[i - 1];
}

void increment(Limbs q) {
  std::size_t i = q.size();
  while (i > 0 && q[i - 1] == kBase - 1) q[--i] = 0;
  if (i > 0) ++q[i - 1];
}

bool at_least(ConstLimbs u, ConstLimbs b) {
  const ConstLimbs head = u.first(u.size() - b.size());
  if (std::any_of(head.begin(), head.end(), [](Limb limb) { return limb != 0; })) return true;
  return !std::lexicographical_compare(u.end() - static_cast<std::ptrdiff_t>(b.size()), u.end(),
                                       b.begin(), b.end());
}

void divide_block(Limbs q, Limbs u, ConstLimbs b, Workspace ws);

// The quotient has m limbs, the divisor n > m + 1: the leading m + 1 limbs of the divisor give a
// quotient that the rest of it can only lower, by at most 2.
void divide_cut(Limbs q, Limbs u, ConstLimbs b, Workspace ws) {
  const std::size_t m = q.size();
  const std::size_t n = b.size();
  const ConstLimbs head = b.first(m + 1);
  const Limbs rest = u.last(n);
  std::int64_t top = 0;
  if (std::equal(head.begin(), head.end(), u.begin())) {
    // The quotient would be B^m; B^m - 1 leaves the head once more.
    std::fill(q.begin(), q.end(), kBase - 1);
    top = add(rest.first(m + 1), head, rest.subspan(1, m));
  } else {
    divide_block(q, u.first(2 * m + 1), head, ws);
  }
  const Limbs product = ws.take<Limb>(n - 1);
  multiply(product, b.subspan(m + 1), q, ws);
  top -= subtract(rest, rest, product);
  while (top < 0) {
    decrement(q);
    top += add(rest, rest, b);
  }
  assert(top == 0);
}

// One piece of a quotient with the reciprocal x of the leading limbs of b. Cut to p = k + 2 limbs,
// the reciprocal and the dividend give the quotient with an error below 1 + 6 / B, before it is
// cut to an integer.
void divide_piece(Limbs q, Limbs u, ConstLimbs b, ConstLimbs x, Workspace ws) {
  const std::size_t k = q.size();
  const std::size_t p = k + 2;
  const Limbs product = ws.take<Limb>(std::max(2 * p + 1, u.size()));
  multiply(product.first(2 * p + 1), x.first(p + 1), u.first(p), ws);
  if (product[0] != 0) {
    std::fill(q.begin(), q.end(), kBase - 1);
  } else {
    std::copy_n(product.begin() + 1, k, q.begin());
  }
  multiply(product.first(u.size()), b, q, ws);
  Limb below = subtract(u, u, product.first(u.size()));
  while (below != 0) {
    decrement(q);
    below -= add(u, u, b);
  }
  while (at_least(u, b)) {
    increment(q);
    subtract(u, u, b);
  }
}

// Divides u = (a remainder of n limbs, below b) followed by q.size() limbs; the remainder
// replaces the last n limbs of u.
void divide_block(Limbs q, Limbs u, ConstLimbs b, Workspace ws) {
  const std::size_t m = q.size();
  const std::size_t n = b.size();
  assert(u.size() == n + m);
  poll();
  if (n > 2 * m + kDivideRecursion) return divide_cut(q, u, b, ws);
  if (std::min(m, n) < kDivideRecursion) return long_divide(q, u.last(n), u, b, ws);
  if (n > m + 1) return divide_cut(q, u, b, ws);
  if (n < kDivideReciprocal) {
    const std::size_t upper = (m + 1) / 2;
    divide_block(q.first(upper), u.first(n + upper), b, ws);
    divide_block(q.subspan(upper), u.subspan(upper), b, ws);
    return;
  }
  const std::size_t k = piece_length(m, n);
  const Limbs x = ws.take<Limb>(k + 3);
  reciprocal(x, b.first(k + 2), ws);
  for (std::size_t i = 0; i < m; i += k) {
    const std::size_t length = std::min(k, m - i);
    divide_piece(q.subspan(i, length), u.subspan(i, n + length), b, x, ws);
  }
}

// Limbs of the quotient that divide() finds at a time: bounds its workspace by the divisor.
std::size_t chunk_length(std::size_t m, std::size_t n) {
  return std::min(m, n < kDivideReciprocal ? std::max(kRowChunk, n) : 2 * n);
}

}  // namespace

std::size_t divide_workspace(std::size_t na, std::size_t nb) {
  const std::size_t chunk = chunk_length(na - nb + 1, nb);
  const std::size_t k = std::min(chunk, nb);
  const std::size_t rows = std::min(nb, 3 * kDivideRecursion);
  std::size_t size = Workspace::bytes<Limb>(nb + chunk) +
                     long_divide_workspace(rows + std::min(chunk, kRowChunk), rows);
  if (nb < kDivideRecursion) return size;
  size += Workspace::bytes<Limb>(nb + k + 8) + multiply_workspace(k + 3, nb);
  if (nb < kDivideReciprocal || k < kDivideRecursion) return size;
  return size + Workspace::bytes<Limb>(k + 3) + reciprocal_workspace(k);
}

// Pieces and divisor together have at most na + 1 limbs, pieces alone at most half of that.
std::size_t divide_workspace(std::size_t na) {
  const std::size_t half = na / 2 + 1;
  const std::size_t rows = std::min(na, 3 * kDivideRecursion);
  return 2 * Workspace::bytes<Limb>(na + 9) +
         long_divide_workspace(rows + std::min(na, kRowChunk), rows) +
         multiply_workspace(half + 3, half) + Workspace::bytes<Limb>(half + 3) +
         reciprocal_workspace(half);
}

void divide(Limbs q, Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws) {
  const std::size_t n = b.size();
  const std::size_t m = q.size();
  assert(n >= 1 && b[0] != 0 && a.size() == n + m - 1 && r.size() == n);
  if (n == 1) {
    r[0] = divide_limb(q, a, b[0]);
    return;
  }
  if (std::min(m, n) < kDivideRecursion && m <= kRowChunk && n <= 2 * m + kDivideRecursion) {
    return long_divide(q, r, a, b, ws);
  }
  // A zero limb and the leading n - 1 limbs of a are the first remainder.
  const std::size_t chunk = chunk_length(m, n);
  const Limbs u = ws.take<Limb>(n + chunk);
  Limbs rest = r;
  rest[0] = 0;
  std::copy_n(a.begin(), n - 1, rest.begin() + 1);
  ConstLimbs left = a.subspan(n - 1);
  for (std::size_t i = 0; i < m; i += chunk) {
    const std::size_t length = std::min(chunk, m - i);
    const Limbs now = u.first(n + length);
    std::copy(rest.begin(), rest.end(), now.begin());
    std::copy_n(left.begin() + static_cast<std::ptrdiff_t>(i), length,
                now.end() - static_cast<std::ptrdiff_t>(length));
    divide_block(q.subspan(i, length), now, b, ws);
    std::copy_n(now.end() - static_cast<std::ptrdiff_t>(n), n, rest.begin());
  }
}

}  // namespace tivelo::limbs
