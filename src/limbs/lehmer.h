// Steps of Lehmer's method: the quotients of Euclid's algorithm found on the leading 128 bits of
// two long numbers, collected in a matrix with entries of 63 bits and applied to both in one pass.
// The numbers are in binary (word_gcd.h) or in pairs of limbs (half_gcd.h).
#pragma once

#include <algorithm>
#include <cassert>
#include <cstdint>

#include "base/limb.h"
#include "base/wide.h"

namespace tivelo::limbs {

using Word = std::uint64_t;

inline constexpr int kWordBits = 64;
inline constexpr Word kPair = Word{kBase} * kBase;

// A number in digits of one word, least significant first, the last of which is not zero.
struct Words {
  Word* w;
  std::size_t size;

  void trim() {
    while (size > 0 && w[size - 1] == 0) --size;
  }
  // Zeros above it, up to n digits in all.
  void widen(std::size_t n) {
    std::fill(w + size, w + n, 0);
    size = n;
  }
};

inline bool less(const Words& x, const Words& y) {
  if (x.size != y.size) return x.size < y.size;
  std::size_t i = x.size;
  while (i > 0 && x.w[i - 1] == y.w[i - 1]) --i;
  return i > 0 && x.w[i - 1] < y.w[i - 1];
}

// x' = a x - b y and y' = d y - c x, or both negated if `odd`, with determinant 1 or -1, which
// keeps the gcd. Entries are below 2^63 - 2^55.
struct LehmerStep {
  Word a = 1, b = 0, c = 0, d = 1;
  bool odd = false;

  bool trivial() const { return b == 0; }
};

// A step for x >= y, of which the leading 128 bits are given in one unit, x's first bit being set.
// It shortens both by about 62 bits, or 31 if `once`, and leaves them positive, the smaller at
// least x / 2^66, or x / 2^33. Trivial where the first quotient is too large.
LehmerStep lehmer_step(Wide x, Wide y, bool once);

// The leading 128 bits of n >= 2 words in binary, of which the first `shift` < 64 are left out; x
// has at most n words.
Wide leading(const Words& x, std::size_t n, int shift);

// The bases: what is left of t and the carry as a digit, and what goes to the next as a carry. In
// both a + b times the largest digit is allowed for entries a, b of a step.
struct Binary {
  static constexpr Word kLargest = ~Word{0};
  static Word settle(Wide t, Word& carry) {
    t = t + carry;
    carry = static_cast<Word>(t >> kWordBits);
    return static_cast<Word>(t);
  }
};

struct Decimal {
  static constexpr Word kLargest = kPair - 1;
  // The quotient of t < 2^118 is at most 5 too small: the bits of t that are left out, those of the
  // reciprocal and twice those of the product each take less than 2 from it. What it leaves is
  // below 2^56; so the carry, which is at most a + b, does not make it 2^64, and waits for one
  // division.
  static Word settle(Wide t, Word& carry) {
    constexpr auto kReciprocal = static_cast<Word>((Wide{1} << 117) / kPair);
    const auto top = static_cast<Word>(t >> 54);
    const Word q = 2 * static_cast<Word>((Wide{top} * kReciprocal) >> kWordBits);
    const Word rest = static_cast<Word>(t) - q * kPair + carry;
    const Word over = rest / kPair;
    carry = q + over;
    return rest - over * kPair;
  }
};

// Both numbers replaced by those of a step found for them, which has room for the longer in both.
// With y taken from B^n - 1, which is b B^n too much, less b, all is positive; so the carry is b at
// first and at last.
template <typename Base>
void apply(const LehmerStep& m, Words& x, Words& y) {
  const std::size_t n = std::max(x.size, y.size);
  x.widen(n);
  y.widen(n);
  if (m.odd) std::swap(x, y);
  const Word a = m.odd ? m.b : m.a, b = m.odd ? m.a : m.b;
  const Word c = m.odd ? m.d : m.c, d = m.odd ? m.c : m.d;
  Word* const u = x.w;
  Word* const v = y.w;
  Word carry_x = b, carry_y = c;
  for (std::size_t i = 0; i < n; ++i) {
    const Word s = u[i];
    const Word t = v[i];
    const Wide sum_x = Wide{a} * s + Wide{b} * (Base::kLargest - t);
    const Wide sum_y = Wide{d} * t + Wide{c} * (Base::kLargest - s);
    u[i] = Base::settle(sum_x, carry_x);
    v[i] = Base::settle(sum_y, carry_y);
  }
  assert(carry_x == b && carry_y == c);
  x.trim();
  y.trim();
}

}  // namespace tivelo::limbs
