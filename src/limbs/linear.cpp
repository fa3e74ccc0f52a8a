// Sums and differences are the target's work (kernels/target.h); only the carry that runs on beyond
// the shorter operand is taken here. Division by a small number keeps its remainder only roughly
// reduced, so that one multiply-high, one multiply and one subtraction are all that one block waits
// for from the block before it.
#include "limbs/linear.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>

#include "base/wide.h"
#include "kernels/target.h"

namespace tivelo::limbs {
namespace {

constexpr std::uint64_t kBase2 = std::uint64_t{kBase} * kBase;

std::uint64_t multiply_high(std::uint64_t a, std::uint64_t b) {
  return static_cast<std::uint64_t>((static_cast<Wide>(a) * b) >> 64);
}

// A divisor and its reciprocal: roughly(x) is x mod k plus at most one k, for every 64-bit x. With
// inverse >= 2^64 / k - 1 the estimated quotient exceeds x / k - x / 2^64 - 1, so that it is at
// most one too small.
struct Divisor {
  std::uint64_t k;
  std::uint64_t inverse;

  explicit Divisor(std::uint32_t divisor) : k(divisor), inverse(~std::uint64_t{0} / divisor) {}
  std::uint64_t roughly(std::uint64_t x) const { return x - multiply_high(x, inverse) * k; }
  std::uint64_t modulo(std::uint64_t x) const {
    const std::uint64_t rest = roughly(x);
    return rest >= k ? rest - k : rest;
  }
};

}  // namespace

ConstLimbs strip(ConstLimbs a) {
  std::size_t zeros = 0;
  while (zeros < a.size() && a[zeros] == 0) ++zeros;
  return a.subspan(zeros);
}

int compare(ConstLimbs a, ConstLimbs b) {
  if (a.size() != b.size()) return a.size() > b.size() ? 1 : -1;
  const auto [x, y] = std::mismatch(a.begin(), a.end(), b.begin());
  if (x == a.end()) return 0;
  return *x > *y ? 1 : -1;
}

Limb add(Limbs r, ConstLimbs a, ConstLimbs b) {
  assert(r.size() == a.size() && a.size() >= b.size());
  std::size_t i = a.size() - b.size();
  Limb carry = kernels::target().add_limbs(r.data() + i, a.data() + i, b.data(), b.size());
  while (carry && i > 0) {
    --i;
    const Limb t = a[i] + 1;
    carry = t == kBase ? 1 : 0;
    r[i] = carry ? 0 : t;
  }
  if (r.data() != a.data()) std::copy_n(a.data(), i, r.data());
  return carry;
}

Limb subtract(Limbs r, ConstLimbs a, ConstLimbs b) {
  assert(r.size() == a.size() && a.size() >= b.size());
  std::size_t i = a.size() - b.size();
  Limb borrow = kernels::target().subtract_limbs(r.data() + i, a.data() + i, b.data(), b.size());
  while (borrow && i > 0) {
    --i;
    borrow = a[i] == 0 ? 1 : 0;
    r[i] = borrow ? kBase - 1 : a[i] - 1;
  }
  if (r.data() != a.data()) std::copy_n(a.data(), i, r.data());
  return borrow;
}

// Each product is split on its own (high < k, low < kBase); only the carry of the sum
// low + high <= 2 kBase - 2 walks from limb to limb.
Limb multiply_limb(Limbs r, ConstLimbs a, Limb k) {
  assert(r.size() == a.size() && k <= kBase);
  std::uint64_t high = 0;
  std::uint64_t carry = 0;
  for (std::size_t i = a.size(); i-- > 0;) {
    const std::uint64_t product = std::uint64_t{a[i]} * k;
    const std::uint64_t upper = product / kBase;
    const std::uint64_t t = product - upper * kBase + high + carry;
    carry = t >= kBase ? 1 : 0;
    r[i] = static_cast<Limb>(t - (kBase & (0 - carry)));
    high = upper;
  }
  return static_cast<Limb>(high + carry);
}

// Two limbs at a time. The remainder is kept as R = rest << shift, with K = k << shift between
// 2^54 and 2^55, and only known to be below 2.1 K. One block W replaces R by
//   R x 10^16 - q x K + ((W mod k) << shift), q = multiply_high(R, floor(2^64 x 10^16 / K)),
// where q is R x 10^16 / K rounded down, less 1 at most once (R / 2^64 < 2^-7), and W mod k is
// at most k / 500 too large; so R stays below 2.1 K. The excess of 0 to 2 K is settled in the
// quotient apart from this chain: `over` of this block goes in, that of the block before comes
// out 10^16 times.
std::uint32_t divide_limb(Limbs q, ConstLimbs a, std::uint32_t k) {
  assert(q.size() == a.size() && k >= 1 && k < std::uint32_t{1} << 31);
  const bool shortly = a.size() < 12;
  std::size_t i = 0;
  std::uint64_t rest = 0;
  for (const std::size_t stop = shortly ? a.size() : a.size() % 2; i < stop; ++i) {
    const std::uint64_t t = rest * kBase + a[i];
    q[i] = static_cast<Limb>(t / k);
    rest = t % k;
  }
  if (i == a.size()) return static_cast<std::uint32_t>(rest);
  const int shift = 55 - static_cast<int>(std::bit_width(k));
  const std::uint64_t scaled = std::uint64_t{k} << shift;
  const std::uint64_t inverse = static_cast<std::uint64_t>((Wide{kBase2} << 64) / scaled);
  const Divisor by(k);
  rest <<= shift;
  std::uint64_t over = 0;
  for (; i < a.size(); i += 2) {
    const std::uint64_t block = std::uint64_t{a[i]} * kBase + a[i + 1];
    const std::uint64_t inner = multiply_high(block, by.inverse);
    const std::uint64_t outer = multiply_high(rest, inverse);
    rest = rest * kBase2 + ((block - inner * k) << shift) - outer * scaled;
    const std::uint64_t before = over;
    over =
        static_cast<std::uint64_t>(rest >= scaled) + static_cast<std::uint64_t>(rest >= 2 * scaled);
    const std::uint64_t digits = outer + inner + over - before * kBase2;
    assert(digits < kBase2);
    q[i] = static_cast<Limb>(digits / kBase);
    q[i + 1] = static_cast<Limb>(digits % kBase);
  }
  return static_cast<std::uint32_t>((rest - over * scaled) >> shift);
}

// Every block of kDotLimbs limbs is multiplied by the powers of the base modulo k and summed
// without a reduction; Horner's rule joins the sums.
std::uint32_t remainder_limb(ConstLimbs a, std::uint32_t k) {
  assert(k >= 1);
  using kernels::kDotLimbs;
  const Divisor by(k);
  const std::uint64_t base = by.modulo(kBase);
  std::uint64_t rest = 0;
  if (a.size() < kDotLimbs / 2) {
    for (const Limb limb : a) rest = by.modulo(rest * base + limb);
    return static_cast<std::uint32_t>(rest);
  }
  // power[j] = 10^8^(31 - j) mod k, in four chains that do not wait for each other.
  std::array<std::uint32_t, kDotLimbs> power;
  std::uint64_t p = by.modulo(1);
  for (std::size_t j = kDotLimbs; j-- > kDotLimbs - 4; p = by.modulo(p * base)) {
    power[j] = static_cast<std::uint32_t>(p);
  }
  for (std::size_t j = kDotLimbs - 4; j-- > 0;) {
    power[j] = static_cast<std::uint32_t>(by.modulo(p * power[j + 4]));
  }
  const std::uint64_t step = by.modulo(base * power[0]);
  const auto dot = kernels::target().dot;
  std::array<Limb, kDotLimbs> head{};
  std::size_t i = a.size() % kDotLimbs;
  std::copy_n(a.begin(), i, head.end() - static_cast<std::ptrdiff_t>(i));
  rest = by.modulo(dot(head.data(), power.data()));
  for (; i < a.size(); i += kDotLimbs) {
    rest = by.modulo(rest * step + by.modulo(dot(&a[i], power.data())));
  }
  return static_cast<std::uint32_t>(rest);
}

}  // namespace tivelo::limbs
