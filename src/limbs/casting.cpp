// With x = 10^16 = 1 + m, m = kCastOut, and p the pairs of limbs from the end,
//   sum p(i) x^i = sum p(i) + m sum i p(i) modulo m^2,
// where a pair is 10^8 times its limb at an odd place plus its limb at an even one.
#include "limbs/casting.h"

#include <cassert>

#include "base/wide.h"

namespace tivelo::limbs {
namespace {

using kernels::kMostSummed;
using kernels::Sums;
using kernels::Target;

// Sums over runs of any length, of up to 2^25 limbs in fact.
struct LongSums {
  std::uint64_t plain[2] = {};
  Wide weighted[2] = {};
  bool excess = false;
};

// Whole parts follow the first one, so that all have their limbs at places of their own kind.
LongSums sums_of(ConstLimbs a, const Target& t) {
  static_assert(kMostSummed % 2 == 0);
  assert(!a.empty());
  LongSums all;
  std::size_t part = (a.size() - 1) % kMostSummed + 1;
  for (; !a.empty(); part = kMostSummed) {
    Sums sums;
    t.sum_limbs(&sums, a.data(), part);
    a = a.subspan(part);
    for (int place = 0; place < 2; ++place) {
      all.weighted[place] += Wide{all.plain[place]} * (part / 2) + sums.weighted[place];
      all.plain[place] += sums.plain[place];
    }
    all.excess |= sums.excess;
  }
  return all;
}

std::uint64_t once_less(std::uint64_t x) { return x >= kCastOut ? x - kCastOut : x; }

// x = q m + rest, returning q, for x < 2^117. By the reciprocal of m, 2^53 < m < 2^54: the bits of
// x that are left out, those of the reciprocal and those of the product each take less than 1 from
// the quotient, so the rest is below 4 m at first.
std::uint64_t divide(Wide x, std::uint64_t* rest) {
  constexpr auto kReciprocal = static_cast<std::uint64_t>((Wide{1} << 117) / kCastOut);
  const auto top = static_cast<std::uint64_t>(x >> 53);
  auto q = static_cast<std::uint64_t>((static_cast<Wide>(top) * kReciprocal) >> 64);
  std::uint64_t left = static_cast<std::uint64_t>(x) - q * kCastOut;
  for (; left >= kCastOut; left -= kCastOut) ++q;
  *rest = left;
  return q;
}

std::uint64_t modulo(Wide x) {
  std::uint64_t rest = 0;
  divide(x, &rest);
  return rest;
}

Residue residue(const LongSums& sums) {
  Residue r;
  const std::uint64_t q = divide(Wide{sums.plain[1]} * kBase + sums.plain[0], &r.rest);
  r.fold = modulo(sums.weighted[1] * kBase + sums.weighted[0] + q);
  return r;
}

}  // namespace

Residue residue_of(ConstLimbs a, const Target& t) { return residue(sums_of(a, t)); }

Residue product_of(const Residue& a, const Residue& b) {
  Residue r;
  const std::uint64_t q = divide(Wide{a.rest} * b.rest, &r.rest);
  const std::uint64_t crossed = modulo(Wide{a.rest} * b.fold + Wide{b.rest} * a.fold);
  r.fold = once_less(crossed + q);
  return r;
}

Residue sum_of(const Residue& a, const Residue& b) {
  const std::uint64_t rest = a.rest + b.rest;
  const std::uint64_t fold = once_less(a.fold + b.fold);
  return {once_less(rest), once_less(fold + (rest >= kCastOut ? 1 : 0))};
}

// Both parts complemented, for m - 1 + (m - 1) m = m^2 - 1, and 1 more.
Residue negative_of(const Residue& a) {
  return sum_of({kCastOut - 1 - a.rest, kCastOut - 1 - a.fold}, {1, 0});
}

Residue residue_of_power(std::size_t n) {
  const std::uint64_t unit = n % 2 == 0 ? 1 : kBase;
  return {unit, unit * (n / 2)};
}

bool casts_out(ConstLimbs r, const Residue& expected, const Target& t) {
  const LongSums sums = sums_of(r, t);
  return !sums.excess && residue(sums) == expected;
}

}  // namespace tivelo::limbs
