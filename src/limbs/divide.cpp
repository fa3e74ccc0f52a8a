// Division, by length: rows (long_division.cpp), recursion that turns them into multiplications
// (Burnikel and Ziegler, Fast Recursive Division, 1998), and for the longest a reciprocal. Every
// level estimates with leading limbs and corrects: cut to one limb more than the quotient has, a
// divisor of any leading limb makes the estimate at most 2 too large, so nothing is scaled.
#include "limbs/divide.h"

#include <algorithm>
#include <cassert>

#include "base/interrupt.h"
#include "limbs/checked.h"
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

// Division by the reciprocal of the leading limbs of b, k quotient limbs at a time. The transforms
// of both are kept for all pieces; at most n - 2 limbs leave the divisor its two guard limbs.
class Pieces {
 public:
  // For quotients of m limbs in all. Keeps memory of ws.
  Pieces(ConstLimbs b, std::size_t m, Workspace& ws) : k_(best_length(m, b.size())), b_(b) {
    const Limbs x = ws.take<Limb>(k_ + 3);
    reciprocal(x, b.first(k_ + 2), ws);
    kept_b_ = Kept(b, shape_of_b(b.size()), ws);
    kept_x_ = Kept(x, shape_of_x(k_), ws);
  }

  // What it keeps, takes, and a dividend of one piece.
  static std::size_t workspace(std::size_t m, std::size_t n) {
    const std::size_t k = best_length(m, n);
    const kernels::Shape of_x = shape_of_x(k), of_b = shape_of_b(n);
    const std::size_t dividing =
        Kept::bytes(of_b) + Kept::bytes(of_x) + 2 * Workspace::bytes<Limb>(n + k + 5) +
        std::max(Kept::workspace(of_x, k + 2, k + 3), Kept::workspace(of_b, k, n));
    return Workspace::bytes<Limb>(k + 3) + std::max(reciprocal_workspace(k + 2), dividing);
  }

  std::size_t length() const { return k_; }

  // q.size() <= length(); as divide_block().
  void divide(Limbs q, Limbs u, Workspace ws);

 private:
  // A product with b is next to a number that is known, by a few b.
  static kernels::Shape shape_of_b(std::size_t n) { return kernels::cyclic_shape_for(n / 2 + 2); }
  static kernels::Shape shape_of_x(std::size_t k) {
    return kernels::shape_for(kernels::product_coefficients(k + 2, k + 3));
  }

  // The length of pieces for which the transforms have the fewest coefficients: each piece takes
  // two of either kind, both numbers one, a step of the reciprocal five of its length.
  static std::size_t best_length(std::size_t m, std::size_t n) {
    std::size_t best = 0;
    std::size_t least = ~std::size_t{0};
    const std::size_t fewest = (m + n - 3) / (n - 2);
    for (std::size_t pieces = fewest; pieces < fewest + kMorePieces; ++pieces) {
      const std::size_t k = (m + pieces - 1) / pieces;
      const std::size_t each =
          kernels::transform_length(shape_of_x(k)) + kernels::transform_length(shape_of_b(n));
      const std::size_t all = (2 * pieces + 1) * each +
                              10 * kernels::transform_length(kernels::cyclic_shape_for(k / 2 + 3));
      if (all >= least) continue;
      least = all;
      best = k;
    }
    return best;
  }
  static constexpr std::size_t kMorePieces = 6;

  std::size_t k_;
  ConstLimbs b_;
  Kept kept_b_, kept_x_;
};

// Cut to p = k + 2 limbs, the reciprocal and the dividend give the quotient with an error below
// 1 + 6 / B, before it is cut to an integer.
void Pieces::divide(Limbs q, Limbs u, Workspace ws) {
  const std::size_t k = q.size();
  const std::size_t p = k_ + 2;
  const Limbs product = ws.take<Limb>(std::max(2 * p + 1, u.size()));
  kept_x_.multiply(product.first(2 * p + 1), u.first(p), ws);
  if (product[0] != 0) {
    std::fill(q.begin(), q.end(), kBase - 1);
  } else {
    std::copy_n(product.begin() + 1, k, q.begin());
  }
  std::ranges::copy(u, product.begin());
  kept_b_.multiply_near(product.first(u.size()), q, ws);
  Limb below = subtract(u, u, product.first(u.size()));
  while (below != 0) {
    decrement(q);
    below -= add(u, u, b_);
  }
  while (at_least(u, b_)) {
    increment(q);
    subtract(u, u, b_);
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
  Pieces pieces(b, m, ws);
  const std::size_t k = pieces.length();
  for (std::size_t i = 0; i < m; i += k) {
    const std::size_t length = std::min(k, m - i);
    pieces.divide(q.subspan(i, length), u.subspan(i, n + length), ws);
  }
}

// Are quotients of m limbs found with a reciprocal of the divisor of n limbs?
bool by_pieces(std::size_t m, std::size_t n) { return n >= kDivideReciprocal && n <= m + 1; }

// Limbs of the quotient that divide() finds at a time, if not by pieces: bounds its workspace by
// the divisor.
std::size_t chunk_length(std::size_t m, std::size_t n) {
  return std::min(m, std::max(kRowChunk, n));
}

// The quotient and the remainder by chunks of the quotient: `divide` does what divide_block() does.
template <typename Divide>
void divide_chunks(Limbs q, Limbs r, ConstLimbs a, std::size_t chunk, Workspace ws,
                   const Divide& divide) {
  // A zero limb and the leading n - 1 limbs of a are the first remainder.
  const std::size_t n = r.size();
  const std::size_t m = q.size();
  const Limbs u = ws.take<Limb>(n + chunk);
  r[0] = 0;
  std::copy_n(a.begin(), n - 1, r.begin() + 1);
  ConstLimbs left = a.subspan(n - 1);
  for (std::size_t i = 0; i < m; i += chunk) {
    const std::size_t length = std::min(chunk, m - i);
    const Limbs now = u.first(n + length);
    std::ranges::copy(r, now.begin());
    std::ranges::copy(left.subspan(i, length), now.begin() + static_cast<std::ptrdiff_t>(n));
    divide(q.subspan(i, length), now, ws);
    std::ranges::copy(now.last(n), r.begin());
  }
}

}  // namespace

std::size_t divide_workspace(std::size_t na, std::size_t nb) {
  const std::size_t m = na - nb + 1;
  if (by_pieces(m, nb)) return Pieces::workspace(m, nb);
  const std::size_t chunk = chunk_length(m, nb);
  const std::size_t rows = std::min(nb, 3 * kDivideRecursion);
  std::size_t size = long_divide_workspace(rows + std::min(chunk, kRowChunk), rows);
  if (nb >= kDivideRecursion) {
    size += Workspace::bytes<Limb>(nb) + multiply_workspace(std::min(chunk, nb), nb);
  }
  if (nb > m && by_pieces(m, m + 1)) size = std::max(size, Pieces::workspace(m, m + 1));
  return Workspace::bytes<Limb>(nb + chunk) + size;
}

// A divisor of n limbs by pieces of k has at most na / 2 + 1, and both k <= n and 2 k <= na - n +
// 2: with shapes of at most 4/3 of n / 2 + 2 and 5/4 of k + 3 coefficients, what is kept and the
// rest take at most 4 (n + k) x 2 + 16 n + 30 k + max(27 n, 50 k) < 40 na.
std::size_t divide_workspace(std::size_t na) {
  const std::size_t rows = std::min(na, 3 * kDivideRecursion);
  return 2 * Workspace::bytes<Limb>(na + 9) +
         long_divide_workspace(rows + std::min(na, kRowChunk), rows) +
         std::max(multiply_workspace(na, 1), 40 * na + 8192);
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
  if (by_pieces(m, n)) {
    Pieces pieces(b, m, ws);
    return divide_chunks(q, r, a, pieces.length(), ws, [&pieces](Limbs part, Limbs u, Workspace w) {
      pieces.divide(part, u, w);
    });
  }
  divide_chunks(q, r, a, chunk_length(m, n), ws,
                [b](Limbs part, Limbs u, Workspace w) { divide_block(part, u, b, w); });
}

}  // namespace tivelo::limbs
