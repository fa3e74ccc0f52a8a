// Builds the tables of the transform from three primes and one root for each, which a script
// checks. It runs once, so plain arithmetic in 128 bits will do.
#include "kernels/transform_tables.h"

#include <algorithm>
#include <bit>

#include "base/radix.h"
#include "base/wide.h"

namespace tivelo::kernels {
namespace {

class Field {
 public:
  explicit Field(std::uint64_t p) : p_(p) {}

  std::uint64_t times(std::uint64_t a, std::uint64_t b) const {
    return static_cast<std::uint64_t>(Wide{a} * b % p_);
  }
  std::uint64_t plus(std::uint64_t a, std::uint64_t b) const { return (a + b) % p_; }
  std::uint64_t minus(std::uint64_t a, std::uint64_t b) const { return (a + p_ - b) % p_; }
  std::uint64_t raised(std::uint64_t a, std::uint64_t e) const {
    std::uint64_t r = 1;
    for (; e != 0; e >>= 1, a = times(a, a)) {
      if (e & 1) r = times(r, a);
    }
    return r;
  }
  std::uint64_t invert(std::uint64_t a) const { return raised(a % p_, p_ - 2); }

  // The representative in (-p/2, p/2); p is odd and below 2^53, so both steps are exact.
  double balanced(std::uint64_t a) const {
    return a > p_ / 2 ? -static_cast<double>(p_ - a) : static_cast<double>(a);
  }

 private:
  std::uint64_t p_;
};

// Product of z(first + i) over the bits i set in b, where z(k) has order 2^k.
std::uint64_t root_product(const Field& f, const std::uint64_t* z, std::size_t b, int first) {
  std::uint64_t r = 1;
  for (int i = 0; b >> i != 0; ++i) {
    if ((b >> i & 1) == 0) continue;
    r = first + i <= kRootOrder ? f.times(r, z[first + i]) : 0;
  }
  return r;
}

// t(b) for all blocks of a table, each from the one without its lowest bit: with a multiplication
// each, a first long product does not notice that the tables are built.
constexpr std::size_t kTwiddles = 2 * kBottomBlocks;
static_assert(kTwiddles >= 4 * kPassBlocks);

void find_twiddles(const Field& f, const std::uint64_t* z, std::uint64_t (&t)[kTwiddles]) {
  t[0] = 1;
  for (std::size_t b = 1; b < kTwiddles; ++b)
    t[b] = f.times(t[b & (b - 1)], z[std::countr_zero(b) + 2]);
}

// The chain of a root r of odd order times z(1), the root -1, or not: the square root of r is
// r^((order + 1) / 2).
void build_odd(Chain& chain, const Field& f, std::uint64_t r, std::uint64_t order,
               const std::uint64_t* z, const std::uint64_t* inverse_z, bool negative) {
  for (int j = 0; j < kChain; ++j, r = f.raised(r, (order + 1) / 2)) {
    const std::size_t b = negative ? 1 : 0;
    chain.root[j] = f.balanced(f.times(r, root_product(f, z, b, 1 + j)));
    chain.inverse[j] = f.balanced(f.times(f.invert(r), root_product(f, inverse_z, b, 1 + j)));
  }
}

void build_tops(PrimeTables& t, const Field& f, std::uint64_t root, const std::uint64_t* z,
                const std::uint64_t* inverse_z) {
  Top& five = t.top[0];
  Top& six = t.top[1];
  const std::uint64_t third = f.raised(root, (kOddOrder / 3) << kRootOrder);
  const std::uint64_t fifth = f.raised(root, (kOddOrder / 5) << kRootOrder);
  for (std::uint64_t c = 0; c < 5; ++c)
    build_odd(five.chain[c], f, f.raised(fifth, c), 5, z, inverse_z, false);
  for (std::uint64_t c = 0; c < 6; ++c)
    build_odd(six.chain[c], f, f.raised(third, c), 3, z, inverse_z, c >= 3);
  const std::uint64_t one = fifth;
  const std::uint64_t two = f.times(one, one);
  const std::uint64_t s1 = f.minus(one, f.invert(one));
  const std::uint64_t s2 = f.minus(two, f.invert(two));
  const std::uint64_t of_five[] = {f.plus(one, f.invert(one)), s1, f.minus(s2, s1), f.plus(s1, s2)};
  for (std::size_t i = 0; i < 4; ++i) five.factor[i] = f.balanced(of_five[i]);
  six.factor[0] = f.balanced(third);
  five.inverse = f.balanced(f.invert(2 * 2 * 10));
  six.inverse = f.balanced(f.invert(6));
  for (Top* eight : {&t.top[2], &t.top[3]}) {
    std::copy_n(t.chain, 8, eight->chain);
    for (std::size_t i = 0; i < 3; ++i) {  // i, w and iw, and their inverses
      eight->factor[i] = t.chain[2 * i + 2].root[0];
      eight->factor[i + 3] = t.chain[2 * i + 2].inverse[0];
    }
    eight->factor[6] = f.balanced(f.times(z[2], f.invert(2)));
    eight->inverse = f.balanced(f.invert(8));
  }
}

void build_one(PrimeTables& t, std::uint64_t p, std::uint64_t root) {
  const Field f(p);
  std::uint64_t z[kRootOrder + 1];
  std::uint64_t inverse_z[kRootOrder + 1];
  z[kRootOrder] = f.raised(root, kOddOrder);
  inverse_z[kRootOrder] = f.invert(z[kRootOrder]);
  for (int k = kRootOrder; k > 0; --k) {
    z[k - 1] = f.times(z[k], z[k]);
    inverse_z[k - 1] = f.times(inverse_z[k], inverse_z[k]);
  }
  std::uint64_t twiddle[kTwiddles];
  std::uint64_t inverse[kTwiddles];
  find_twiddles(f, z, twiddle);
  find_twiddles(f, inverse_z, inverse);

  t.p = static_cast<double>(p);
  t.p_inverse = 1 / t.p;
  for (std::size_t b = 0; b < kBottomBlocks; ++b) {
    t.bottom[b] = f.balanced(twiddle[b]);
    t.bottom_even[b] = f.balanced(twiddle[2 * b]);
    t.inverse_bottom[b] = f.balanced(inverse[b]);
    t.inverse_bottom_even[b] = f.balanced(inverse[2 * b]);
  }
  for (std::size_t b = 0; b < kPassBlocks; ++b) {
    const std::size_t blocks[8] = {b, 2 * b, 2 * b + 1, 4 * b, 4 * b + 1, 4 * b + 2, 4 * b + 3, 0};
    for (std::size_t i = 0; i < 8; ++i) {
      t.pass[b][i] = f.balanced(twiddle[blocks[i]]);
      t.inverse_pass[b][i] = f.balanced(inverse[blocks[i]]);
    }
  }
  std::uint64_t half_power = 1;
  for (int j = 0; j < kChain; ++j) {
    t.halves[j] = f.balanced(half_power);
    half_power = f.times(half_power, (p + 1) / 2);
    for (std::size_t c = 0; c < 8; ++c) {
      // Entries past the order of the given root are never needed; they become 0.
      t.chain[c].root[j] = f.balanced(root_product(f, z, c, 1 + j));
      t.chain[c].inverse[j] = f.balanced(root_product(f, inverse_z, c, 1 + j));
    }
  }
  build_tops(t, f, root, z, inverse_z);
}

// v in base 10^8, least significant digit first and the last with what is left, below 2^64.
void to_digits(double* digits, int count, Wide v) {
  for (int i = 0; i < count - 1; ++i, v /= kBase)
    digits[i] = static_cast<double>(static_cast<std::uint64_t>(v % kBase));
  digits[count - 1] = static_cast<double>(static_cast<std::uint64_t>(v));
}

TransformTables build_all() {
  TransformTables t = {};
  for (int i = 0; i < kPrimes; ++i) build_one(t.prime[i], kPrime[i], kRoot[i]);
  const Field f2(kPrime[1]);
  const Field f3(kPrime[2]);
  t.inverse_p1_mod_p2 = f2.balanced(f2.invert(kPrime[0]));
  t.inverse_p1_mod_p3 = f3.balanced(f3.invert(kPrime[0]));
  t.inverse_p2_mod_p3 = f3.balanced(f3.invert(kPrime[1]));
  to_digits(t.p1, 2, kPrime[0]);
  to_digits(t.p1p2, 4, Wide{kPrime[0]} * kPrime[1]);
  to_digits(t.p1_upper, 3, Wide{kPrime[0]} << 22);
  to_digits(t.p1p2_upper, 4, (Wide{kPrime[0]} * kPrime[1]) << 22);
  return t;
}

}  // namespace

const TransformTables& transform_tables() {
  static const TransformTables tables = build_all();
  return tables;
}

}  // namespace tivelo::kernels
