// Lehmer's method on 64-bit words, least significant first.
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

// Words of n limbs: log2(10^8) / 64 < 5 / 12.
constexpr std::size_t words_of(std::size_t n) { return n * 5 / 12 + 1; }

// By Horner's rule: several pairs of limbs in one pass, whose carries do not wait for each other.
Words to_words(std::span<Word> room, ConstLimbs a) {
  constexpr std::size_t kPairs = 4;
  Words x{room.data(), 0};
  std::size_t i = 0;
  while (i < a.size()) {
    const std::size_t left = (a.size() - i - 1) % (2 * kPairs) + 1;
    Word carry[kPairs] = {};
    for (std::size_t j = 2 * kPairs - left; j < 2 * kPairs; ++j)
      carry[j / 2] = carry[j / 2] * kBase + a[i++];
    std::size_t done = 0;
    const auto step = [&] {
      Word w = done < x.size ? x.w[done] : 0;
      for (Word& c : carry) {
        const Wide t = Wide{w} * kPair + c;
        w = static_cast<Word>(t);
        c = static_cast<Word>(t >> kWordBits);
      }
      x.w[done++] = w;
    };
    while (done < x.size) step();
    while (std::ranges::any_of(carry, [](Word c) { return c != 0; })) step();
    x.size = done;
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

std::size_t bits_of(const Words& x) {
  return x.size * kWordBits - static_cast<std::size_t>(std::countl_zero(x.w[x.size - 1]));
}

// x less a multiple of y, for x >= y: with 64 bits of x and 32 bits of y rounded up, the quotient
// is at most the right one. Takes a bit from x at least.
void take_multiple(Words& x, const Words& y) {
  const auto normal = [](const Words& z) {
    return static_cast<Word>(leading(z, z.size, std::countl_zero(z.w[z.size - 1])) >> kWordBits);
  };
  Word q = normal(x) / ((normal(y) >> 32) + 1);
  const std::size_t apart = bits_of(x) - bits_of(y);
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
  Word carry = q;
  for (std::size_t i = skip; i < x.size; ++i) {
    const Word multiplied = i - skip < y.size ? y.w[i - skip] : 0;
    const Wide sum = Wide{q} * ~multiplied + x.w[i];
    x.w[i] = Binary::settle(sum, carry);
  }
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
    const LehmerStep m = lehmer_step(leading(x, x.size, shift), leading(y, x.size, shift), false);
    if (m.trivial()) {
      take_multiple(x, y);
    } else {
      apply<Binary>(m, x, y);
    }
  }
}

}  // namespace tivelo::limbs
