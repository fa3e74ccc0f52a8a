// Long division whose columns are wide enough never to carry. The dividend is spread over signed
// 64-bit columns; every quotient digit is rounded to the nearest integer, estimated in floating
// point, and its row of products is subtracted from the columns as they are. Digits come out
// between about -kBase / 2 and kBase / 2, so that an estimate that is off by a little leaves a
// remainder the next digit takes care of; carries are settled once, at the end.
//
// Bounds, with D the divisor and one unit of the column of the current digit:
//   - A column collects at most kLongDivisionLimit products below 0.51 x 10^16 (10^16 for the first
//     digit), hence stays below 8.2 x 10^18 < 2^63.
//   - The estimate sees three columns of the remainder and three limbs of D. Columns left out
//     weigh at most 8.2 x 10^18 / 10^24 < 10^-5 units, rounding the second column 10^-5 units, and
//     D is at least 1 unit; roundings of the quotient itself are below 10^8 x 2^-50. A digit is
//     thus within 0.5 + 10^-4 of the exact quotient, and the remainder within 0.5001 D.
#include "limbs/long_division.h"

#include <algorithm>
#include <bit>
#include <cassert>

#include "kernels/constants.h"
#include "kernels/target.h"
#include "limbs/linear.h"

namespace tivelo::limbs {

using kernels::kRowBlock;

namespace {

// The integer nearest to |x| < 2^51: the bits of shifted doubles count the units.
std::int64_t nearest(double x) {
  constexpr double kShift = kernels::kRoundingShift;
  return std::bit_cast<std::int64_t>(x + kShift) - std::bit_cast<std::int64_t>(kShift);
}

// All quotient digits, signed, into q. u[0] is the column above the first digit's first column;
// v is the divisor with kRowBlock zeros on both sides, because rows cover whole blocks of columns.
// The three leading columns live in registers (first, second, third) ahead of the row in memory: a
// digit waits only for the digit before it.
void divide_rows(Limbs q, std::uint64_t* u, const Limb* v, std::size_t n) {
  constexpr double kTiny = 1.0 / kBase;
  const double inverse = 1.0 / (v[0] + v[1] * kTiny + v[2] * kTiny * kTiny);
  const auto column = [u](std::size_t i) { return static_cast<std::int64_t>(u[i]); };
  const auto subtract_row = kernels::target().subtract_row;
  std::int64_t first = column(0) * kBase + column(1);
  std::int64_t second = column(2);
  std::int64_t third = column(3);
  for (std::size_t j = 0; j < q.size(); ++j) {
    const double rest = static_cast<double>(first) + static_cast<double>(second) * kTiny +
                        static_cast<double>(third) * (kTiny * kTiny);
    const std::int64_t digit = nearest(rest * inverse);
    const std::int64_t fourth = column(j + 4);
    // What the first column keeps is worth kBase times as much in the next: the product may be
    // large, its sum with `second` is below 0.51 x 10^16 again.
    first = (first - digit * v[0]) * kBase + (second - digit * v[1]);
    second = third - digit * v[2];
    third = fourth - digit * v[3];
    const auto factor = static_cast<std::int32_t>(digit);
    q[j] = static_cast<Limb>(factor);
    const std::size_t start = (j + 1) / kRowBlock * kRowBlock;
    subtract_row(u + start, v + start - (j + 1), (j + n) / kRowBlock - start / kRowBlock + 1,
                 factor);
  }
  u[q.size()] = 0;
  u[q.size() + 1] = static_cast<std::uint64_t>(first);
}

// Columns to limbs; returns the carry out, 0 or -1.
std::int64_t settle_columns(Limbs r, const std::uint64_t* u) {
  // Makes every column positive and is a multiple of the base.
  constexpr std::int64_t kLift = 83000000000;
  std::int64_t carry = 0;
  for (std::size_t i = r.size(); i-- > 0;) {
    const std::uint64_t t = u[i] + static_cast<std::uint64_t>(carry + kLift * kBase);
    carry = static_cast<std::int64_t>(t / kBase) - kLift;
    r[i] = static_cast<Limb>(t % kBase);
  }
  return carry;
}

// Signed digits to limbs, in place, less one at the end if told so.
void settle_digits(Limbs q, bool take_one) {
  std::int64_t borrow = take_one ? 1 : 0;
  for (std::size_t j = q.size(); j-- > 0;) {
    std::int64_t t = static_cast<std::int32_t>(q[j]) - borrow;
    borrow = t < 0 ? 1 : 0;
    t += borrow * kBase;
    q[j] = static_cast<Limb>(t);
  }
  assert(borrow == 0 && (q.empty() || q[0] < kBase));
}

}  // namespace

std::size_t long_divide_workspace(std::size_t na, std::size_t nb) {
  return Workspace::bytes<std::uint64_t>(na + 1 + 2 * kRowBlock) +
         Workspace::bytes<Limb>(nb + 3 * kRowBlock);
}

void long_divide(Limbs q, Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws) {
  const std::size_t n = b.size();
  const std::size_t m = q.size();
  assert(n >= 2 && b[0] != 0 && r.size() == n && (a.size() == n + m || a.size() + 1 == n + m));
  assert(std::min(n, m) <= kLongDivisionLimit);
  const std::span<std::uint64_t> u = ws.take<std::uint64_t>(n + m + 2 * kRowBlock);
  std::fill(u.begin(), u.end() - static_cast<std::ptrdiff_t>(2 * kRowBlock + a.size()), 0);
  std::copy(a.begin(), a.end(), u.begin() + static_cast<std::ptrdiff_t>(n + m - a.size()));
  std::fill(u.end() - static_cast<std::ptrdiff_t>(2 * kRowBlock), u.end(), 0);
  const Limbs v = ws.take<Limb>(n + 3 * kRowBlock);
  std::fill_n(v.begin(), kRowBlock, 0);
  std::copy(b.begin(), b.end(), v.begin() + kRowBlock);
  std::fill(v.begin() + static_cast<std::ptrdiff_t>(kRowBlock + n), v.end(), 0);
  divide_rows(q, u.data(), v.data() + kRowBlock, n);
  const bool negative = settle_columns(r, u.data() + m) < 0;
  if (negative) add(r, r, b);
  settle_digits(q, negative);
}

}  // namespace tivelo::limbs
