// Lehmer's method on 64-bit words, least significant first. The quotients of a step are found in
// two halves, each on 63 leading bits, for a matrix with entries below 2^63: on the leading 128
// bits of both numbers, then on what the first half makes of these. That is 2^96 or more and off by
// less than 2^31; cut to 63 bits by less than 3/2, which is why the second half stops earlier.
#include "limbs/word_gcd.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <numeric>
#include <span>
#include <utility>

#include "base/wide.h"
#include "limbs/lehmer.h"
#include "limbs/linear.h"

namespace tivelo::limbs {
namespace {

using Word = std::uint64_t;

constexpr std::size_t kWordBits = 64;
constexpr Word kPair = Word{kBase} * kBase;

// Words of n limbs: log2(10^8) / 64 < 5 / 12.
constexpr std::size_t words_of(std::size_t n) { return n * 5 / 12 + 1; }

struct Words {
  Word* w;
  std::size_t size;  // the last is not zero

  void trim() {
    while (size > 0 && w[size - 1] == 0) --size;
  }
  std::size_t bits() const {
    return size * kWordBits - static_cast<std::size_t>(std::countl_zero(w[size - 1]));
  }
  // Word i, zero outside.
  Word at(std::size_t i) const { return i < size ? w[i] : 0; }
};

// By Horner's rule, two limbs at a time.
Words to_words(std::span<Word> room, ConstLimbs a) {
  Words x{room.data(), 0};
  std::size_t i = a.size() % 2;
  if (i == 1) x.w[x.size++] = a[0];
  for (; i < a.size(); i += 2) {
    Word carry = Word{a[i]} * kBase + a[i + 1];
    for (std::size_t j = 0; j < x.size; ++j) {
      const Wide t = Wide{x.w[j]} * kPair + carry;
      x.w[j] = static_cast<Word>(t);
      carry = static_cast<Word>(t >> kWordBits);
    }
    if (carry != 0) x.w[x.size++] = carry;
  }
  assert(x.size <= room.size());
  return x;
}

// x becomes zero. Half words, so that a rest and the next fit one.
std::size_t to_limbs(Limbs r, Words x) {
  std::ranges::fill(r, 0);
  std::size_t length = 0;
  for (; x.size > 0; x.trim()) {
    Word rest = 0;
    for (std::size_t i = x.size; i-- > 0;) {
      const Word upper = rest << 32 | x.w[i] >> 32;
      const Word lower = upper % kBase << 32 | (x.w[i] & 0xffffffff);
      x.w[i] = upper / kBase << 32 | lower / kBase;
      rest = lower % kBase;
    }
    r[r.size() - ++length] = static_cast<Limb>(rest);
  }
  return length;
}

bool less(const Words& x, const Words& y) {
  if (x.size != y.size) return x.size < y.size;
  std::size_t i = x.size;
  while (i > 0 && x.w[i - 1] == y.w[i - 1]) --i;
  return i > 0 && x.w[i - 1] < y.w[i - 1];
}

// The leading 128 bits of n words, of which the first `shift` are left out; x has at most n words.
Wide leading(const Words& x, std::size_t n, int shift) {
  const Wide top = Wide{x.at(n - 1)} << kWordBits | (n > 1 ? x.at(n - 2) : 0);
  if (shift == 0) return top;
  const Word next = n > 2 ? x.at(n - 3) : 0;
  return top << shift | next >> (static_cast<int>(kWordBits) - shift);
}

// x' = a x - b y and y' = d y - c x, or both negated if `odd`.
struct Matrix {
  Word a = 1, b = 0, c = 0, d = 1;
  bool odd = false;

  explicit Matrix(const LehmerStep& s)
      : a(size_of(s.a)), b(size_of(s.b)), c(size_of(s.c)), d(size_of(s.d)), odd(s.b > 0) {}

  static Word size_of(std::int64_t x) { return static_cast<Word>(x < 0 ? -x : x); }
};

// The step m after this one: signs alternate like a chessboard's, so that nothing cancels.
void follow(Matrix& first, const Matrix& m) {
  const Matrix f = first;
  first.a = m.a * f.a + m.b * f.c;
  first.b = m.a * f.b + m.b * f.d;
  first.c = m.c * f.a + m.d * f.c;
  first.d = m.c * f.b + m.d * f.d;
  first.odd = f.odd != m.odd;
}

// The next word of a x - b y, whose carries stay below a and up to b.
inline Word difference(Word a, Word b, Word x, Word y, Word& plus, Word& minus) {
  const Wide p = Wide{a} * x + plus;
  const Wide q = Wide{b} * y + minus;
  const Word upper = static_cast<Word>(p);
  const Word lower = static_cast<Word>(q);
  plus = static_cast<Word>(p >> kWordBits);
  minus = static_cast<Word>(q >> kWordBits) + (upper < lower ? 1 : 0);
  return upper - lower;
}

void apply(const Matrix& m, Words& x, Words& y) {
  const std::size_t n = std::max(x.size, y.size);
  std::fill(x.w + x.size, x.w + n, 0);
  std::fill(y.w + y.size, y.w + n, 0);
  Word* const u = m.odd ? y.w : x.w;
  Word* const v = m.odd ? x.w : y.w;
  const Word a = m.odd ? m.b : m.a, b = m.odd ? m.a : m.b;
  const Word c = m.odd ? m.d : m.c, d = m.odd ? m.c : m.d;
  Word plus_x = 0, minus_x = 0, plus_y = 0, minus_y = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const Word s = u[i];
    const Word t = v[i];
    u[i] = difference(a, b, s, t, plus_x, minus_x);
    v[i] = difference(d, c, t, s, plus_y, minus_y);
  }
  if (m.odd) std::swap(x.w, y.w);
  x.size = y.size = n;
  x.trim();
  y.trim();
}

// A step for x >= y, the leading bits of both on 128 bits, by about 62 bits; trivial where the
// first quotient is too large.
Matrix step_of(Wide x, Wide y) {
  Matrix m(lehmer_step(static_cast<std::int64_t>(x >> 65), static_cast<std::int64_t>(y >> 65)));
  if (m.b == 0) return m;
  // Modulo 2^128, which holds the results.
  const Wide u = m.odd ? m.b * y - m.a * x : m.a * x - m.b * y;
  const Wide v = m.odd ? m.c * x - m.d * y : m.d * y - m.c * x;
  const int shift = 65 - std::countl_zero(static_cast<Word>(u >> kWordBits));
  if (u < v || shift < 1) return m;
  follow(m, Matrix(lehmer_step(static_cast<std::int64_t>(u >> shift),
                               static_cast<std::int64_t>(v >> shift), 2)));
  return m;
}

// x less a multiple of y, for x >= y: with 64 bits of x and 32 bits of y rounded up, the quotient
// is at most the right one. Takes a bit from x at least.
void take_multiple(Words& x, const Words& y) {
  const auto normal = [](const Words& z) {
    return static_cast<Word>(leading(z, z.size, std::countl_zero(z.w[z.size - 1])) >> kWordBits);
  };
  Word q = normal(x) / ((normal(y) >> 32) + 1);
  const std::size_t apart = x.bits() - y.bits();
  std::size_t skip = 0;
  if (apart >= 32) {
    // As many whole words as leave a quotient of one word, which is not zero.
    const std::size_t left = (apart - 32) % kWordBits;
    skip = (apart - 32) / kWordBits;
    if (static_cast<std::size_t>(std::bit_width(q)) + left <= kWordBits) {
      q <<= left;
    } else {
      q >>= kWordBits - left;
      ++skip;
    }
  } else {
    q = std::max<Word>(q >> (32 - apart), 1);
  }
  Word plus = 0, minus = 0;
  for (std::size_t i = skip; i < x.size; ++i)
    x.w[i] = difference(1, q, x.w[i], y.at(i - skip), plus, minus);
  x.trim();
}

}  // namespace

std::size_t word_gcd_workspace(std::size_t n) { return 2 * Workspace::bytes<Word>(words_of(n)); }

std::size_t word_gcd(Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws) {
  const std::size_t room = words_of(std::max(a.size(), b.size()));
  Words x = to_words(ws.take<Word>(room), a);
  Words y = to_words(ws.take<Word>(room), b);
  for (;;) {
    if (less(x, y)) std::swap(x, y);
    if (y.size == 0) return to_limbs(r, x);
    if (x.size == 1) {
      x.w[0] = std::gcd(x.w[0], y.w[0]);
      return to_limbs(r, x);
    }
    const int shift = std::countl_zero(x.w[x.size - 1]);
    const Matrix m = step_of(leading(x, x.size, shift), leading(y, x.size, shift));
    if (m.b == 0) {
      take_multiple(x, y);
    } else {
      apply(m, x, y);
    }
  }
}

}  // namespace tivelo::limbs
